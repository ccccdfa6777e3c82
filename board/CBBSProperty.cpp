// board/CBBSProperty.cpp
// One board at run time: its row in the database and the visitor's settings in the board's cookie.

#include "board/CBBSProperty.h"

#include "board/SqlText.h"
#include "app/Application.h"
#include "app/Path.h"
#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"
#include "platform/net/CCookieStore.h"
#include "platform/text/Codepage932.h"
#include "platform/text/Number.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QUrl>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// A visitor who stays away for a season finds his settings again in the browser as well.
constexpr int CookieDays = 120;

constexpr qint32 DefaultViewCount(bool TwoSided) { return TwoSided ? 30 : 20; }
constexpr qint32 DefaultDownloadCount(bool TwoSided) { return TwoSided ? 50 : 30; }

QString RowOf(qint32 BBS_ID) { return u"SELECT * FROM BBS WHERE BBS_ID = "_s + QString::number(BBS_ID); }

QByteArray ExpiryDate()
{
    const QDateTime end = QDateTime::currentDateTimeUtc().addDays(CookieDays);
    return QLocale::c().toString(end, u"ddd, dd-MMM-yyyy hh:mm:ss 'GMT'"_s).toLatin1();
}

/// The bytes of a text field. The cookie has no escaping: what would end a field, the cookie or its line is replaced by
/// its wide form or dropped.
QByteArray FieldBytes(const QString& Value)
{
    QString clean;
    clean.reserve(Value.size());
    for (const QChar unit : Value) {
        switch (unit.unicode()) {
        case u',': clean += u'，'; break;
        case u';': clean += u'；'; break;
        case u'%': clean += u'％'; break;
        case u'\r': case u'\n': case u'\0': break;
        default: clean += unit;
        }
    }
    return text::To932(text::WithWindowsForms(clean));
}

bool StoreCookie(CCookieStore& Cookies, const QString& Address, const QByteArray& Value)
{
    return Cookies.Set(QUrl(Address), text::To932(Address), Value + "; expires=" + ExpiryDate());
}

QString FileIn(const QString& Folder, const QString& Identifier, QLatin1StringView Extension)
{
    return mdlPath::AddBackslash(Folder) + Identifier + Extension;
}
} // namespace

CBBSProperty::CBBSProperty(Application& App)
    : m_app(App)
{
}

bool CBBSProperty::GetProperty(qint32 BBS_ID)
{
    if (!m_app.LogDB())
        return false;
    const auto rows = m_app.LogDB()->OpenRecordset(RowOf(BBS_ID));
    m_id = BBS_ID;
    if (rows->Eof())
        return false;
    Name = rows->Get(u"BBS_Name").ToText();
    ShortName = rows->Get(u"ShortName").ToText();
    URL = rows->Get(u"URL").ToText();
    HowtouseURL = rows->Get(u"HowtouseURL").ToText();
    MaxCount = rows->Get(u"MaxCount").ToLong();
    Hitokoto = rows->Get(u"Hitokoto").ToLong();
    VisitLoad = rows->Get(u"VisitLoad").ToBoolean();
    ListOrder = rows->Get(u"ListOrder").ToLong();
    DefaultLogFile = rows->Get(u"DefaultLogFile").ToText();
    Identifier = rows->Get(u"Identifier").ToText();
    m_cookieUrl = URL;
    return true;
}

bool CBBSProperty::SetProperty()
{
    if (m_id == 0 || !m_app.LogDB())
        return false;
    const auto rows = m_app.LogDB()->OpenRecordset(RowOf(m_id), dao::RecordsetType::Dynaset);
    if (rows->Eof())
        return false;
    rows->Edit();
    rows->Set(u"BBS_Name", dao::Value::FromText(Name));
    rows->Set(u"ShortName", dao::Value::FromText(ShortName));
    rows->Set(u"URL", dao::Value::FromText(URL));
    rows->Set(u"HowtouseURL", dao::Value::FromText(HowtouseURL));
    rows->Set(u"MaxCount", dao::Value::FromLong(MaxCount));
    rows->Set(u"Hitokoto", dao::Value::FromLong(Hitokoto));
    rows->Set(u"VisitLoad", dao::Value::FromBoolean(VisitLoad));
    rows->Set(u"ListOrder", dao::Value::FromLong(ListOrder));
    rows->Set(u"DefaultLogFile", dao::Value::FromText(DefaultLogFile));
    rows->Set(u"Identifier", dao::Value::FromText(Identifier));
    rows->Update();
    TakeCookieAlong();
    return true;
}

