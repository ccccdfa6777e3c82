// platform/dao/Values.cpp
// Conversions between the engine's types and SQLite's five.

#include "platform/dao/Values.h"

#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace dao::mdlValues
{

namespace
{

template<class Number> bool Fits(qint64 Data)
{
    return Data >= std::numeric_limits<Number>::min() && Data <= std::numeric_limits<Number>::max();
}

Value ToSingle(const Value& Source)
{
    const float data = float(Source.ToDouble());
    if (!std::isfinite(data))
        throw jetsql::MakeError(6);
    return Value::FromSingle(data);
}

Value Convert(FieldType Type, const Value& Source)
{
    switch (Type) {
    case FieldType::Boolean:
        return Value::FromBoolean(Source.ToBoolean());
    case FieldType::Byte:
        return Value::FromByte(Source.ToLong());
    case FieldType::Integer:
        return Value::FromInteger(Source.ToLong());
    case FieldType::Long:
        return Value::FromLong(Source.ToLong());
    case FieldType::Currency:
        return Value::FromCurrency(Source.ToDouble());
    case FieldType::Single:
        return ToSingle(Source);
    case FieldType::Double:
        return Value::FromDouble(Source.ToDouble());
    case FieldType::Date:
        return Value::FromDate(Source.ToDate());
    case FieldType::Text:
        return Value::FromText(Source.ToText());
    case FieldType::Memo:
        return Value::FromMemo(Source.ToText());
    default:
        return Source.ToType(Type);
    }
}

Value FromInteger(qint64 Data, FieldType Type)
{
    switch (Type) {
    case FieldType::Boolean:
        return Value::FromBoolean(Data != 0);
    case FieldType::Byte:
        return Fits<quint8>(Data) ? Value::FromByte(int(Data)) : Value::FromDouble(double(Data));
    case FieldType::Integer:
        return Fits<qint16>(Data) ? Value::FromInteger(int(Data)) : Value::FromDouble(double(Data));
    case FieldType::Null:
    case FieldType::Long:
        return Fits<qint32>(Data) ? Value::FromLong(qint32(Data)) : Value::FromDouble(double(Data));
    case FieldType::Currency:
        return Value::FromCurrency(double(Data));
    case FieldType::Single:
        return Value::FromSingle(float(Data));
    case FieldType::Date:
        return Value::FromDate(double(Data));
    case FieldType::Text:
        return Value::FromText(QString::number(Data));
    case FieldType::Memo:
        return Value::FromMemo(QString::number(Data));
    default:
        return Value::FromDouble(double(Data));
    }
}

Value FromReal(double Data, FieldType Type)
{
    switch (Type) {
    case FieldType::Boolean:
        return Value::FromBoolean(Data != 0);
    case FieldType::Currency:
        return Value::FromCurrency(Data);
    case FieldType::Single:
        return Value::FromSingle(float(Data));
    case FieldType::Date:
        return Value::FromDate(Data);
    case FieldType::Text:
        return Value::FromText(Value::FromDouble(Data).ToText());
    case FieldType::Memo:
        return Value::FromMemo(Value::FromDouble(Data).ToText());
    default:
        return Value::FromDouble(Data);
    }
}

Value FromBytes(sqlite3_stmt* Statement, int Column, FieldType Type)
{
    const auto* data = static_cast<const char*>(sqlite3_column_blob(Statement, Column));
    const QByteArray bytes(data, sqlite3_column_bytes(Statement, Column));
    return Value::FromBytes(bytes, Type == FieldType::LongBinary ? Type : FieldType::Binary);
}

} // namespace

Value ConvertTo(FieldType Type, const Value& Source)
{
    if (Type == FieldType::Null || Type == Source.Type())
        return Source;
    if (Source.IsNull())
        return Type == FieldType::Boolean ? Value::FromBoolean(false) : Value();
    try {
        return Convert(Type, Source);
    } catch (const Error& refused) {
        throw refused.Number == 13 ? jetsql::MakeError(3421) : refused;
    }
}

void Bind(sqlite3_stmt* Statement, int Index, const Value& Source)
{
    switch (Source.Type()) {
    case FieldType::Null:
        sqlite3_bind_null(Statement, Index);
        break;
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        sqlite3_bind_int(Statement, Index, Source.ToLong());
        break;
    case FieldType::Text:
    case FieldType::Memo: {
        const QString& data = Source.TextRef();
        sqlite3_bind_text64(Statement, Index, reinterpret_cast<const char*>(data.utf16()),
                            sqlite3_uint64(data.size()) * 2, SQLITE_STATIC, SQLITE_UTF16);
        break;
    }
    case FieldType::Binary:
    case FieldType::LongBinary: {
        const QByteArray& data = Source.BytesRef();
        // No bytes at all are not Null.
        sqlite3_bind_blob64(Statement, Index, data.isNull() ? "" : data.constData(), sqlite3_uint64(data.size()),
                            SQLITE_STATIC);
        break;
    }
    default:
        sqlite3_bind_double(Statement, Index, Source.ToDouble());
        break;
    }
}

QString ReadText(sqlite3_stmt* Statement, int Column, bool IsUtf16)
{
    // Asked for as bytes, a text comes without being copied into a terminated one first.
    const bool isPlain = IsUtf16 && sqlite3_column_type(Statement, Column) == SQLITE_TEXT;
    const void* data = isPlain ? sqlite3_column_blob(Statement, Column) : sqlite3_column_text16(Statement, Column);
    const int bytes = sqlite3_column_bytes16(Statement, Column);
    QString text(bytes / 2, Qt::Uninitialized);
    if (data)
        std::memcpy(text.data(), data, size_t(text.size()) * sizeof(QChar));
    return text;
}

Value Read(sqlite3_stmt* Statement, int Column, FieldType Type, bool IsUtf16)
{
    switch (sqlite3_column_type(Statement, Column)) {
    case SQLITE_INTEGER:
        return FromInteger(sqlite3_column_int64(Statement, Column), Type);
    case SQLITE_FLOAT:
        return FromReal(sqlite3_column_double(Statement, Column), Type);
    case SQLITE_TEXT:
        return Type == FieldType::Memo ? Value::FromMemo(ReadText(Statement, Column, IsUtf16))
                                       : Value::FromText(ReadText(Statement, Column, IsUtf16));
    case SQLITE_BLOB:
        return FromBytes(Statement, Column, Type);
    default:
        return {};
    }
}

} // namespace dao::mdlValues
