// platform/dao/CRecoveredTable.cpp
// Binding stored values to an INSERT.

#include "platform/dao/CRecoveredTable.h"

#include "platform/dao/CRun.h"
#include "platform/dao/FieldTypes.h"
#include "platform/dao/SchemaText.h"

#include <sqlite3.h>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;
using Kind = CStoredRow::Kind;

CRecoveredTable::CRecoveredTable(CConnection& Target, const QString& Name, CPageFile::Encoding Encoding)
    : m_target(Target)
    , m_encoding(Encoding)
{
    m_result.Name = Name;
    CRun run(Target, "SELECT name, type, pk, (SELECT count(*) FROM pragma_table_info(?1) WHERE pk > 0) "
                     "FROM pragma_table_info(?1)");
    const Value name = Value::FromText(Name);
    run.Bind(1, name);
    while (run.Step()) {
        FieldDef field;
        mdlFieldTypes::Read(run.Text(1), field);
        Column column;
        column.Name = mdlSchemaText::Quoted(run.Text(0));
        column.IsRowId =
            run.Number(2) == 1 && run.Number(3) == 1 && run.Text(1).compare(u"INTEGER"_s, Qt::CaseInsensitive) == 0;
        column.IsText = jetsql::IsText(field.Type) && !run.Text(1).isEmpty();
        column.IsNumber = jetsql::IsNumber(field.Type) || field.Type == FieldType::Date;
        m_columns.push_back(std::move(column));
    }
}

bool CRecoveredTable::LooksLikeMine(const CStoredRow& Row) const
{
    if (Row.Values().size() != m_columns.size())
        return false;
    return std::equal(m_columns.begin(), m_columns.end(), Row.Values().begin(),
                      [](const Column& Column, const CStoredRow::StoredValue& Value) {
                          const bool isNumber = Value.Type == Kind::Integer || Value.Type == Kind::Real;
                          return Value.Type == Kind::Null || (Column.IsText && Value.Type == Kind::Text) ||
                                 (Column.IsNumber && isNumber) || (!Column.IsText && !Column.IsNumber);
                      });
}

QByteArray CRecoveredTable::InsertStatement(size_t Count) const
{
    QByteArray names = "_rowid_";
    QByteArray places = "?1";
    for (size_t column = 0; column < Count; ++column) {
        if (m_columns[column].IsRowId)
            continue;
        names += ", " + m_columns[column].Name;
        places += ", ?" + QByteArray::number(int(column) + 2);
    }
    return "INSERT OR IGNORE INTO " + mdlSchemaText::Quoted(m_result.Name) + " (" + names + ") VALUES (" + places + ")";
}

void CRecoveredTable::Bind(sqlite3_stmt* Statement, int Index, const CStoredRow::StoredValue& Value) const
{
    const bool isWide = m_encoding != CPageFile::Encoding::Utf8;
    const auto encoding = static_cast<unsigned char>(m_encoding);
    auto size = sqlite3_uint64(Value.Bytes.size());
    switch (Value.Type) {
    case Kind::Integer:
        sqlite3_bind_int64(Statement, Index, Value.Integer);
        break;
    case Kind::Real:
        sqlite3_bind_double(Statement, Index, Value.Real);
        break;
    case Kind::Text:
        size -= isWide ? size % 2 : 0; // a cut text may end in the middle of a unit
        sqlite3_bind_text64(Statement, Index, Value.Bytes.data(), size, SQLITE_TRANSIENT, encoding);
        break;
    case Kind::Blob:
        sqlite3_bind_blob64(Statement, Index, Value.Bytes.data(), size, SQLITE_TRANSIENT);
        break;
    case Kind::Null:
        sqlite3_bind_null(Statement, Index);
        break;
    }
}

void CRecoveredTable::Add(const std::optional<CStoredRow>& Row)
{
    if (!Row || Row->Values().empty() || Row->Values().size() > m_columns.size()) {
        ++m_result.LostRows;
        return;
    }
    CRun run(m_target, InsertStatement(Row->Values().size()));
    run.BindNumber(1, Row->RowId());
    int index = 2;
    for (const CStoredRow::StoredValue& value : Row->Values()) {
        const bool isRowId = m_columns[size_t(index) - 2].IsRowId;
        if (!isRowId)
            Bind(run.Handle(), index, value);
        ++index;
    }
    run.Finish();
    const bool isAdded = sqlite3_changes(m_target.Handle()) > 0;
    ++(isAdded ? m_result.Rows : m_result.LostRows);
    m_result.CutRows += isAdded && Row->IsCut() ? 1 : 0;
}

} // namespace dao
