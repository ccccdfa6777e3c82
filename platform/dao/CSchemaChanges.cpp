// platform/dao/CSchemaChanges.cpp
// Changing the catalogue: the file first, then what is known of it.

#include "platform/dao/CSchema.h"

#include "platform/dao/OwnTables.h"
#include "platform/dao/SchemaText.h"
#include "platform/text/Fold.h"

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;

void CSchema::Atomically(const std::function<void()>& Work)
{
    try {
        m_connection.Atomically([&] {
            m_file.RequireOwnTables();
            Work();
        });
    } catch (const Error&) {
        // Work may have read what is gone again.
        LoadQuietly();
        throw;
    }
    Load();
}

void CSchema::LoadQuietly()
{
    try {
        Load();
    } catch (const Error&) {
        m_version = -1;
    }
}

void CSchema::MakeOwnTables(CConnection& Connection)
{
    mdlOwnTables::Require(Connection);
}

void CSchema::RequireFreeName(const QString& Name, int TableTaken) const
{
    mdlSchemaText::RequireName(Name);
    // These names are the layer's own, whether there is a table of that name yet or not.
    if (Name.startsWith(u'~'))
        throw jetsql::MakeError(3125, {Name});
    if (FindTableDef(Name))
        throw jetsql::MakeError(TableTaken, {Name});
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
    TableDef table = mdlSchemaText::WithFieldNames(Wanted);
    const std::vector<ConstraintDef> constraints = std::exchange(table.Constraints, {});
    Atomically([&] {
        m_file.Create(table);
        for (const ConstraintDef& constraint : constraints) {
            Load();
            AppendConstraint(table.Name, constraint);
        }
    });
}

void CSchema::DeleteTable(const QString& Name)
{
    const TableDef table = RequireTable(Name);
    for (const TableDef& other : m_tables) {
        const bool isParent = std::any_of(other.Constraints.begin(), other.Constraints.end(), [&](const auto& rule) {
            return rule.ForeignTable == table.Name && other.Name != table.Name;
        });
        if (isParent)
            throw jetsql::MakeError(3281);
    }
    Atomically([&] { m_file.Drop(table); });
}

void CSchema::RenameTable(const QString& OldName, const QString& NewName)
{
    const TableDef table = RequireTable(OldName);
    if (!text::EqualText(table.Name, NewName))
        RequireFreeName(NewName);
    Atomically([&] { m_file.Rename(table, NewName); });
}

void CSchema::SaveQuery(const QString& Name, const QString& Sql)
{
    if (Name != TemporaryQuery) {
        m_connection.Atomically([&] {
            m_file.RequireOwnTables();
            mdlOwnTables::Run(m_connection, "INSERT OR REPLACE INTO \"~Queries\" VALUES (?1, ?2)",
                              {Value::FromText(Name), Value::FromText(Sql)});
        });
        if (!m_hasExtras)
            Load();
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
            mdlOwnTables::Run(m_connection, "DELETE FROM \"~Queries\" WHERE Name = ?1",
                              {Value::FromText(found->second.Name)});
        });
    }
    m_queries.erase(found);
}

} // namespace dao
