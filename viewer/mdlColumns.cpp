// viewer/mdlColumns.cpp
// The table of columns, and how a message reads in each.

#include "viewer/mdlColumns.h"

#include "platform/text/Format.h"
#include "viewer/CMessageItem.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr int NumberWidth = 6;
constexpr QChar IndentUnit = u'\u3000';

/// As the pattern "000000" writes it: a minus sign stands in front of the zeros.
QString Padded(qint64 Number)
{
    const QString digits = QString::number(qAbs(Number)).rightJustified(NumberWidth, u'0');
    return Number < 0 ? u'-' + digits : digits;
}

} // namespace

namespace mdlColumns
{

const QStringList& Keys()
{
    static const QStringList keys{u"Read"_s, u"ID"_s,        u"Subject"_s, u"HomePage"_s,     u"Mail"_s, u"Name"_s,
                                  u"Date"_s, u"InReplyTo"_s, u"Body"_s,    u"ParentThread"_s, u"Mark"_s};
    return keys;
}

const QStringList& BoardHeaders()
{
    static const QStringList headers{u"*"_s,      u"番号"_s,         u"題名Ｆｉｎｄ"_s, u"ホームページ"_s,
                                     u"メール"_s, u"投稿者"_s,       u"投稿日"_s,       u"レス元"_s,
                                     u"内容"_s,   u"先頭スレッド"_s, u"マーク"_s};
    return headers;
}

const QStringList& ResultHeaders()
{
    static const QStringList headers = [] {
        QStringList result = BoardHeaders();
        result[Read] = QString();
        result[Subject] = u"題名"_s;
        return result;
    }();
    return headers;
}

QString Text(const CMessageItem& Item, int Column, const QString& DateFormat)
{
    const CMessage& message = Item.Message;
    switch (Column) {
    case Read:
        return message.Read ? u" "_s : u"*"_s;
    case ID:
        return Padded(message.ID);
    case Subject:
        return Item.Indent > 0 ? QString(Item.Indent, IndentUnit) + message.Subject : message.Subject;
    case HomePage:
        return message.HomePage;
    case Mail:
        return message.Mail;
    case Name:
        return message.PostName;
    case Date:
        return text::FormatDate(message.PostDate, DateFormat);
    case InReplyTo:
        return message.ReplyKey();
    case Body:
        return message.Body;
    case ParentThread:
        return Padded(message.RootThread);
    case Mark:
        return QString::number(message.Mark);
    default:
        return {};
    }
}

} // namespace mdlColumns
