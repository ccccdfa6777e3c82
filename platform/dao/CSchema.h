// platform/dao/CSchema.h
// What the open file holds: tables, indexes, saved queries.

#ifndef DAO_CSCHEMA_H
#define DAO_CSCHEMA_H

#include "platform/dao/CConnection.h"
#include "platform/dao/TableDef.h"

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace dao
{

/// The catalogue of one file, read at once, and the changes to it. Changes go to the file first.
///
/// What SQLite has no place for is in tables of our own, left out of statements:
/// "~Tables" (attributes), "~Fields" (zero length, description), "~Indexes" (an index's name within its table and
/// whether it is hidden), "~Queries" (saved queries).
class CSchema : public jetsql::Catalog
{
public:
    /// The query that the running of statements goes through; kept per connection, so that reading works on a read-only
    /// file.
    static constexpr QStringView TemporaryQuery = u"__TEMP__";

    /// Makes those of the layer's own tables that the file lacks; they are there all or none.
    static void MakeOwnTables(CConnection& Connection);

    explicit CSchema(CConnection& Connection);

    /// Reads everything again; to be called after a rollback and when another program changed the structure.
    void Load();
    /// Whether another program has changed the structure since Load.
    bool IsOutdated();

    const std::vector<TableDef>& Tables() const { return m_tables; }
    const TableDef* FindTableDef(QStringView Name) const;
    const jetsql::TableInfo* FindTable(QStringView Name) const override;
    const QString* FindQuery(QStringView Name) const override;
    QStringList QueryNames() const;

    void AppendTable(const TableDef& Table);
    void DeleteTable(const QString& Name);
    void RenameTable(const QString& OldName, const QString& NewName);
    /// Stores a query, over one of that name if there is one. "__TEMP__" stays in memory.
    void SaveQuery(const QString& Name, const QString& Sql);
    void DeleteQuery(const QString& Name);
    /// 3125 for what is no name, 3010 or 3012 when a table or query has it.
    void RequireFreeName(const QString& Name) const;

private:
    struct Query
    {
        QString Name;
        QString Sql;
    };

    void LoadTables();
    void LoadFields(TableDef& Table);
    void LoadExtras(TableDef& Table);
    void LoadIndexes(TableDef& Table, jetsql::TableInfo& Info);
    std::vector<int> IndexFields(const QString& FileName);
    void LoadQueries();
    void AddInfo(const TableDef& Table, jetsql::TableInfo Info);
    bool HasFileTable(const QString& Name);
    QString FreeIndexName(const QString& Table, const QString& Index);
    void AppendIndex(const QString& Table, const IndexDef& Index);
    void WriteExtras(const TableDef& Table);
    void RequireOwnTables();
    void RenameInFile(const QString& OldName, const QString& NewName);
    const TableDef& RequireTable(const QString& Name) const;

    CConnection& m_connection;
    std::vector<TableDef> m_tables;
    std::map<QString, jetsql::TableInfo> m_infos; ///< by folded name
    std::map<QString, Query> m_queries;           ///< by folded name
    qint64 m_version = 0;
    bool m_hasExtras = false;
};

} // namespace dao

#endif
