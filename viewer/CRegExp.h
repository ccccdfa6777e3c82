// viewer/CRegExp.h
// What is looked for in message bodies: an expression or a plain text, and where it was found last.

#ifndef VIEWER_CREGEXP_H
#define VIEWER_CREGEXP_H

#include "platform/regexp/CScan.h"
#include "platform/text/CFoldedPattern.h"

#include <QString>

#include <optional>

/// A search pattern and its last match.
///
/// A plain pattern stands for itself and is compared as the database compares text: letter case, width and kana do not
/// count, whatever IgnoreCase says. A match without any length shows nothing to the user and is passed over.
class CRegExp
{
public:
    /// Whether Pattern is a regular expression; true at first.
    bool RegExpMode() const { return m_isRegExpMode; }
    void SetRegExpMode(bool IsOn) { m_isRegExpMode = IsOn; }
    /// For expressions only; false at first.
    bool IgnoreCase() const { return m_ignoresCase; }
    void SetIgnoreCase(bool IsOn);
    /// The compiled Pattern. There always is one; it may be an expression with a fault, which finds nothing.
    const regexp::CExpression& RegExp();

    /// Start and length of the last match in UTF-16 units of the text that was searched; -1 when there is none.
    qint32 FirstIndex() const { return m_firstIndex; }
    qint32 Length() const { return m_length; }
    /// The matched text, or the plain pattern that was found; empty when there is none.
    QString Value() const { return m_value; }

    QString Pattern() const { return m_pattern; }
    void SetPattern(const QString& Pattern);

    /// Finds the first match in Text that begins at From or behind it. What stands before From still counts: ^ is the
    /// start of Text only, and \b sees the letter before.
    bool Search(const QString& Text, qsizetype From = 0);
    /// Finds the last one of the matches that follow each other from the start of Text and end at Until or before it
    /// (ToEnd: anywhere). What stands behind Until still counts, and no match is cut off there.
    bool SearchRev(const QString& Text, qsizetype Until = ToEnd);
    static constexpr qsizetype ToEnd = -1;

    /// Whether the last search was broken off, as the expression takes too long on that text. The next one may well be
    /// searched in time; many in a row may not.
    bool HasGivenUp() const { return m_hasGivenUp; }

private:
    bool Take(const QString& Text, regexp::CSpan Found);
    bool StartScan(const QString& Text, qsizetype From);
    regexp::CSpan FindFirst(const QString& Text, qsizetype From);
    regexp::CSpan FindLast(const QString& Text, qsizetype Until);
    const text::CFoldedPattern& Plain();

    bool m_isRegExpMode = true;
    bool m_ignoresCase = false;
    QString m_pattern;
    std::optional<regexp::CExpression> m_expression; // of m_pattern; this and what follows are made when needed
    std::optional<regexp::CScan> m_scan;             // of m_expression
    std::optional<text::CFoldedPattern> m_plain;
    qint32 m_firstIndex = -1;
    qint32 m_length = -1;
    QString m_value;
    bool m_hasGivenUp = false;
};

#endif // VIEWER_CREGEXP_H
