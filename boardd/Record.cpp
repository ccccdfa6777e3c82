// boardd/Record.cpp
// Writing log records, and cleaning the texts that go into them.

#include "boardd/Record.h"

#include "platform/text/Codepage932.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{

bool IsControl(QChar Character)
{
    return Character.unicode() < 0x20 || Character.unicode() == 0x7F;
}

QString Representable(const QString& Text)
{
    return text::From932(mdlRecord::Encode(Text));
}

void AddLine(QByteArray& Out, QByteArrayView Label, const QString& Text)
{
    Out.append(Label).append(mdlRecord::Encode(Text)).append("\r\n");
}

} // namespace

QByteArray mdlRecord::Encode(const QString& Text)
{
    QString kind = Text;
    kind.replace(QChar(0x301C), QChar(0xFF5E)).replace(QChar(0x2212), QChar(0xFF0D));
    return text::To932(kind);
}

QString mdlRecord::PostedText(const QDateTime& Posted)
{
    static constexpr QStringView weekdays = u"月火水木金土日";
    const QChar weekday = weekdays.at(Posted.date().dayOfWeek() - 1);
    return Posted.toString(u"yyyy/MM/dd"_s) + u"（"_s + weekday + u"） "_s + Posted.toString(u"HH:mm"_s);
}

QDateTime mdlRecord::ReadWallClock(const QString& Text)
{
    const QDate date = QDate::fromString(Text.left(10), u"yyyy/MM/dd"_s);
    const QTime time = QTime::fromString(Text.mid(11), u"HH:mm"_s);
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

QDateTime mdlRecord::CurrentWallClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    return QDateTime(now.date(), QTime(now.time().hour(), now.time().minute()), Qt::UTC);
}

QByteArray mdlRecord::Write(const CBoardMessage& Message, bool TwoSided)
{
    QByteArray out;
    out.reserve(256 + Message.Body.size() * 2);
    AddLine(out, "Number:", QString::number(Message.Number));
    if (!TwoSided)
        AddLine(out, "Title:", Message.Title);
    AddLine(out, "Home Page:", Message.HomePage);
    AddLine(out, "E-mail:", Message.Mail);
    AddLine(out, "Author:", Message.Author);
    AddLine(out, "Posted:", PostedText(Message.Posted));
    AddLine(out, "ReplyTo:", Message.ReplyTo > 0 ? QString::number(Message.ReplyTo) : QString());
    AddLine(out, "Message:", QString());
    out.append(Encode(Message.Body).replace("\n", "\r\n"));
    return out.append("\r\n").append(Separator).append("\r\n");
}

QString mdlRecord::OneLine(const QString& Text)
{
    QString line = Representable(Text);
    for (QChar& character : line) {
        if (IsControl(character))
            character = u' ';
    }
    return line.trimmed();
}

QString mdlRecord::Lines(const QString& Text)
{
    QString unified = Text;
    unified.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    unified.removeIf([](QChar character) { return IsControl(character) && character != u'\n' && character != u'\t'; });
    QStringList lines = Representable(unified).split(u'\n');
    while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
        lines.removeLast();
    for (QString& line : lines) {
        if (line == QLatin1StringView(Separator))
            line.prepend(u' ');
    }
    return lines.join(u'\n');
}
