// board/CBBSProperty.h
// One board at run time: its row in the database and the visitor's settings in the board's cookie.

#ifndef BOARD_CBBSPROPERTY_H
#define BOARD_CBBSPROPERTY_H

#include <QByteArrayList>
#include <QString>

#include <initializer_list>
#include <optional>
#include <utility>

class Application;

/// What a visitor tells a board about himself: the four texts of its cookie.
struct CVisitor
{
    QString PostName;
    QString Mail;
    QString HomePage;
    QString Password;

    bool operator==(const CVisitor&) const = default;
};

/// One board. GetProperty fills the fields; the cookie's settings are read from the shared cookie store on every get
/// and written to it on every set, so the board's own pages and the reader always see the same values.
///
/// Both sides of a two-sided board are rows of their own with one address, and so share one cookie. Every set leaves
/// all other fields as they are, and tells whether it reached the cookie file: not without an address, with one that no
/// cookie can be kept for, or when the file cannot be written.
/// What the database refuses reaches the caller as dao::Error.
class CBBSProperty
{
public:
    /// App must outlive this object; its database is used at the time of each call.
    explicit CBBSProperty(Application& App);

    QString Name;
    QString ShortName;
    QString URL;           ///< address of the board's CGI; also address and name of its cookie
    QString HowtouseURL;
    qint32 MaxCount = 0;   ///< messages that the board keeps
    qint32 Hitokoto = -1;  ///< -1 ordinary board, 0 left and 1 right side of a two-sided one
    bool VisitLoad = false;
    qint32 ListOrder = 0;  ///< place in the board lists from 0; below 0 the board is not listed
    QString DefaultLogFile;
    QString Identifier;    ///< base name of the board's files

    /// The number given to GetProperty; 0 before.
    qint32 ID() const { return m_id; }
    bool IsTwoSided() const { return Hitokoto >= 0; }

    /// Loads board BBS_ID. False when there is no such row or no open database; the fields then stay as they were.
    bool GetProperty(qint32 BBS_ID);
    /// Writes the fields back. A changed address takes the cookie's settings along, unless another board lives at the
    /// new address already. False before GetProperty and when the row is gone.
    bool SetProperty();

    /// Stored messages of the board that are not read yet.
    qint32 NoReadCount() const;

    /// Number of the last message that counts as read on the board; 0 when nothing is known.
    qint32 NoReadPoint() const;
    bool SetNoReadPoint(qint32 NewNoReadPoint);
    QString PostName() const;
    bool SetPostName(const QString& NewPostName);
    QString Mail() const;
    bool SetMail(const QString& NewMail);
    QString HomePage() const;
    bool SetHomePage(const QString& NewHomePage);
    QString Password() const;
    bool SetPassword(const QString& NewPassword);
    /// The four texts at once, in one write.
    CVisitor Visitor() const;
    bool SetVisitor(const CVisitor& NewVisitor);
    /// Text as the cookie gives it back. "," ";" "%" become their wide forms, CR, LF and NUL go, and what code page 932
    /// has no code for is "?".
    static QString StoredText(const QString& Text);
    /// Messages per web page.
    qint32 ViewCount() const;
    bool SetViewCount(qint32 NewViewCount);
    /// Messages per log page, 1 and up.
    qint32 DownloadCount() const;
    bool SetDownloadCount(qint32 NewDownloadCount);
    /// Order on the web pages: 0 newest first, 1 oldest first.
    qint32 ViewOrder() const;
    bool SetViewOrder(qint32 NewViewOrder);
    /// Unread reading on the web pages: 0 on, 1 off.
    qint32 NoReadView() const;
    bool SetNoReadView(qint32 NewNoReadView);

    /// Path of the board's picture, found without regard to letter case; empty when there is none.
    QString GetIconFileName() const;
    QString GetCacheFileName() const;
    QString GetErrorLogFileName() const;
    /// Address of the board's page for this side; empty for an unknown kind of board.
    QString GetShowURL() const;
    QString GetShowCookiePageURL() const;

private:
    enum Field { FieldPostName, FieldMail, FieldHomePage, FieldPassword, FieldViewCount, FieldViewOrder,
                 FieldNoReadView, FieldNoReadPointLeft, FieldDownloadCount, FieldNoReadPointRight };

    Field NoReadPointField() const { return Hitokoto == 1 ? FieldNoReadPointRight : FieldNoReadPointLeft; }
    QByteArray DefaultCookie() const;
    std::optional<QByteArray> StoredCookie(const QString& Address) const;
    QByteArrayList ReadFields() const;
    bool WriteFields(std::initializer_list<std::pair<Field, QByteArray>> Values);
    QString Text(Field Which) const;
    bool SetText(Field Which, const QString& Value);
    qint32 Number(Field Which, qint32 Default) const;
    bool SetNumber(Field Which, qint32 Value);
    bool AnotherBoardAt(const QString& Address) const;
    void TakeCookieAlong();

    Application& m_app;
    qint32 m_id = 0;
    QString m_cookieUrl; // the address that the settings were last known under
};

#endif // BOARD_CBBSPROPERTY_H
