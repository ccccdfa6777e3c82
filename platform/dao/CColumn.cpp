// platform/dao/CColumn.cpp
// Typed storage with a way out for values of another type.

#include "platform/dao/CColumn.h"

#include "platform/dao/Values.h"

#include <sqlite3.h>

#include <limits>

namespace dao
{

namespace
{

/// A text that is not empty has a block on the heap, with a header and what the heap keeps before it.
qint64 TextSize(const QString& Text)
{
    constexpr qint64 blockSize = 32;
    return qint64(sizeof(QString)) + (Text.isEmpty() ? 0 : blockSize + 2 * Text.size());
}

} // namespace

CColumn::CColumn(FieldType Type)
    : m_type(Type)
{
    switch (Type) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        m_data = Longs();
        break;
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
        m_data = Doubles();
        break;
    case FieldType::Text:
    case FieldType::Memo:
        m_data = Texts();
        break;
    default:
        m_data = Mixed();
        break;
    }
}

size_t CColumn::Count() const
{
    return std::visit([](const auto& Data) { return Data.size(); }, m_data);
}

qint64 CColumn::Append(sqlite3_stmt* Statement, int Column, bool IsUtf16)
{
    if (!AppendTyped(Statement, Column, IsUtf16)) {
        Mix();
        std::get<Mixed>(m_data).push_back(mdlValues::Read(Statement, Column, m_type, IsUtf16));
    }
    return LastSize();
}

qint64 CColumn::LastSize() const
{
    if (const auto* texts = std::get_if<Texts>(&m_data))
        return TextSize(texts->back());
    if (const auto* mixed = std::get_if<Mixed>(&m_data)) {
        const Value& last = mixed->back();
        return qint64(sizeof(Value)) +
               (jetsql::IsBytes(last.Type()) ? last.BytesRef().size() : TextSize(last.TextRef()));
    }
    return std::holds_alternative<Longs>(m_data) ? sizeof(qint32) : sizeof(double);
}

bool CColumn::AppendTyped(sqlite3_stmt* Statement, int Column, bool IsUtf16)
{
    const int stored = sqlite3_column_type(Statement, Column);
    if (stored == SQLITE_NULL)
        return AppendNull();
    if (auto* texts = std::get_if<Texts>(&m_data)) {
        if (stored == SQLITE_TEXT)
            texts->push_back(mdlValues::ReadText(Statement, Column, IsUtf16));
        return stored == SQLITE_TEXT;
    }
    const bool isNumber =
        stored == SQLITE_INTEGER || (stored == SQLITE_FLOAT && std::holds_alternative<Doubles>(m_data));
    if (!isNumber)
        return false;
    if (auto* doubles = std::get_if<Doubles>(&m_data)) {
        doubles->push_back(sqlite3_column_double(Statement, Column));
    } else if (auto* longs = std::get_if<Longs>(&m_data)) {
        const qint64 data = sqlite3_column_int64(Statement, Column);
        if (data < std::numeric_limits<qint32>::min() || data > std::numeric_limits<qint32>::max())
            return false;
        longs->push_back(qint32(data));
    } else {
        return false;
    }
    if (!m_nulls.empty())
        m_nulls.push_back(false);
    return true;
}

bool CColumn::AppendNull()
{
    if (auto* texts = std::get_if<Texts>(&m_data)) {
        texts->emplace_back();
        return true;
    }
    if (std::holds_alternative<Mixed>(m_data))
        return false;
    if (m_nulls.empty())
        m_nulls.assign(Count(), false);
    m_nulls.push_back(true);
    if (auto* doubles = std::get_if<Doubles>(&m_data))
        doubles->push_back(0);
    else
        std::get<Longs>(m_data).push_back(0);
    return true;
}

void CColumn::Mix()
{
    if (std::holds_alternative<Mixed>(m_data))
        return;
    Mixed mixed;
    const qsizetype count = qsizetype(Count());
    for (qsizetype row = 0; row < count; ++row)
        mixed.push_back(At(row));
    m_data = std::move(mixed);
    m_nulls.clear();
}

Value CColumn::FromLong(qint32 Data) const
{
    switch (m_type) {
    case FieldType::Boolean:
        return Value::FromBoolean(Data != 0);
    case FieldType::Byte:
        return Data >= 0 && Data <= 255 ? Value::FromByte(Data) : Value::FromLong(Data);
    case FieldType::Integer:
        return Data == qint16(Data) ? Value::FromInteger(Data) : Value::FromLong(Data);
    default:
        return Value::FromLong(Data);
    }
}

Value CColumn::FromDouble(double Data) const
{
    switch (m_type) {
    case FieldType::Currency:
        return Value::FromCurrency(Data);
    case FieldType::Single:
        return Value::FromSingle(float(Data));
    case FieldType::Date:
        return Value::FromDate(Data);
    default:
        return Value::FromDouble(Data);
    }
}

Value CColumn::At(qsizetype Row) const
{
    if (IsNull(Row))
        return {};
    if (const auto* longs = std::get_if<Longs>(&m_data))
        return FromLong((*longs)[size_t(Row)]);
    if (const auto* doubles = std::get_if<Doubles>(&m_data))
        return FromDouble((*doubles)[size_t(Row)]);
    if (const auto* texts = std::get_if<Texts>(&m_data)) {
        const QString& data = (*texts)[size_t(Row)];
        return m_type == FieldType::Memo ? Value::FromMemo(data) : Value::FromText(data);
    }
    return std::get<Mixed>(m_data)[size_t(Row)];
}

qint32 CColumn::Long(qsizetype Row) const
{
    if (const auto* longs = std::get_if<Longs>(&m_data))
        return (*longs)[size_t(Row)];
    return At(Row).ToLong();
}

double CColumn::Double(qsizetype Row) const
{
    if (const auto* doubles = std::get_if<Doubles>(&m_data))
        return (*doubles)[size_t(Row)];
    if (const auto* longs = std::get_if<Longs>(&m_data))
        return (*longs)[size_t(Row)];
    return At(Row).ToDouble();
}

QString CColumn::Text(qsizetype Row) const
{
    if (const auto* texts = std::get_if<Texts>(&m_data))
        return (*texts)[size_t(Row)];
    return At(Row).ToText();
}

bool CColumn::IsNull(qsizetype Row) const
{
    if (const auto* texts = std::get_if<Texts>(&m_data))
        return (*texts)[size_t(Row)].isNull();
    if (const auto* mixed = std::get_if<Mixed>(&m_data))
        return (*mixed)[size_t(Row)].IsNull();
    return IsNullNumber(Row);
}

} // namespace dao
