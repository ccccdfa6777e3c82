// platform/net/CookieText.cpp
// How a cookie is written: header attributes, dates, and the lines of the cookie file.

#include "platform/net/CookieText.h"

#include <QList>

#include <algorithm>
#include <array>
#include <utility>

namespace mdlCookieText
{
namespace
{
constexpr char FieldEnd = '\t';
constexpr int FieldsBeforeValue = 7;

bool IsDigit(char C) { return C >= '0' && C <= '9'; }
bool IsLetter(char C) { return (C >= 'a' && C <= 'z') || (C >= 'A' && C <= 'Z'); }
bool IsControl(char C) { return static_cast<unsigned char>(C) < 0x20 || C == 0x7f; }

bool HasOnly(const QByteArray& Text, bool (*Allowed)(char)) { return std::all_of(Text.begin(), Text.end(), Allowed); }

/// The runs of letters, of digits and of digits joined by ":" in a date.
QByteArrayList DateWords(const QByteArray& Text)
{
    QByteArrayList words;
    QByteArray word;
    for (const char c : Text) {
        const bool part = IsDigit(c) || IsLetter(c) || (c == ':' && !word.isEmpty() && !IsLetter(word.front()));
        if (!word.isEmpty() && (!part || IsLetter(word.front()) != IsLetter(c)))
            words << std::exchange(word, {});
        if (part)
            word += c;
    }
    if (!word.isEmpty())
        words << word;
    return words;
}

/// 1 to 12 for a word that begins like an English month, else 0.
int MonthOf(const QByteArray& Word)
{
    static constexpr std::array names = {"jan", "feb", "mar", "apr", "may", "jun",
                                         "jul", "aug", "sep", "oct", "nov", "dec"};
    const QByteArray start = Word.left(3).toLower();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (start == names[i])
            return static_cast<int>(i) + 1;
    }
    return 0;
}

QTime TimeOf(const QByteArray& Word)
{
    const QByteArrayList parts = Word.split(':');
    if (parts.size() != 3)
        return {};
    return QTime(parts[0].toInt(), parts[1].toInt(), parts[2].toInt());
}

int FullYear(const QByteArray& Word)
{
    const int year = Word.toInt();
    if (Word.size() > 2)
        return year;
    return year < 70 ? year + 2000 : year + 1900;
}

std::optional<bool> FlagOf(const QByteArray& Field)
{
    if (Field == "0" || Field == "1")
        return Field == "1";
    return std::nullopt;
}

bool IsSound(const CCookie& Cookie)
{
    return IsName(Cookie.Name) && IsDomain(Cookie.Domain) && IsPath(Cookie.Path) &&
           Cookie.Name.size() + Cookie.Value.size() <= CCookieStore::MaxCookieBytes &&
           OneLine(Cookie.Value) == Cookie.Value && !Cookie.Value.contains(';');
}

/// Splits off the fields before the value; the value keeps its tabs. Empty when there are too few.
QByteArrayList FieldsOf(const QByteArray& Line)
{
    QByteArrayList fields;
    qsizetype from = 0;
    for (int i = 0; i < FieldsBeforeValue; ++i) {
        const qsizetype end = Line.indexOf(FieldEnd, from);
        if (end < 0)
            return {};
        fields << Line.mid(from, end - from);
        from = end + 1;
    }
    fields << Line.mid(from);
    return fields;
}
} // namespace

Attributes ReadAttributes(const QByteArray& Text)
{
    Attributes result;
    const QByteArrayList parts = Text.split(';');
    for (const QByteArray& part : parts) {
        const auto [left, right] = Split(part, '=');
        const QByteArray name = left.trimmed().toLower();
        const QByteArray value = right.trimmed();
        if (name == "expires")
            result.Expires = ReadDate(value);
        else if (name == "path")
            result.Path = value;
        else if (name == "domain")
            result.Domain = value.startsWith('.') ? value.mid(1).toLower() : value.toLower();
        else if (name == "secure")
            result.Secure = true;
        else if (name == "httponly")
            result.HttpOnly = true;
    }
    return result;
}

QDateTime ReadDate(const QByteArray& Text)
{
    QTime time;
    int day = 0;
    int month = 0;
    int year = -1;
    const QByteArrayList words = DateWords(Text);
    for (const QByteArray& word : words) {
        if (word.contains(':'))
            time = TimeOf(word);
        else if (!IsDigit(word.front()))
            month = month != 0 ? month : MonthOf(word);
        else if (word.size() <= 2 && day == 0)
            day = word.toInt();
        else if (word.size() <= 4 && year < 0)
            year = FullYear(word);
    }
    const QDate date(year, month, day);
    return date.isValid() && time.isValid() && year > 0 ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

std::pair<QByteArray, QByteArray> Split(const QByteArray& Text, char Mark)
{
    const qsizetype at = Text.indexOf(Mark);
    return at < 0 ? std::pair(Text, QByteArray()) : std::pair(Text.left(at), Text.mid(at + 1));
}

QByteArray OneLine(QByteArray Text)
{
    Text.removeIf([](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    return Text;
}

bool IsName(const QByteArray& Name)
{
    return !Name.isEmpty() && Name.size() <= CCookieStore::MaxCookieBytes && Name.trimmed() == Name &&
           HasOnly(Name, [](char c) { return !IsControl(c) && c != '=' && c != ';'; });
}

bool IsDomain(const QByteArray& Domain)
{
    return !Domain.isEmpty() && Domain.size() <= 255 && HasOnly(Domain, [](char c) {
        return IsDigit(c) || (c >= 'a' && c <= 'z') || c == '.' || c == '-' || c == '_' || c == ':';
    });
}

bool IsPath(const QByteArray& Path)
{
    return Path.startsWith('/') && Path.size() <= 1024 &&
           HasOnly(Path, [](char c) { return !IsControl(c) && c != ';'; });
}

QByteArray ToLine(const CCookie& Cookie)
{
    const QByteArray end =
        Cookie.Expires.isValid() ? QByteArray::number(Cookie.Expires.toSecsSinceEpoch()) : QByteArray("-");
    return QByteArrayList{Cookie.Domain,
                          Cookie.HostOnly ? "0" : "1",
                          Cookie.Path,
                          Cookie.Secure ? "1" : "0",
                          Cookie.HttpOnly ? "1" : "0",
                          end,
                          Cookie.Name,
                          Cookie.Value}
        .join(FieldEnd);
}

std::optional<CCookie> FromLine(const QByteArray& Line)
{
    const QByteArrayList fields = FieldsOf(Line);
    if (fields.isEmpty())
        return std::nullopt;
    const auto below = FlagOf(fields[1]);
    const auto secure = FlagOf(fields[3]);
    const auto httpOnly = FlagOf(fields[4]);
    bool hasEnd = false;
    const qint64 end = fields[5].toLongLong(&hasEnd);
    if (!below || !secure || !httpOnly || (!hasEnd && fields[5] != "-"))
        return std::nullopt;

    CCookie cookie;
    cookie.Domain = fields[0];
    cookie.HostOnly = !*below;
    cookie.Path = fields[2];
    cookie.Secure = *secure;
    cookie.HttpOnly = *httpOnly;
    if (hasEnd)
        cookie.Expires = QDateTime::fromSecsSinceEpoch(end, Qt::UTC);
    cookie.Name = fields[6];
    cookie.Value = fields[7];
    cookie.Persistent = true;
    return IsSound(cookie) ? std::optional(cookie) : std::nullopt;
}
} // namespace mdlCookieText
