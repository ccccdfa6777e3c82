// platform/jetsql/CCall.cpp
// One call of a function of ours by SQLite: its arguments and its result.

#include "platform/jetsql/CCall.h"

#include "platform/jetsql/Compile.h"
#include "platform/jetsql/Error.h"
#include "platform/text/Format.h"

#include <cmath>
#include <limits>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr QLatin1StringView ErrorPrefix = "engine error "_L1;

}

bool CCall::IsNull(int Index) const { return sqlite3_value_type(m_args[Index]) == SQLITE_NULL; }
bool CCall::IsText(int Index) const { return sqlite3_value_type(m_args[Index]) == SQLITE_TEXT; }
bool CCall::IsWhole(int Index) const { return sqlite3_value_type(m_args[Index]) == SQLITE_INTEGER; }

QString CCall::Text(int Index) const
{
    switch (sqlite3_value_type(m_args[Index])) {
    case SQLITE_NULL: return {};
    case SQLITE_INTEGER: return QString::number(sqlite3_value_int64(m_args[Index]));
    case SQLITE_FLOAT: return text::NumberToText(sqlite3_value_double(m_args[Index]));
    case SQLITE_BLOB: return Bytes(Index).ToText();
    default: {
        const auto* units = static_cast<const QChar*>(sqlite3_value_text16(m_args[Index]));
        return QString(units, sqlite3_value_bytes16(m_args[Index]) / 2);
    }
    }
}

QStringView CCall::View(int Index, QString& Buffer) const
{
    if (!IsText(Index))
        return Buffer = Text(Index);
    const auto* units = static_cast<const char16_t*>(sqlite3_value_text16(m_args[Index]));
    return {units, sqlite3_value_bytes16(m_args[Index]) / 2};
}

Value CCall::Bytes(int Index) const
{
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(m_args[Index]));
    return Value::FromBytes(QByteArray(bytes, sqlite3_value_bytes(m_args[Index])));
}

double CCall::Number(int Index) const
{
    if (sqlite3_value_type(m_args[Index]) == SQLITE_BLOB)
        throw MakeError(13);
    return IsText(Index) ? Value::FromText(Text(Index)).ToDouble() : sqlite3_value_double(m_args[Index]);
}

qint32 CCall::Long(int Index) const
{
    return Value::FromDouble(Number(Index)).ToLong();
}

qint64 CCall::Whole(int Index) const { return sqlite3_value_int64(m_args[Index]); }

double CCall::Date(int Index) const
{
    return Any(Index, FieldType::Null).ToDate();
}

Value CCall::Any(int Index, FieldType Type) const
{
    switch (sqlite3_value_type(m_args[Index])) {
    case SQLITE_NULL: return {};
    case SQLITE_TEXT: return Value::FromText(Text(Index));
    case SQLITE_BLOB: return Bytes(Index);
    case SQLITE_INTEGER: {
        const qint64 whole = Whole(Index);
        if (whole < std::numeric_limits<qint32>::min() || whole > std::numeric_limits<qint32>::max())
            return Value::FromDouble(double(whole));
        if (Type == FieldType::Boolean)
            return Value::FromBoolean(whole != 0);
        return Type == FieldType::Date ? Value::FromDate(double(whole)) : Value::FromLong(qint32(whole));
    }
    default: break;
    }
    const double number = sqlite3_value_double(m_args[Index]);
    switch (Type) {
    case FieldType::Date: return Value::FromDate(number);
    case FieldType::Currency: return Value::FromCurrency(number);
    case FieldType::Single: return Value::FromSingle(float(number));
    default: return Value::FromDouble(number);
    }
}

void CCall::SetNull() { sqlite3_result_null(m_context); }

void CCall::SetText(const QString& Data)
{
    if (Data.size() > MaxText)
        throw MakeError(6);
    sqlite3_result_text64(m_context, reinterpret_cast<const char*>(Data.utf16()), sqlite3_uint64(Data.size()) * 2, SQLITE_TRANSIENT,
                          SQLITE_UTF16);
}

void CCall::SetBytes(const QByteArray& Data)
{
    sqlite3_result_blob64(m_context, Data.constData(), sqlite3_uint64(Data.size()), SQLITE_TRANSIENT);
}

void CCall::SetWhole(qint64 Data) { sqlite3_result_int64(m_context, Data); }

void CCall::SetLong(qint64 Data)
{
    if (Data < std::numeric_limits<qint32>::min() || Data > std::numeric_limits<qint32>::max())
        throw MakeError(6);
    SetWhole(Data);
}

void CCall::SetNumber(double Data)
{
    if (!std::isfinite(Data))
        throw MakeError(6);
    sqlite3_result_double(m_context, Data);
}

void CCall::SetValue(const Value& Data)
{
    if (Data.IsNull())
        SetNull();
    else if (jetsql::IsText(Data.Type()))
        SetText(Data.TextRef());
    else if (jetsql::IsWhole(Data.Type()))
        SetWhole(Data.WholePart());
    else if (jetsql::IsBytes(Data.Type()))
        SetBytes(Data.BytesRef());
    else
        SetNumber(Data.RealPart());
}

void CCall::SetArgument(int Index) { sqlite3_result_value(m_context, m_args[Index]); }

void CCall::SetError(int Number)
{
    const QByteArray message = QByteArray(ErrorPrefix.data(), ErrorPrefix.size()) + QByteArray::number(Number);
    sqlite3_result_error(m_context, message.constData(), int(message.size()));
}

Error FunctionError(QStringView Message)
{
    if (Message.startsWith(ErrorPrefix)) {
        bool isNumber = false;
        const int number = Message.mid(ErrorPrefix.size()).toInt(&isNumber);
        if (isNumber)
            return MakeError(number);
    }
    if (Message.contains("too big"_L1))
        return MakeError(6);
    // It cannot put some orders of nested outer joins into one of its own.
    if (Message.contains("ON clause references"_L1))
        return MakeError(3258);
    // SQLite's own bounds: nobody else's statement is that deep or that wide.
    for (const QLatin1StringView limit : {"parser stack overflow"_L1, "Expression tree is too large"_L1, "too many"_L1, "at most"_L1}) {
        if (Message.contains(limit))
            return MakeError(3360);
    }
    return {};
}

void Require(bool IsRight)
{
    if (!IsRight)
        throw MakeError(5);
}

}
