// sqlshell/CJsonOutput.cpp
// Objects written as they come, so that no result stands in memory a second time.

#include "sqlshell/CJsonOutput.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace sqlshell
{

namespace
{

QByteArray Escape(char Byte)
{
    switch (Byte) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return "\\u" + QByteArray::number(int(Byte), 16).rightJustified(4, '0');
    }
}

template<class Real> QByteArray JsonNumber(Real Number)
{
    if (!std::isfinite(Number))
        return "null";
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), Number).ptr;
    return QByteArray(digits.data(), end - digits.data());
}

} // namespace

QByteArray JsonText(QStringView Text)
{
    const QByteArray bytes = ToUtf8(Text);
    QByteArray json;
    json.reserve(bytes.size() + 2);
    json += '"';
    for (const char byte : bytes) {
        const bool isPlain = static_cast<unsigned char>(byte) >= 0x20 && byte != '"' && byte != '\\' && byte != 0x7F;
        if (isPlain)
            json += byte;
        else
            json += Escape(byte);
    }
    return json += '"';
}

QByteArray JsonValue(const dao::Value& Source)
{
    switch (Source.Type()) {
    case dao::FieldType::Null:
        return "null";
    case dao::FieldType::Boolean:
        return Source.ToBoolean() ? "true" : "false";
    case dao::FieldType::Byte:
    case dao::FieldType::Integer:
    case dao::FieldType::Long:
        return QByteArray::number(Source.ToLong());
    case dao::FieldType::Single:
        return JsonNumber(static_cast<float>(Source.ToDouble()));
    case dao::FieldType::Currency:
    case dao::FieldType::Double:
        return JsonNumber(Source.ToDouble());
    default:
        return JsonText(Source.ToText());
    }
}

void CJsonOutput::Row(const dao::Recordset& Source)
{
    QByteArray row = "[";
    for (int field = 0; field < Source.FieldCount(); ++field)
        row += (field > 0 ? "," : "") + JsonValue(Source.Get(field));
    Out().Put(row + ']');
}

bool CJsonOutput::Rows(dao::QueryType Type, dao::Recordset& Source)
{
    QByteArrayList names;
    for (int field = 0; field < Source.FieldCount(); ++field)
        names.append(JsonText(Source.Field(field).Name));
    Out().Put("{\"type\":" + QByteArray::number(int(Type)) + ",\"columns\":[" + names.join(',') + "],\"rows\":[");
    for (bool isFirst = true; !Source.Eof() && !IsStopped(); Source.MoveNext(), isFirst = false) {
        Out().Put(isFirst ? "" : ",");
        Row(Source);
    }
    const bool isWhole = Source.Eof();
    const dao::Error stopped = jetsql::MakeError(3059);
    Out().Put(isWhole ? QByteArray("]}\n") : "],\"error\":3059,\"message\":" + JsonText(stopped.Description) + "}\n");
    return isWhole;
}

void CJsonOutput::Affected(dao::QueryType Type, int Count)
{
    Out().Put("{\"type\":" + QByteArray::number(int(Type)) + ",\"affected\":" + QByteArray::number(Count) + "}\n");
}

void CJsonOutput::Type(dao::QueryType Type) { Out().Put("{\"type\":" + QByteArray::number(int(Type)) + "}\n"); }

void CJsonOutput::List(const CListing& Listing) { Text({}, Listing.Key, Listing.Json); }

void CJsonOutput::Done(const QString& Key, const QString& Name, const QString&) { Text({}, Key, Name); }

void CJsonOutput::Text(const QString&, const QString& Key, const QJsonValue& Json)
{
    Out().Put(QJsonDocument(QJsonObject{{Key, Json}}).toJson(QJsonDocument::Compact) + '\n');
}

void CJsonOutput::Refused(const CRefusal& Refusal)
{
    const dao::Error& error = Refusal.Error;
    QByteArray json = "{\"error\":" + QByteArray::number(error.Number) + ",\"message\":" + JsonText(error.Description);
    if (error.Offset >= 0)
        json += ",\"offset\":" + QByteArray::number(error.Offset);
    QByteArrayList names;
    for (const QString& name : Refusal.Missing)
        names.append(JsonText(name));
    if (!names.isEmpty())
        json += ",\"parameters\":[" + names.join(',') + ']';
    Out().Put(json + "}\n");
}

} // namespace sqlshell
