// platform/dao/CSchema.cpp
// Reading the catalogue.

#include "platform/dao/CSchema.h"

#include "platform/dao/CRun.h"
#include "platform/dao/FieldTypes.h"
#include "platform/dao/OwnTables.h"
#include "platform/jetsql/CWriter.h"
#include "platform/text/Fold.h"

#include <sqlite3.h>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

/// How an index came into being, as SQLite tells it.
bool IsPrimary(const QString& Origin) { return Origin == u"pk"_s; }

} // namespace

CSchema::CSchema(CConnection& Connection)
    : m_connection(Connection)
    , m_file(Connection)
{
    Load();
}

void CSchema::Load()
{
    std::erase_if(m_queries, [](const auto& Entry) { return Entry.second.Name != TemporaryQuery; });
    m_tables.clear();
    m_infos.clear();
    m_version = m_connection.RunForNumber("PRAGMA schema_version");
    if (m_dataVersion == 0)
        m_dataVersion = m_connection.RunForNumber("PRAGMA data_version");
    m_hasExtras = HasFileTable(u"~Queries"_s);
    m_hasConstraints = HasFileTable(u"~Constraints"_s);
    LoadTables();
    if (m_hasExtras)
        LoadQueries();
}

bool CSchema::IsOutdated() { return m_version != m_connection.RunForNumber("PRAGMA schema_version"); }

// A saved query is a row: it changes without the structure being another.
bool CSchema::Refresh()
{
    const qint64 now = m_connection.RunForNumber("PRAGMA data_version");
    if (now == m_dataVersion && !IsOutdated())
        return false;
    m_dataVersion = now;
    Load();
    return true;
}

