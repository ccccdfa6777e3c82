// platform/dao/CSchemaRebuild.cpp
// Changing a table that has rows.

#include "platform/dao/CRun.h"
#include "platform/dao/CSchemaFile.h"
#include "platform/dao/OwnTables.h"
#include "platform/dao/SchemaText.h"

#include <sqlite3.h>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;
using mdlSchemaText::Quoted;

namespace
{

constexpr QStringView PassingName = u"~Rebuilt";

/// Lets a table be renamed without a look at triggers and views that speak of the name it is going to have.
class CPlainRename
{
public:
    explicit CPlainRename(sqlite3* Handle)
        : m_handle(Handle)
    {
        Set(1);
    }
    ~CPlainRename() { Set(0); }
    CPlainRename(const CPlainRename&) = delete;
    CPlainRename& operator=(const CPlainRename&) = delete;

private:
    void Set(int IsOn) { sqlite3_db_config(m_handle, SQLITE_DBCONFIG_LEGACY_ALTER_TABLE, IsOn, nullptr); }

    sqlite3* m_handle;
};

bool HasField(const TableDef& Table, QStringView Name)
{
    return std::any_of(Table.Fields.begin(), Table.Fields.end(),
                       [Name](const FieldDef& field) { return field.Name.compare(Name, Qt::CaseInsensitive) == 0; });
}

/// A word for SQLite's row number that is no field of either; empty when all are.
QByteArray RowNumber(const TableDef& Old, const TableDef& New)
{
    for (const char* word : {"_rowid_", "rowid", "oid"}) {
        const QString name = QString::fromLatin1(word);
        if (!HasField(Old, name) && !HasField(New, name))
            return word;
    }
    return {};
}

/// The field that New has more than Old, when it is the only difference and SQLite can add it to a table with rows.
const FieldDef* PlainAddition(const TableDef& Old, const TableDef& New)
{
    if (New.Fields.size() != Old.Fields.size() + 1)
        return nullptr;
    const FieldDef& last = New.Fields.back();
    TableDef others = New;
    others.Fields.pop_back();
    const bool isOnlyThat = mdlSchemaText::CreateTable(others) == mdlSchemaText::CreateTable(Old);
    const bool isInPrimary = New.Primary() && New.Primary()->Fields.contains(last.Name);
    const bool isPlain = !last.AutoIncrement && !last.Required && !isInPrimary;
    return isOnlyThat && isPlain ? &last : nullptr;
}

bool IsOfAnotherProgram(CConnection& Connection, const QString& Table)
{
    CRun run(Connection, "SELECT 1 FROM \"~Fields\" WHERE TableName = ?1");
    const Value name = Value::FromText(Table);
    run.Bind(1, name);
    return !run.Step();
}

} // namespace

void CSchemaFile::Change(const TableDef& Old, const TableDef& New)
{
    const FieldDef* added = PlainAddition(Old, New);
    const bool isForeign = IsOfAnotherProgram(m_connection, Old.Name);
    if (added)
        m_connection.Run(mdlSchemaText::AddField(New.Name, *added));
    else if (mdlSchemaText::CreateTable(Old) != mdlSchemaText::CreateTable(New))
        isForeign ? ChangeForeign(Old, New) : Rebuild(Old, New);
    if (!isForeign)
        WriteFields(New);
}

// Another program's table may be more than a definition tells (defaults, collations, conditions), so it is never
// rebuilt from one.
void CSchemaFile::ChangeForeign(const TableDef& Old, const TableDef& New)
{
    const auto gone = std::find_if(Old.Fields.begin(), Old.Fields.end(),
                                   [&New](const FieldDef& field) { return !HasField(New, field.Name); });
    if (gone == Old.Fields.end() || New.Fields.size() + 1 != Old.Fields.size())
        throw jetsql::MakeError(3219);
    m_connection.Run("ALTER TABLE " + Quoted(Old.Name) + " DROP COLUMN " + Quoted(gone->Name));
}

void CSchemaFile::Rebuild(const TableDef& Old, const TableDef& New)
{
    const QByteArrayList dependents = DependentSql(Old.Name);
    const qint64 last = Old.Counter() && New.Counter() ? LastNumber(Old.Name) : 0;
    const auto relations = RelationsOf(Old.Name);
    for (const Relation& relation : relations)
        DropTriggers(relation);
    TableDef passing = New;
    passing.Name = PassingName.toString();
    m_connection.Run(mdlSchemaText::CreateTable(passing));
    CopyRows(Old, passing);
    m_connection.Run("DROP TABLE " + Quoted(Old.Name));
    {
        const CPlainRename rename(m_connection.Handle());
        RenameInFile(passing.Name, New.Name);
    }
    if (last > 0)
        KeepCounter(New.Name, last);
    for (const QByteArray& sql : dependents)
        m_connection.Run(sql);
    for (const Relation& relation : relations)
        MakeTriggers(relation);
}

void CSchemaFile::CopyRows(const TableDef& Old, const TableDef& New)
{
    QByteArrayList fields;
    for (const FieldDef& field : New.Fields) {
        const FieldDef* old = Old.FindField(field.Name);
        // A new counter gives numbers to the rows, in their order.
        if (old && old->AutoIncrement >= field.AutoIncrement)
            fields += Quoted(field.Name);
    }
    const QByteArray rowNumber = RowNumber(Old, New);
    const QByteArray order = rowNumber.isEmpty() ? QByteArray() : " ORDER BY " + rowNumber;
    // Open recordsets know their rows by this number.
    if (!New.Counter() && !rowNumber.isEmpty())
        fields += rowNumber;
    if (fields.isEmpty())
        fields += rowNumber;
    const QByteArray list = fields.join(", ");
    m_connection.Run("INSERT INTO " + Quoted(New.Name) + " (" + list + ") SELECT " + list + " FROM " +
                     Quoted(Old.Name) + order);
}

QByteArrayList CSchemaFile::DependentSql(const QString& Table)
{
    QByteArrayList statements;
    CRun run(m_connection,
             "SELECT sql FROM sqlite_master WHERE tbl_name = ?1 AND type IN ('index', 'trigger') "
             "AND sql IS NOT NULL AND NOT (type = 'trigger' AND substr(name, 1, 1) = '~') ORDER BY rowid");
    const Value name = Value::FromText(Table);
    run.Bind(1, name);
    while (run.Step())
        statements += run.Text(0).toUtf8();
    return statements;
}

qint64 CSchemaFile::LastNumber(const QString& Table)
{
    CRun run(m_connection, "SELECT seq FROM sqlite_sequence WHERE name = ?1");
    const Value name = Value::FromText(Table);
    run.Bind(1, name);
    return run.Step() ? run.Number(0) : 0;
}

// The numbers of rows that were deleted are not given out again.
void CSchemaFile::KeepCounter(const QString& Table, qint64 Last)
{
    const std::vector<Value> values = {Value::FromText(Table), Value::FromDouble(double(Last))};
    mdlOwnTables::Run(m_connection, "DELETE FROM sqlite_sequence WHERE name = ?1", {values.front()});
    mdlOwnTables::Run(m_connection, "INSERT INTO sqlite_sequence (name, seq) VALUES (?1, CAST(?2 AS INTEGER))", values);
}

} // namespace dao