qint32 CBBSProperty::NoReadCount() const
{
    if (!m_app.LogDB())
        return 0;
    const auto rows = m_app.LogDB()->OpenRecordset(u"SELECT Count(*) AS 件数"_s + u"  FROM Message"_s
                                                   + u" WHERE BBS_ID = "_s + QString::number(m_id)
                                                   + u"   AND Read = False"_s);
    return rows->Eof() ? 0 : rows->Get(u"件数").ToLong();
}

qint32 CBBSProperty::NoReadPoint() const { return Number(NoReadPointField(), 0); }
bool CBBSProperty::SetNoReadPoint(qint32 NewNoReadPoint) { return SetNumber(NoReadPointField(), NewNoReadPoint); }
QString CBBSProperty::PostName() const { return Text(FieldPostName); }
bool CBBSProperty::SetPostName(const QString& NewPostName) { return SetText(FieldPostName, NewPostName); }
QString CBBSProperty::Mail() const { return Text(FieldMail); }
bool CBBSProperty::SetMail(const QString& NewMail) { return SetText(FieldMail, NewMail); }
QString CBBSProperty::HomePage() const { return Text(FieldHomePage); }
bool CBBSProperty::SetHomePage(const QString& NewHomePage) { return SetText(FieldHomePage, NewHomePage); }
QString CBBSProperty::Password() const { return Text(FieldPassword); }
bool CBBSProperty::SetPassword(const QString& NewPassword) { return SetText(FieldPassword, NewPassword); }
qint32 CBBSProperty::ViewCount() const { return Number(FieldViewCount, DefaultViewCount(IsTwoSided())); }
bool CBBSProperty::SetViewCount(qint32 NewViewCount) { return SetNumber(FieldViewCount, NewViewCount); }
bool CBBSProperty::SetDownloadCount(qint32 NewDownloadCount) { return SetNumber(FieldDownloadCount, NewDownloadCount); }
qint32 CBBSProperty::ViewOrder() const { return Number(FieldViewOrder, 0); }
bool CBBSProperty::SetViewOrder(qint32 NewViewOrder) { return SetNumber(FieldViewOrder, NewViewOrder); }
qint32 CBBSProperty::NoReadView() const { return Number(FieldNoReadView, 0); }
bool CBBSProperty::SetNoReadView(qint32 NewNoReadView) { return SetNumber(FieldNoReadView, NewNoReadView); }

qint32 CBBSProperty::DownloadCount() const
{
    // Web pages let a visitor write any number here, and page counts are divided by it.
    const qint32 usual = DefaultDownloadCount(IsTwoSided());
    const qint32 count = Number(FieldDownloadCount, usual);
    return count < 1 ? usual : count;
}

QString CBBSProperty::GetIconFileName() const
{
    const QString folder = mdlPath::AddBackslash(m_app.Option().IconFilePath);
    const QDir entries(mdlPath::DiskPath(folder));
    const QString wanted = Identifier + u".bmp"_s;
    if (Identifier.isEmpty() || folder.isEmpty() || !entries.exists())
        return {};
    const QStringList names = entries.entryList(QDir::Files | QDir::Hidden | QDir::System);
    if (names.contains(wanted))
        return folder + wanted;
    const auto found = std::find_if(names.begin(), names.end(), [&](const QString& Entry) {
        return Entry.compare(wanted, Qt::CaseInsensitive) == 0;
    });
    return found == names.end() ? QString() : folder + *found;
}

