// platform/dao/CSchemaChanges.cpp
// Changing the catalogue: the file first, then what is known of it.

#include "platform/dao/CRun.h"
#include "platform/dao/CSchema.h"
#include "platform/dao/SchemaText.h"
#include "platform/text/Fold.h"

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

/// Runs a statement of the layer's own tables with its parameters in order.
void Run(CConnection& Connection, const QByteArray& Sql, const std::vector<Value>& Parameters)
{
    CRun run(Connection, Sql);
    int index = 0;
    for (const Value& parameter : Parameters)
        run.Bind(++index, parameter);
    run.Finish();
}

constexpr const char* OwnTables[] = {
    "CREATE TABLE IF NOT EXISTS \"~Tables\" (TableName TEXT PRIMARY KEY, Attributes LONG)",
    "CREATE TABLE IF NOT EXISTS \"~Fields\" (TableName TEXT, FieldName TEXT, AllowZeroLength BOOLEAN, Required "
    "BOOLEAN, "
    "Description MEMO TEXT, PRIMARY KEY (TableName, FieldName))",
    "CREATE TABLE IF NOT EXISTS \"~Indexes\" (TableName TEXT, IndexName TEXT, FileName TEXT, IsHidden BOOLEAN, "
    "PRIMARY KEY (TableName, IndexName))",
    "CREATE TABLE IF NOT EXISTS \"~Queries\" (Name TEXT PRIMARY KEY, Sql MEMO TEXT)",
};

constexpr const char* TablesWithNames[] = {"~Tables", "~Fields", "~Indexes"};

} // namespace

void CSchema::RequireOwnTables()
{
    if (!m_hasExtras)
        MakeOwnTables(m_connection);
}

void CSchema::MakeOwnTables(CConnection& Connection)
{
    for (const char* sql : OwnTables)
        Connection.Run(sql);
}

void CSchema::RequireFreeName(const QString& Name) const
{
    mdlSchemaText::RequireName(Name);
    if (FindTableDef(Name))
        throw jetsql::MakeError(3010, {Name});
    if (FindQuery(Name))
        throw jetsql::MakeError(3012, {Name});
}

const TableDef& CSchema::RequireTable(const QString& Name) const
{
    const TableDef* table = FindTableDef(Name);
    if (!table)
        throw jetsql::MakeError(3265);
    if (table->Attributes == TableDef::SystemAttributes)
        throw jetsql::MakeError(3328, {table->Name});
    return *table;
}

void CSchema::AppendTable(const TableDef& Wanted)
{
    mdlSchemaText::RequireSound(Wanted);
    RequireFreeName(Wanted.Name);
    const TableDef table = mdlSchemaText::WithFieldNames(Wanted);
    m_connection.Atomically([&] {
        RequireOwnTables();
        m_connection.Run(mdlSchemaText::CreateTable(table));
        WriteExtras(table);
        for (const IndexDef& index : table.Indexes)
            AppendIndex(table.Name, index);
    });
    Load();
}

void CSchema::WriteExtras(const TableDef& Table)
{
    if (Table.Attributes != 0)
        Run(m_connection, "INSERT INTO \"~Tables\" VALUES (?1, ?2)",
            {Value::FromText(Table.Name), Value::FromLong(Table.Attributes)});
    for (const FieldDef& field : Table.Fields)
        Run(m_connection, "INSERT INTO \"~Fields\" VALUES (?1, ?2, ?3, ?4, ?5)",
            {Value::FromText(Table.Name), Value::FromText(field.Name), Value::FromBoolean(field.AllowZeroLength),
             Value::FromBoolean(field.Required),
             field.Description.isEmpty() ? Value() : Value::FromText(field.Description)});
}

void CSchema::AppendIndex(const QString& Table, const IndexDef& Index)
{
    // The primary index is part of the table and has no name of its own in the file.
    const QString fileName = Index.Primary ? u""_s : FreeIndexName(Table, Index.Name);
    if (!Index.Primary)
        m_connection.Run(mdlSchemaText::CreateIndex(Table, Index, fileName));
    Run(m_connection, "INSERT INTO \"~Indexes\" VALUES (?1, ?2, ?3, ?4)",
        {Value::FromText(Table), Value::FromText(Index.Name), Value::FromText(fileName),
         Value::FromBoolean(Index.Hidden)});
}

QString CSchema::FreeIndexName(const QString& Table, const QString& Index)
{
    const QString first = Table + u'.' + Index;
    QString name = first;
    for (int number = 2;; ++number) {
        CRun run(m_connection, "SELECT 1 FROM sqlite_master WHERE name = ?1 COLLATE NOCASE");
        const Value wanted = Value::FromText(name);
        run.Bind(1, wanted);
        if (!run.Step())
            return name;
        // The index of a table that was renamed keeps its name in the file.
        name = first + u'.' + QString::number(number);
    }
}

void CSchema::DeleteTable(const QString& Name)
{
    const QString table = RequireTable(Name).Name;
    m_connection.Atomically([&] {
        m_connection.Run("DROP TABLE " + mdlSchemaText::Quoted(table));
        for (const char* own : TablesWithNames) {
            if (m_hasExtras)
                Run(m_connection,
                    "DELETE FROM " + mdlSchemaText::Quoted(QString::fromLatin1(own)) + " WHERE TableName = ?1",
                    {Value::FromText(table)});
        }
    });
    Load();
}

void CSchema::RenameInFile(const QString& OldName, const QString& NewName)
{
    m_connection.Run("ALTER TABLE " + mdlSchemaText::Quoted(OldName) + " RENAME TO " + mdlSchemaText::Quoted(NewName));
}

void CSchema::RenameTable(const QString& OldName, const QString& NewName)
{
    const QString table = RequireTable(OldName).Name;
    const bool isSameName = text::EqualText(table, NewName);
    if (!isSameName)
        RequireFreeName(NewName);
    m_connection.Atomically([&] {
        // SQLite takes a name in other letter case for one that is in use.
        const QString passingName = isSameName ? u"~Renamed"_s : table;
        if (isSameName)
            RenameInFile(table, passingName);
        RenameInFile(passingName, NewName);
        for (const char* own : TablesWithNames) {
            if (m_hasExtras)
                Run(m_connection,
                    "UPDATE " + mdlSchemaText::Quoted(QString::fromLatin1(own)) +
                        " SET TableName = ?2 WHERE TableName = ?1",
                    {Value::FromText(table), Value::FromText(NewName)});
        }
    });
    Load();
}

void CSchema::SaveQuery(const QString& Name, const QString& Sql)
{
    if (Name != TemporaryQuery) {
        m_connection.Atomically([&] {
            RequireOwnTables();
            Run(m_connection, "INSERT OR REPLACE INTO \"~Queries\" VALUES (?1, ?2)",
                {Value::FromText(Name), Value::FromText(Sql)});
        });
        m_hasExtras = true;
    }
    m_queries.insert_or_assign(text::Fold(Name), Query{Name, Sql});
}

void CSchema::DeleteQuery(const QString& Name)
{
    const auto found = m_queries.find(text::Fold(Name));
    if (found == m_queries.end())
        throw jetsql::MakeError(3265);
    if (found->second.Name != TemporaryQuery) {
        m_connection.Atomically([&] {
            Run(m_connection, "DELETE FROM \"~Queries\" WHERE Name = ?1", {Value::FromText(found->second.Name)});
        });
    }
    m_queries.erase(found);
}

} // namespace dao
