// store/CTableCopy.cpp
// Reading a row, giving it to the new table, and counting what that refuses.

#include "store/CTableCopy.h"

#include "store/FileVersion.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DuplicateKey = 3022;
constexpr int BrokenOff = 3059;

/// Rows between two reports.
constexpr int RowsAtOnce = 100;

const dao::TableDef& Definition(dao::Database& Db, const QString& Table)
{
    const auto& tables = Db.TableDefs();
    const auto found =
        std::find_if(tables.begin(), tables.end(), [&](const dao::TableDef& Def) { return Def.Name == Table; });
    if (found == tables.end())
        throw jetsql::MakeError(3011, {Table});
    return *found;
}

/// The number of a field, -1 where the table has none of that name.
int FieldIndex(const dao::Recordset& Rows, const QString& Name)
{
    try {
        return Rows.FieldIndex(Name);
    } catch (const dao::Error&) {
        return -1;
    }
}

} // namespace

CTableCopy::CTableCopy(dao::Database& Db, const QString& OldTable, const QString& NewTable, const QStringList& Fields)
    : m_old(Db.OpenRecordset(OldTable, dao::RecordsetType::Table))
    , m_new(Db.OpenRecordset(NewTable, dao::RecordsetType::Table))
{
    const dao::TableDef& table = Definition(Db, NewTable);
    for (const QString& field : Fields) {
        const int from = FieldIndex(*m_old, field);
        const dao::FieldDef& target = *table.FindField(field);
        const bool isLong =
            target.Type == dao::FieldType::Long && !table.FindIndex(u"PK")->Fields.contains(target.Name);
        if (from >= 0 || isLong)
            m_fields.push_back(
                {from, m_new->FieldIndex(field), target.AllowZeroLength, isLong, target.Type == dao::FieldType::Date});
    }
    for (const QString& field : table.FindIndex(u"PK")->Fields)
        m_key.push_back(FieldIndex(*m_old, field));
    m_new->SetIndex(u"PK");
}

void CTableCopy::AddRows(const dao::Progress& Report)
{
    const int total = std::max(1, m_old->RecordCount());
    for (int row = 0; !m_old->Eof(); ++row, m_old->MoveNext()) {
        if (Report && row % RowsAtOnce == 0 && !Report(int(100LL * row / total)))
            throw jetsql::MakeError(BrokenOff);
        AddRow();
    }
}

void CTableCopy::AddRow()
{
    try {
        m_new->AddNew();
        SetFields(dao::Value::FromLong(0));
        m_new->Update();
    } catch (const dao::Error& refusal) {
        if (mdlFileVersion::IsFileTrouble(refusal.Number))
            throw;
        if (refusal.Number != DuplicateKey || !SeekRow() || !IsSameRow())
            ++m_leftOut;
    }
}

void CTableCopy::ChangeRows()
{
    for (; !m_old->Eof(); m_old->MoveNext()) {
        if (SeekRow())
            ChangeRow();
        else
            ++m_leftOut;
    }
}

void CTableCopy::ChangeRow()
{
    try {
        m_new->Edit();
        SetFields({});
        m_new->Update();
    } catch (const dao::Error& refusal) {
        if (mdlFileVersion::IsFileTrouble(refusal.Number))
            throw;
        ++m_leftOut;
    }
}

void CTableCopy::SetFields(const dao::Value& MissingNumber)
{
    for (const Pair& field : m_fields) {
        const dao::Value value = OldValue(field);
        if (!field.IsLong || !value.IsNull())
            m_new->Set(field.To, value);
        else if (!MissingNumber.IsNull())
            m_new->Set(field.To, MissingNumber);
    }
}

dao::Value CTableCopy::OldValue(const Pair& Field) const
{
    if (Field.From < 0)
        return {};
    const dao::Value value = m_old->Get(Field.From);
    if (!jetsql::IsText(value.Type()))
        return value;
    // A column that was declared as text, or not at all, holds a date as the number of its days.
    bool isNumber = false;
    const double days = Field.IsDate ? value.TextRef().toDouble(&isNumber) : 0;
    if (isNumber)
        return dao::Value::FromDate(days);
    return !Field.AllowsEmpty && value.TextRef().isEmpty() ? dao::Value() : value;
}

bool CTableCopy::SeekRow()
{
    std::vector<dao::Value> keys;
    for (const int field : m_key)
        keys.push_back(field < 0 ? dao::Value() : m_old->Get(field));
    try {
        m_new->Seek(u"=", keys);
    } catch (const dao::Error& refusal) {
        if (mdlFileVersion::IsFileTrouble(refusal.Number))
            throw;
        return false; // a key that is no number
    }
    return !m_new->NoMatch();
}

bool CTableCopy::IsSameRow() const
{
    return std::all_of(m_fields.begin(), m_fields.end(), [this](const Pair& Field) {
        const dao::Value old = OldValue(Field);
        const dao::Value stored = m_new->Get(Field.To);
        return (Field.IsLong && old.IsNull()) || (old.IsNull() == stored.IsNull() && old.ToText() == stored.ToText());
    });
}
