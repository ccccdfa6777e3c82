// platform/net/CCookieStore.cpp
// The cookies of all boards, kept in one file that only its owner can read.

#include "platform/net/CCookieStore.h"

#include "platform/net/CookieText.h"

#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QSaveFile>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace
{
constexpr char FileHeading[] = "# Tavora cookies 1\n";
/// Room for MaxCookies lines of full length and as many of the program's own; what lies beyond nobody meant to be here.
constexpr qint64 MaxFileBytes = 2 * qint64{CCookieStore::MaxCookies} * (CCookieStore::MaxCookieBytes + 2048);
/// A page that only moves a cookie's end by less than this is no reason to write the file.
constexpr qint64 MinorShiftSecs = 24 * 60 * 60;
constexpr QFileDevice::Permissions OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QByteArray HostOf(const QUrl& Url)
{
    const QString scheme = Url.scheme();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return {};
    return Url.host(QUrl::FullyEncoded).toLatin1().toLower();
}

/// "/" or the path up to its last "/", as cookies of a page without a path of their own get it.
QByteArray FolderOf(const QUrl& Url)
{
    const QByteArray path = Url.path(QUrl::FullyEncoded).toLatin1();
    const qsizetype end = path.lastIndexOf('/');
    return end < 0 ? QByteArray("/") : path.left(end + 1);
}

bool IsBelow(const QByteArray& Host, const QByteArray& Domain)
{
    return Host.size() > Domain.size() && Host.endsWith(Domain) && Host[Host.size() - Domain.size() - 1] == '.';
}

/// "co.jp", "or.jp", "com.au": names under which strangers register.
bool IsSharedByStrangers(const QByteArray& Domain)
{
    const QByteArrayList labels = Domain.split('.');
    return labels.size() < 2 || (labels.size() == 2 && labels[1].size() == 2 && labels[0].size() <= 3);
}

bool StartsWithIgnoringCase(const QByteArray& Text, const QByteArray& Start)
{
    return Text.size() >= Start.size() && Text.left(Start.size()).compare(Start, Qt::CaseInsensitive) == 0;
}

bool IsOver(const CCookie& Cookie, const QDateTime& Now) { return Cookie.Expires.isValid() && Cookie.Expires <= Now; }

bool SamePlace(const CCookie& A, const CCookie& B)
{
    return A.Name == B.Name && A.Domain == B.Domain && A.Path == B.Path;
}

/// Set by the program itself, which names no end.
bool IsOwn(const CCookie& Cookie) { return Cookie.Persistent && !Cookie.Expires.isValid(); }

/// True when Later differs from Earlier in no more than a slightly later end.
bool IsMinorChange(const CCookie& Earlier, const CCookie& Later)
{
    return Earlier.Value == Later.Value && Earlier.HostOnly == Later.HostOnly && Earlier.Secure == Later.Secure &&
           Earlier.HttpOnly == Later.HttpOnly && Earlier.Persistent == Later.Persistent && Earlier.Expires.isValid() &&
           Later.Expires.isValid() && qAbs(Earlier.Expires.secsTo(Later.Expires)) < MinorShiftSecs;
}

/// The renamed file is only safe from a power cut when its folder is on the disk too.
void SyncFolderOf([[maybe_unused]] const QString& FileName)
{
#ifdef Q_OS_UNIX
    const int folder =
        ::open(QFile::encodeName(QFileInfo(FileName).absolutePath()).constData(), O_RDONLY | O_DIRECTORY);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
#endif
}
} // namespace

CCookieStore::CCookieStore(const QString& FileName)
    : m_fileName(FileName)
{}

CCookieStore::~CCookieStore()
{
    if (m_dirty)
        Save();
}

bool CCookieStore::Load()
{
    m_cookies.clear();
    m_dirty = false;
    QFile file(m_fileName);
    m_unreadable = file.exists() && !file.open(QIODevice::ReadOnly);
    if (!file.isOpen())
        return !m_unreadable;
    file.setPermissions(OwnerOnly); // a copy from elsewhere may have come readable for all
    const QByteArrayList lines = file.read(MaxFileBytes).split('\n');
    const QDateTime now = QDateTime::currentDateTimeUtc();
    bool isDamaged = false;
    for (const QByteArray& line : lines) {
        std::optional<CCookie> cookie = mdlCookieText::FromLine(line);
        isDamaged |= !cookie && !line.isEmpty() && !line.startsWith('#');
        if (cookie && !IsOver(*cookie, now))
            Insert(std::move(*cookie));
    }
    if (isDamaged) // the next Save leaves out what may be somebody's password
        QFile::copy(m_fileName, m_fileName + QStringLiteral(".bak"));
    return true;
}

bool CCookieStore::Save()
{
    if (m_unreadable)
        return false;
    DropExpired();
    QSaveFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnerOnly))
        return false;
    QByteArray lines = FileHeading;
    for (const CCookie& cookie : m_cookies) {
        if (cookie.Persistent)
            lines += mdlCookieText::ToLine(cookie) + '\n';
    }
    // What fails while the last of the bytes leave the buffer, commit() does not notice: a full disk would empty the
    // file.
    if (file.write(lines) != lines.size() || !file.flush() || !file.commit()) // commit syncs before it renames
        return false;
    SyncFolderOf(m_fileName);
    m_dirty = false;
    return true;
}

