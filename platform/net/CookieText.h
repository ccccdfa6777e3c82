// platform/net/CookieText.h
// How a cookie is written: header attributes, dates, and the lines of the cookie file.

#ifndef NET_COOKIETEXT_H
#define NET_COOKIETEXT_H

#include "platform/net/CCookieStore.h"

#include <QByteArrayList>

#include <utility>

namespace mdlCookieText
{
/// What follows the value: "expires=…; path=…; domain=…; secure; httponly". Names ignore case, unknown ones are
/// skipped, and so is max-age: the boards' servers never meant it.
struct Attributes
{
    QDateTime Expires; ///< UTC; invalid when missing, empty or unreadable
    QByteArray Path;   ///< empty when missing
    QByteArray Domain; ///< lower case without a leading dot; empty when missing
    bool Secure = false;
    bool HttpOnly = false;
};

Attributes ReadAttributes(const QByteArray& Text);

/// Reads the many ways in which servers write a date ("Wed, 01-Jan-2003 00:00:00 GMT", "Wed Jan  1 00:00:00 2003"),
/// always as GMT: the order of day, month and year is told by their form, punctuation does not matter, two digits
/// mean 1970 to 2069. Invalid when a piece is missing or no such moment exists.
QDateTime ReadDate(const QByteArray& Text);

/// What stands before and after the first Mark; without one, all of Text and nothing.
std::pair<QByteArray, QByteArray> Split(const QByteArray& Text, char Mark);

/// Text without CR, LF and NUL, which would end a header or a line of the file.
QByteArray OneLine(QByteArray Text);

/// One to MaxCookieBytes bytes without "=", ";" and control characters.
bool IsName(const QByteArray& Name);
/// A lower-case host name or address.
bool IsDomain(const QByteArray& Domain);
/// Begins with "/", no ";" and no control characters.
bool IsPath(const QByteArray& Path);

/// The cookie's line in the file, without its end: domain, 1 when subdomains count, path, 1 when https only, 1 when
/// hidden from programs, end as seconds since 1970 ("-" for none), name and value, set apart by tabs. Only the value,
/// which comes last, may hold a tab itself.
QByteArray ToLine(const CCookie& Cookie);
/// Nothing for a line that ToLine could not have written.
std::optional<CCookie> FromLine(const QByteArray& Line);
} // namespace mdlCookieText

#endif