bool CSchema::HasFileTable(const QString& Name)
{
    CRun run(m_connection, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1");
    const Value name = Value::FromText(Name);
    run.Bind(1, name);
    return run.Step();
}

void CSchema::LoadTables()
{
    QStringList names;
    {
        CRun run(m_connection, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
                               "ESCAPE '\\' ORDER BY rowid");
        while (run.Step())
            names.append(run.Text(0));
    }
    for (const QString& name : names)
        LoadTable(name);
}

void CSchema::LoadTable(const QString& Name)
{
    TableDef table;
    table.Name = Name;
    table.Attributes = mdlOwnTables::IsOne(Name) ? TableDef::SystemAttributes : 0;
    jetsql::TableInfo info;
    LoadFields(table);
    LoadIndexes(table, info);
    LoadRowNumberKey(table, info);
    if (m_hasExtras)
        LoadExtras(table);
    if (m_hasConstraints)
        LoadConstraints(table);
    AddInfo(table, std::move(info));
    m_tables.push_back(std::move(table));
}

void CSchema::LoadFields(TableDef& Table)
{
    CRun run(m_connection, "SELECT name, type, \"notnull\", pk FROM pragma_table_info(?1)");
    const Value name = Value::FromText(Table.Name);
    run.Bind(1, name);
    while (run.Step()) {
        FieldDef field;
        field.Name = run.Text(0);
        mdlFieldTypes::Read(run.Text(1), field);
        field.Required = run.Number(2) != 0 && field.Type != FieldType::Boolean;
        field.AllowZeroLength = jetsql::IsText(field.Type);
        field.AutoIncrement = run.Number(3) != 0 && IsCounter(Table.Name, field.Name);
        Table.Fields.push_back(std::move(field));
    }
}

bool CSchema::IsCounter(const QString& Table, const QString& Field)
{
    int counts = 0;
    const int code =
        sqlite3_table_column_metadata(m_connection.Handle(), "main", Table.toUtf8().constData(),
                                      Field.toUtf8().constData(), nullptr, nullptr, nullptr, nullptr, &counts);
    return code == SQLITE_OK && counts != 0;
}

void CSchema::LoadExtras(TableDef& Table)
{
    const Value name = Value::FromText(Table.Name);
    CRun attributes(m_connection, "SELECT Attributes FROM \"~Tables\" WHERE TableName = ?1");
    attributes.Bind(1, name);
    if (attributes.Step())
        Table.Attributes |= int(attributes.Number(0));
    CRun extras(m_connection,
                "SELECT FieldName, AllowZeroLength, Required, Description FROM \"~Fields\" WHERE TableName = ?1");
    extras.Bind(1, name);
    while (extras.Step()) {
        const QString fieldName = extras.Text(0);
        for (FieldDef& field : Table.Fields) {
            if (field.Name != fieldName)
                continue;
            field.AllowZeroLength = extras.Number(1) != 0;
            field.Required = extras.Number(2) != 0;
            field.Description = extras.Text(3);
        }
    }
}

void CSchema::LoadIndexes(TableDef& Table, jetsql::TableInfo& Info)
{
    // An index that another program made has no entry of ours and goes by its name in the file.
    const QByteArray ours = m_hasExtras ? "(SELECT IndexName FROM \"~Indexes\" WHERE TableName = ?1 AND FileName = "
                                          "CASE origin WHEN 'pk' THEN '' ELSE name END), "
                                          "(SELECT IsHidden FROM \"~Indexes\" WHERE TableName = ?1 AND FileName = name)"
                                        : "NULL, 0";
    CRun run(m_connection,
             "SELECT name, origin, \"unique\", partial, " + ours + " FROM pragma_index_list(?1) ORDER BY seq DESC");
    const Value name = Value::FromText(Table.Name);
    run.Bind(1, name);
    while (run.Step()) {
        const QString fileName = run.Text(0);
        IndexDef index;
        index.Primary = IsPrimary(run.Text(1));
        index.Unique = run.Number(2) != 0;
        index.Name = run.Text(4);
        index.Hidden = run.Number(5) != 0;
        if (index.Name.isEmpty())
            index.Name = index.Primary ? u"PrimaryKey"_s : fileName;
        const std::vector<int> fields = IndexFields(fileName, Table, index);
        const bool isWhole = run.Number(3) == 0 && !fields.empty();
        if (isWhole && index.Unique)
            Info.UniqueKeys.push_back(fields);
        // A partial index is one of ours where we know it by name: it leaves out Null.
        const bool isKnown = !fields.empty() && (isWhole || !run.Text(4).isEmpty());
        if (isKnown && !index.Hidden)
            Table.Indexes.push_back(std::move(index));
    }
}

std::vector<int> CSchema::IndexFields(const QString& FileName, const TableDef& Table, IndexDef& Index)
{
    CRun run(m_connection, "SELECT cid, \"desc\" FROM pragma_index_xinfo(?1) WHERE key ORDER BY seqno");
    const Value name = Value::FromText(FileName);
    run.Bind(1, name);
    std::vector<int> fields;
    while (run.Step()) {
        // Negative for the rowid and for expressions: no index over fields.
        if (run.Number(0) < 0)
            return {};
        fields.push_back(int(run.Number(0)));
        Index.Fields.append(Table.Fields[size_t(fields.back())].Name);
        if (run.Number(1) != 0)
            Index.Descending.append(Index.Fields.back());
    }
    return fields;
}

// SQLite has no index for a primary key that is its own row number, but it finds rows by it all the same.
void CSchema::LoadRowNumberKey(TableDef& Table, jetsql::TableInfo& Info)
{
    CRun run(m_connection,
             "SELECT cid, name FROM pragma_table_info(?1) WHERE pk = 1 AND type = 'INTEGER' COLLATE NOCASE "
             "AND NOT EXISTS (SELECT 1 FROM pragma_index_list(?1) WHERE origin = 'pk')");
    const Value name = Value::FromText(Table.Name);
    run.Bind(1, name);
    if (!run.Step())
        return;
    Info.UniqueKeys.push_back({int(run.Number(0))});
    QString indexName = u"PrimaryKey"_s;
    if (m_hasExtras) {
        CRun ours(m_connection, "SELECT (SELECT IndexName FROM \"~Indexes\" WHERE TableName = ?1 AND FileName = ''), "
                                "EXISTS (SELECT 1 FROM \"~Fields\" WHERE TableName = ?1)");
        ours.Bind(1, name);
        ours.Step();
        if (ours.Number(1) != 0)
            indexName = ours.Text(0);
    }
    if (!indexName.isEmpty())
        Table.Indexes.insert(Table.Indexes.begin(), {indexName, {run.Text(1)}, true, true, false});
}

void CSchema::LoadConstraints(TableDef& Table)
{
    CRun run(m_connection, "SELECT Name, Kind, FieldNames, ForeignTable, ForeignFields FROM \"~Constraints\" "
                           "WHERE TableName = ?1 ORDER BY rowid");
    const Value name = Value::FromText(Table.Name);
    run.Bind(1, name);
    while (run.Step()) {
        const QString kind = run.Text(1);
        const bool isForeign = kind == mdlOwnTables::ForeignKind;
        if (isForeign || kind == mdlOwnTables::NotNullKind)
            Table.Constraints.push_back(
                {run.Text(0), isForeign ? ConstraintDef::Kind::Foreign : ConstraintDef::Kind::NotNull,
                 mdlOwnTables::Split(run.Text(2)), run.Text(3), mdlOwnTables::Split(run.Text(4))});
        const QString indexName = run.Text(0);
        for (IndexDef& index : Table.Indexes) {
            if (index.Name != indexName)
                continue;
            index.Primary = index.Primary || kind == mdlOwnTables::PrimaryKind;
            index.Required = index.Required || kind == mdlOwnTables::RequiredKind;
            index.IgnoreNull = index.IgnoreNull || kind == mdlOwnTables::IgnoreNullKind;
        }
    }
}

void CSchema::AddInfo(const TableDef& Table, jetsql::TableInfo Info)
{
    if (mdlOwnTables::IsOne(Table.Name))
        return;
    Info.Name = Table.Name;
    for (const FieldDef& field : Table.Fields)
        Info.Fields.push_back(
            {field.Name, field.Type, field.Size, field.AllowZeroLength, field.Required, field.AutoIncrement});
    m_infos.insert_or_assign(text::Fold(Table.Name), std::move(Info));
}

void CSchema::LoadQueries()
{
    CRun run(m_connection, "SELECT Name, Sql FROM \"~Queries\"");
    while (run.Step()) {
        const QString name = run.Text(0);
        m_queries.insert_or_assign(text::Fold(name), Query{name, run.Text(1)});
    }
}

const TableDef* CSchema::FindTableDef(QStringView Name) const
{
    for (const TableDef& table : m_tables) {
        if (text::EqualText(table.Name, Name))
            return &table;
    }
    return nullptr;
}

const jetsql::TableInfo* CSchema::FindTable(QStringView Name) const
{
    const auto found = m_infos.find(text::Fold(Name));
    return found == m_infos.end() ? nullptr : &found->second;
}

const QString* CSchema::FindQuery(QStringView Name) const
{
    if (m_queries.empty())
        return nullptr;
    const auto found = m_queries.find(text::Fold(Name));
    return found == m_queries.end() ? nullptr : &found->second.Sql;
}

QByteArray CSchema::RowIdOf(const QString& Table) const
{
    const jetsql::TableInfo* info = FindTable(Table);
    return info ? jetsql::RowIdOf(*info) : QByteArray("_rowid_");
}

QStringList CSchema::QueryNames() const
{
    QStringList names;
    for (const auto& entry : m_queries)
        names.append(entry.second.Name);
    std::sort(names.begin(), names.end(),
              [](const QString& Left, const QString& Right) { return text::CompareText(Left, Right) < 0; });
    return names;
}

} // namespace dao
