// platform/net/CCookieStore.h
// The cookies of all boards, kept in one file that only its owner can read.

#ifndef NET_CCOOKIESTORE_H
#define NET_CCOOKIESTORE_H

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

/// One cookie. Domain is a lower-case host name, Path begins with "/"; Value is in the server's bytes.
struct CCookie
{
    QByteArray Name;
    QByteArray Value;
    QByteArray Domain;
    QByteArray Path;
    QDateTime Expires;       ///< UTC; invalid: no end is known
    bool HostOnly = true;    ///< false: also sent to hosts below Domain
    bool Secure = false;     ///< sent over https only
    bool HttpOnly = false;   ///< set by a server that wants no program to touch it
    bool Persistent = false; ///< written to the file; others end with the program
};

/// The cookie store that transfers, the page view and the board settings share.
///
/// A board keeps a visitor's name, password and unread position in a cookie whose name is the board's URL, so names
/// may hold ":" and "/"; only "=", ";" and control characters are refused. Values are bytes (code page 932), never
/// text. A cookie is known by domain, path and name, and a later one replaces it. The port is no part of the key.
/// Sizes are bounded: MaxCookieBytes a cookie, MaxPerDomain cookies that a host may set (the oldest give way).
class CCookieStore : public QObject
{
    Q_OBJECT

public:
    /// Longest name and value together, in bytes, as browsers have it.
    static constexpr qsizetype MaxCookieBytes = 4096;
    /// Most cookies that the servers of one domain may set; what the program sets does not count.
    static constexpr int MaxPerDomain = 50;
    /// Most cookies of all servers.
    static constexpr int MaxCookies = 1000;

    /// Nothing is read before Load. FileName may name a file that does not exist yet.
    explicit CCookieStore(const QString& FileName);
    /// Writes what a server changed without the program's doing, such as a later end.
    ~CCookieStore() override;

    /// Reads the file in place of what is held. A missing file is an empty store; lines that make no cookie are
    /// dropped, and a copy of such a file stays beside it as FileName + ".bak", if there is none yet. False: the file
    /// is there but cannot be read; it is then never overwritten by this store.
    bool Load();

    /// Replaces the file at once or not at all, synced to the disk. False: the old file is still there.
    bool Save();

    /// What a request for Url sends: "n=v; n2=v2", longer paths first, then in the order they were made; a cookie
    /// with an empty value is its name alone. Empty when there is none.
    QByteArray Get(const QUrl& Url) const;

    /// The value of the cookie with exactly this name that a request for Url would send; nothing when there is none.
    std::optional<QByteArray> Value(const QUrl& Url, const QByteArray& Name) const;

    /// Stores Data = "value; expires=…; path=…; domain=…; secure" for Url and saves. CR, LF and NUL are dropped.
    ///
    /// What the program sets with a future end stays until it is deleted: the board's settings must not fade because
    /// nobody opened them for some months. An end in the past deletes. False: refused (bad name, foreign domain,
    /// httponly, too long) and nothing changed, or the file could not be written.
    bool Set(const QUrl& Url, const QByteArray& Name, const QByteArray& Data);

    /// Stores the value of one Set-Cookie header line of a reply from Url ("name=value; …", first "=" splits).
    bool SetFromHeader(const QUrl& Url, const QByteArray& SetCookieLine);

private:
    enum class Origin { Program, Server };
    bool Store(const QUrl& Url, CCookie Cookie, const QByteArray& Attributes, Origin From);
    void Insert(CCookie Cookie);
    std::vector<const CCookie*> Matching(const QUrl& Url) const;
    void DropExpired();

    QString m_fileName;
    std::vector<CCookie> m_cookies; // oldest first
    bool m_unreadable = false;
    bool m_dirty = false;
};

#endif