QString CBBSProperty::GetCacheFileName() const { return FileIn(m_app.Option().CacheFilePath, Identifier, ".html"_L1); }

QString CBBSProperty::GetErrorLogFileName() const
{
    return FileIn(m_app.Option().ErrorLogFilePath, Identifier, ".bad"_L1);
}

QString CBBSProperty::GetShowURL() const
{
    switch (Hitokoto) {
    case -1: return URL;
    case 0: return URL + u"?leftonly=1"_s;
    case 1: return URL + u"?rightonly=1"_s;
    default: return {};
    }
}

QString CBBSProperty::GetShowCookiePageURL() const { return URL + u"?dousa=showcookiepage"_s; }

QByteArray CBBSProperty::DefaultCookie() const { return IsTwoSided() ? ",,,,30,,,0,50,0" : ",,,,20,,,0,30"; }

std::optional<QByteArray> CBBSProperty::StoredCookie(const QString& Address) const
{
    if (Address.isEmpty())
        return {};
    auto value = m_app.Cookies().Value(QUrl(Address), text::To932(Address));
    if (value && value->isEmpty())
        return {};
    return value;
}

QByteArrayList CBBSProperty::ReadFields() const
{
    std::optional<QByteArray> value = StoredCookie(URL);
    if (!value && !URL.isEmpty())
        value = StoredCookie(m_cookieUrl);
    const QByteArray usual = DefaultCookie();
    QByteArrayList fields = value.value_or(usual).split(',');
    while (fields.size() <= usual.count(','))
        fields << QByteArray();
    return fields;
}

bool CBBSProperty::WriteFields(std::initializer_list<std::pair<Field, QByteArray>> Values)
{
    if (URL.isEmpty())
        return false;
    TakeCookieAlong();
    QByteArrayList fields = ReadFields();
    for (const auto& [field, value] : Values) {
        while (fields.size() <= field)
            fields << QByteArray();
        fields[field] = value;
    }
    return StoreCookie(m_app.Cookies(), URL, fields.join(','));
}

QString CBBSProperty::Text(Field Which) const { return text::From932(ReadFields().at(Which)); }

bool CBBSProperty::SetText(Field Which, const QString& Value) { return WriteFields({{Which, FieldBytes(Value)}}); }

QString CBBSProperty::StoredText(const QString& Text) { return text::From932(FieldBytes(Text)); }

CVisitor CBBSProperty::Visitor() const { return {PostName(), Mail(), HomePage(), Password()}; }

bool CBBSProperty::SetVisitor(const CVisitor& NewVisitor)
{
    return WriteFields({{FieldPostName, FieldBytes(NewVisitor.PostName)},
                        {FieldMail, FieldBytes(NewVisitor.Mail)},
                        {FieldHomePage, FieldBytes(NewVisitor.HomePage)},
                        {FieldPassword, FieldBytes(NewVisitor.Password)}});
}

qint32 CBBSProperty::Number(Field Which, qint32 Default) const
{
    return text::TextToLong(text::From932(ReadFields().value(Which))).value_or(Default);
}

bool CBBSProperty::SetNumber(Field Which, qint32 Value) { return WriteFields({{Which, QByteArray::number(Value)}}); }

bool CBBSProperty::AnotherBoardAt(const QString& Address) const
{
    if (!m_app.LogDB())
        return false;
    return !m_app.LogDB()
                ->OpenRecordset(u"SELECT BBS_ID FROM BBS WHERE URL = "_s + mdlSqlText::Quoted(Address)
                                + u" AND BBS_ID <> "_s + QString::number(m_id))
                ->Eof();
}

void CBBSProperty::TakeCookieAlong()
{
    if (m_cookieUrl == URL || URL.isEmpty())
        return;
    const QString old = std::exchange(m_cookieUrl, URL);
    if (AnotherBoardAt(URL))
        return; // the other side of a two-sided board moved first: its settings are the newer ones
    if (const auto value = StoredCookie(old))
        StoreCookie(m_app.Cookies(), URL, *value);
}
