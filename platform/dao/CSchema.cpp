// platform/dao/CSchema.cpp
// Reading the catalogue.

#include "platform/dao/CSchema.h"

#include "platform/dao/CRun.h"
#include "platform/dao/FieldTypes.h"
#include "platform/text/Fold.h"

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

bool IsOwnTable(const QString& Name)
{
    return Name == u"~Tables"_s || Name == u"~Fields"_s || Name == u"~Indexes"_s || Name == u"~Queries"_s;
}

/// How an index came into being, as SQLite tells it.
bool IsPrimary(const QString& Origin) { return Origin == u"pk"_s; }

} // namespace

CSchema::CSchema(CConnection& Connection)
    : m_connection(Connection)
{
    Load();
}

void CSchema::Load()
{
    std::erase_if(m_queries, [](const auto& Entry) { return Entry.second.Name != TemporaryQuery; });
    m_tables.clear();
    m_infos.clear();
    m_version = m_connection.RunForNumber("PRAGMA schema_version");
    m_hasExtras = HasFileTable(u"~Queries"_s);
    LoadTables();
    if (m_hasExtras)
        LoadQueries();
}

bool CSchema::IsOutdated() { return m_version != m_connection.RunForNumber("PRAGMA schema_version"); }

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
    for (const QString& name : names) {
        TableDef table;
        table.Name = name;
        table.Attributes = IsOwnTable(name) ? TableDef::SystemAttributes : 0;
        jetsql::TableInfo info;
        LoadFields(table);
        LoadIndexes(table, info);
        if (m_hasExtras)
            LoadExtras(table);
        AddInfo(table, std::move(info));
        m_tables.push_back(std::move(table));
    }
}

void CSchema::LoadFields(TableDef& Table)
{
    CRun run(m_connection, "SELECT name, type, \"notnull\" FROM pragma_table_info(?1)");
    const Value name = Value::FromText(Table.Name);
    run.Bind(1, name);
    while (run.Step()) {
        FieldDef field;
        field.Name = run.Text(0);
        mdlFieldTypes::Read(run.Text(1), field);
        field.Required = run.Number(2) != 0 && field.Type != FieldType::Boolean;
        field.AllowZeroLength = jetsql::IsText(field.Type);
        Table.Fields.push_back(std::move(field));
    }
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
        const std::vector<int> fields = IndexFields(fileName);
        const bool isPlain = run.Number(3) == 0 && !fields.empty();
        if (isPlain && index.Unique)
            Info.UniqueKeys.push_back(fields);
        for (const int field : fields)
            index.Fields.append(Table.Fields[size_t(field)].Name);
        if (isPlain && !index.Hidden)
            Table.Indexes.push_back(std::move(index));
    }
}

std::vector<int> CSchema::IndexFields(const QString& FileName)
{
    CRun run(m_connection, "SELECT cid FROM pragma_index_info(?1) ORDER BY seqno");
    const Value name = Value::FromText(FileName);
    run.Bind(1, name);
    std::vector<int> fields;
    while (run.Step()) {
        // Negative for the rowid and for expressions: no index over fields.
        if (run.Number(0) < 0)
            return {};
        fields.push_back(int(run.Number(0)));
    }
    return fields;
}

void CSchema::AddInfo(const TableDef& Table, jetsql::TableInfo Info)
{
    if (IsOwnTable(Table.Name))
        return;
    Info.Name = Table.Name;
    for (const FieldDef& field : Table.Fields)
        Info.Fields.push_back({field.Name, field.Type, field.Size, field.AllowZeroLength, field.Required, false});
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
