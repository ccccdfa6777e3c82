// boardd/CVisitor.h
// What the boards know of a visitor: the list of settings in the cookie named after the board's address.

#ifndef BOARDD_CVISITOR_H
#define BOARDD_CVISITOR_H

#include <QByteArray>
#include <QByteArrayList>
#include <QDateTime>
#include <QString>

/// The cookie's value is a list of fields parted by commas, in code page 932, without any quoting. Fields behind the known
/// ones are kept as they are.
class CVisitor
{
public:
    enum Field { Name, Mail, HomePage, Password, ViewCount, ViewOrder, NoReadView, NoReadPoint, DownloadCount, RightNoReadPoint };

    /// More than this is never shown on one page of a board, whatever the cookie says.
    static constexpr int MaxViewCount = 500;

    /// A visitor without a cookie.
    explicit CVisitor(bool TwoSided);
    /// Reads the cookie named CookieName from a Cookie header line, which may hold any others besides.
    CVisitor(QByteArrayView CookieHeader, QByteArrayView CookieName, bool TwoSided);

    /// Name, Mail, HomePage or Password.
    QString Text(Field Index) const;
    /// Commas, semicolons and percent signs would break the list or the header: they become full-width.
    void SetText(Field Index, const QString& Text);

    /// Messages on a board page, 1 to MaxViewCount; 20, or 30 on the two-sided board, where the cookie has no such number.
    int GetViewCount() const;
    bool OldestFirst() const { return Number(ViewOrder, 0) == 1; }
    /// Whether board pages show the unread messages first of all; the cookie holds 0 for yes.
    bool ShowsUnread() const { return Number(NoReadView, 0) == 0; }
    /// Messages up to this number count as read. Side is -1, 0 or 1.
    qint32 GetNoReadPoint(int Side) const;
    /// Messages on a log page, 1 and up; 30, or 50 on the two-sided board, where the cookie has no such number.
    qint32 GetDownloadCount() const;
    void SetNumber(Field Index, qint32 Value);

    /// The cookie's value.
    QByteArray Value() const { return m_fields.join(','); }
    /// A whole Set-Cookie line's content: the cookie lives for 120 days from Now.
    QByteArray SetCookie(const QByteArray& CookieName, const QDateTime& Now) const;

private:
    qint32 Number(Field Index, qint32 Default) const;

    bool m_twoSided;
    QByteArrayList m_fields;
};

#endif
