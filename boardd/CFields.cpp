// boardd/CFields.cpp
// Taking query strings and posted forms apart without trusting them.

#include "boardd/CFields.h"

#include "platform/text/Codepage932.h"

#include <algorithm>

namespace
{

QByteArray UrlDecoded(QByteArrayView Text)
{
    QByteArray plain = Text.toByteArray();
    return QByteArray::fromPercentEncoding(plain.replace('+', ' '));
}

/// The value of attribute Name in a header such as: form-data; name="honbun"; filename="a.txt"
QByteArray Attribute(QByteArrayView Header, const QByteArray& Name)
{
    const QByteArray header = Header.toByteArray();
    const QByteArray lower = header.toLower();
    qsizetype found = lower.indexOf(Name + '=');
    while (found > 0 && lower[found - 1] != ' ' && lower[found - 1] != ';')
        found = lower.indexOf(Name + '=', found + 1);
    if (found < 0)
        return {};
    qsizetype from = found + Name.size() + 1;
    const bool quoted = from < header.size() && header[from] == '"';
    from += quoted ? 1 : 0;
    qsizetype end = from;
    while (end < header.size() && (quoted ? header[end] != '"' : header[end] != ';'))
        ++end;
    return quoted ? header.mid(from, end - from) : header.mid(from, end - from).trimmed();
}

/// The name of the form field whose part begins with Head; empty when it has none.
QByteArray PartName(const QByteArray& Head)
{
    for (const QByteArray& line : Head.split('\n')) {
        if (line.toLower().startsWith("content-disposition:"))
            return Attribute(line, QByteArrayLiteral("name"));
    }
    return {};
}

} // namespace

void CFields::Add(QByteArray Name, QByteArray Value)
{
    if (m_fields.size() < MaxFields)
        m_fields.emplace_back(std::move(Name), std::move(Value));
}

CFields CFields::FromUrlEncoded(QByteArrayView Text)
{
    CFields fields;
    for (qsizetype from = 0; from < Text.size();) {
        qsizetype end = Text.indexOf('&', from);
        end = end < 0 ? Text.size() : end;
        const QByteArrayView pair = Text.sliced(from, end - from);
        const qsizetype equals = pair.indexOf('=');
        if (equals >= 0)
            fields.Add(UrlDecoded(pair.first(equals)), UrlDecoded(pair.sliced(equals + 1)));
        else if (!pair.isEmpty())
            fields.Add(UrlDecoded(pair), {});
        from = end + 1;
    }
    return fields;
}

std::optional<CFields> CFields::FromForm(QByteArrayView Body, QByteArrayView ContentType)
{
    const QByteArray type = ContentType.toByteArray();
    if (type.toLower().startsWith("application/x-www-form-urlencoded"))
        return FromUrlEncoded(Body);
    const QByteArray boundary = Attribute(ContentType, QByteArrayLiteral("boundary"));
    if (!type.toLower().startsWith("multipart/form-data") || boundary.isEmpty() || boundary.size() > 200)
        return std::nullopt;
    // A blank line first, so that every delimiter, the first one too, has its line end before it.
    const QByteArray body = "\r\n" + Body.toByteArray();
    const QByteArray delimiter = "\r\n--" + boundary;
    CFields fields;
    qsizetype at = body.indexOf(delimiter);
    while (at >= 0) {
        const qsizetype part = at + delimiter.size();
        if (body.mid(part, 2) == "--")
            return fields;
        const qsizetype next = body.indexOf(delimiter, part);
        if (next < 0)
            return std::nullopt;
        const QByteArray section = body.mid(part, next - part);
        const qsizetype headEnd = section.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return std::nullopt;
        fields.Add(PartName(section.first(headEnd)), section.sliced(headEnd + 4));
        at = next;
    }
    return std::nullopt;
}

bool CFields::Has(QByteArrayView Name) const
{
    return std::any_of(m_fields.begin(), m_fields.end(), [&](const auto& field) { return field.first == Name; });
}

QByteArray CFields::Bytes(QByteArrayView Name) const
{
    for (const auto& [name, value] : m_fields) {
        if (name == Name)
            return value;
    }
    return {};
}

QString CFields::Text(QByteArrayView Name) const
{
    const QByteArray bytes = Bytes(Name);
    const bool saidUtf8 = Bytes("_charset_").toLower() == "utf-8";
    if (text::IsValidUtf8(bytes) && (saidUtf8 || !text::IsValid932(bytes)))
        return QString::fromUtf8(bytes);
    return text::From932(bytes);
}

std::optional<qint32> CFields::Number(QByteArrayView Name) const
{
    const QByteArray bytes = Bytes(Name);
    const bool digits = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool fits = false;
    const qint32 number = bytes.toInt(&fits);
    return digits && fits ? std::optional(number) : std::nullopt;
}