QByteArray CCookieStore::Get(const QUrl& Url) const
{
    QByteArrayList pairs;
    for (const CCookie* cookie : Matching(Url))
        pairs << (cookie->Value.isEmpty() ? cookie->Name : cookie->Name + '=' + cookie->Value);
    return pairs.join("; ");
}

std::optional<QByteArray> CCookieStore::Value(const QUrl& Url, const QByteArray& Name) const
{
    for (const CCookie* cookie : Matching(Url)) {
        if (cookie->Name == Name)
            return cookie->Value;
    }
    return std::nullopt;
}

bool CCookieStore::Set(const QUrl& Url, const QByteArray& Name, const QByteArray& Data)
{
    const auto [value, attributes] = mdlCookieText::Split(mdlCookieText::OneLine(Data), ';');
    CCookie cookie;
    cookie.Name = Name;
    cookie.Value = value;
    return Store(Url, std::move(cookie), attributes, Origin::Program);
}

bool CCookieStore::SetFromHeader(const QUrl& Url, const QByteArray& SetCookieLine)
{
    const auto [pair, attributes] = mdlCookieText::Split(mdlCookieText::OneLine(SetCookieLine), ';');
    const auto [name, value] = mdlCookieText::Split(pair, '=');
    CCookie cookie;
    cookie.Name = name.trimmed();
    cookie.Value = value.trimmed();
    return Store(Url, std::move(cookie), attributes, Origin::Server);
}

/// Completes Cookie from Url and Attributes, checks it, puts it in its place and saves when the file has to change.
bool CCookieStore::Store(const QUrl& Url, CCookie Cookie, const QByteArray& Attributes, Origin From)
{
    const mdlCookieText::Attributes given = mdlCookieText::ReadAttributes(Attributes);
    const QByteArray host = HostOf(Url);
    const bool wide = !given.Domain.isEmpty() && given.Domain != host;
    if (!mdlCookieText::IsDomain(host) || (given.HttpOnly && From == Origin::Program) ||
        (wide && (!IsBelow(host, given.Domain) || IsSharedByStrangers(given.Domain) ||
                  !QHostAddress(QString::fromLatin1(host)).isNull())))
        return false;
    Cookie.Domain = wide ? given.Domain : host;
    Cookie.HostOnly = !wide;
    Cookie.Path = given.Path.startsWith('/') ? given.Path : FolderOf(Url);
    Cookie.Secure = given.Secure;
    Cookie.HttpOnly = given.HttpOnly;
    Cookie.Persistent = given.Expires.isValid();
    if (!mdlCookieText::IsName(Cookie.Name) || !mdlCookieText::IsPath(Cookie.Path) ||
        Cookie.Name.size() + Cookie.Value.size() > MaxCookieBytes)
        return false;

    const bool over = given.Expires.isValid() && given.Expires <= QDateTime::currentDateTimeUtc();
    if (From == Origin::Server)
        Cookie.Expires = given.Expires;
    const auto old =
        std::find_if(m_cookies.begin(), m_cookies.end(), [&](const CCookie& held) { return SamePlace(held, Cookie); });
    const bool wasInFile = old != m_cookies.end() && old->Persistent;
    const bool minor = old != m_cookies.end() && !over && IsMinorChange(*old, Cookie);
    const bool toFile = (wasInFile || Cookie.Persistent) && (wasInFile || !over);
    if (!over)
        Insert(std::move(Cookie));
    else if (old != m_cookies.end())
        m_cookies.erase(old);
    m_dirty = m_dirty || toFile;
    return minor || !toFile || Save();
}

/// Replaces the cookie of the same place, or makes room by dropping the oldest that a server set. The program's own are
/// as many as there are boards: they neither count nor go, so that no server and no further board pushes one out.
void CCookieStore::Insert(CCookie Cookie)
{
    std::erase_if(m_cookies, [&](const CCookie& held) { return SamePlace(held, Cookie); });
    const auto keepBelow = [this](std::ptrdiff_t Most, auto Counts) {
        if (std::count_if(m_cookies.begin(), m_cookies.end(), Counts) >= Most)
            m_cookies.erase(std::find_if(m_cookies.begin(), m_cookies.end(), Counts));
    };
    if (!IsOwn(Cookie)) {
        keepBelow(MaxPerDomain,
                  [&Cookie](const CCookie& held) { return !IsOwn(held) && held.Domain == Cookie.Domain; });
        keepBelow(MaxCookies, [](const CCookie& held) { return !IsOwn(held); });
    }
    m_cookies.push_back(std::move(Cookie));
}

std::vector<const CCookie*> CCookieStore::Matching(const QUrl& Url) const
{
    const QByteArray host = HostOf(Url);
    const QByteArray folder = FolderOf(Url);
    const bool secure = Url.scheme() == QLatin1String("https");
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::vector<const CCookie*> found;
    for (const CCookie& cookie : m_cookies) {
        const bool atHome = host == cookie.Domain || (!cookie.HostOnly && IsBelow(host, cookie.Domain));
        if (atHome && StartsWithIgnoringCase(folder, cookie.Path) && (secure || !cookie.Secure) && !IsOver(cookie, now))
            found.push_back(&cookie);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const CCookie* a, const CCookie* b) { return a->Path.size() > b->Path.size(); });
    return found;
}

void CCookieStore::DropExpired()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::erase_if(m_cookies, [&now](const CCookie& held) { return IsOver(held, now); });
}
