// platform/dao/CSchema.h
// What the open file holds: tables, indexes, saved queries.

#ifndef DAO_CSCHEMA_H
#define DAO_CSCHEMA_H

#include "platform/dao/CConnection.h"
#include "platform/dao/CSchemaFile.h"
#include "platform/dao/TableDef.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <vector>

namespace dao
{

/// The catalogue of one file, read at once, and the changes to it. Changes go to the file first.
///
/// What SQLite has no place for is in tables of our own, left out of statements:
/// "~Tables" (attributes), "~Fields" (zero length, description), "~Indexes" (an index's name within its table and
/// whether it is hidden), "~Constraints" (foreign keys, names of other rules), "~Queries" (saved queries).
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
    /// Reads everything again if another program has written to the file since it was last asked; false if not.
    bool Refresh();

    const std::vector<TableDef>& Tables() const { return m_tables; }
    const TableDef* FindTableDef(QStringView Name) const;
    const jetsql::TableInfo* FindTable(QStringView Name) const override;
    const QString* FindQuery(QStringView Name) const override;
    QStringList QueryNames() const;
    /// A word for a table's row number that is none of its fields.
    QByteArray RowIdOf(const QString& Table) const;

    void AppendTable(const TableDef& Table);
    void DeleteTable(const QString& Name);
    void RenameTable(const QString& OldName, const QString& NewName);

    /// Changes of a table that is there, with all its rows. Each is done whole or not at all.
    /// 3380 field exists, 3190; 3314 when it is required and there are rows.
    void AppendField(const QString& Table, const FieldDef& Field);
    /// 3381 no such field, 3280 while an index or a constraint uses it, 3264 the last one.
    void DeleteField(const QString& Table, const QString& FieldName);
    /// 3375 exists, 3283, 3409, 3626; 3022 or 3058 when the rows do not allow it.
    void AppendIndex(const QString& Table, const IndexDef& Index);
    /// 3372 no such index, 3281 while a foreign key needs it.
    void DeleteIndex(const QString& Table, const QString& IndexName);
    /// 3375 exists, 3409 unknown field, 3376 unknown other table, 3368 fields do not match, 3609 the other table has no
    /// unique index over its fields; 3201 or 3314 when the rows do not allow it.
    void AppendConstraint(const QString& Table, const ConstraintDef& Constraint);
    /// An index or a constraint; 3371 when there is none, 3281.
    void DeleteConstraint(const QString& Table, const QString& Name);

    /// Stores a query, over one of that name if there is one. "__TEMP__" stays in memory.
    void SaveQuery(const QString& Name, const QString& Sql);
    void DeleteQuery(const QString& Name);
    /// 3125 for what is no name or begins with "~", 3010 (TableTaken) or 3012 when a table or query has it.
    void RequireFreeName(const QString& Name, int TableTaken = 3010) const;
    /// 3265 when there is no such table, 3328 for one of the layer's own.
    const TableDef& RequireTable(const QString& Name) const;

    /// Runs Work in a transaction, so that several changes are done whole or not at all.
    void Atomically(const std::function<void()>& Work);

private:
    struct Query
    {
        QString Name;
        QString Sql;
    };

    void LoadQuietly();
    void LoadTables();
    void LoadTable(const QString& Name);
    void LoadFields(TableDef& Table);
    void LoadExtras(TableDef& Table);
    void LoadIndexes(TableDef& Table, jetsql::TableInfo& Info);
    void LoadRowNumberKey(TableDef& Table, jetsql::TableInfo& Info);
    void LoadConstraints(TableDef& Table);
    bool IsCounter(const QString& Table, const QString& Field);
    std::vector<int> IndexFields(const QString& FileName, const TableDef& Table, IndexDef& Index);
    void LoadQueries();
    void AddInfo(const TableDef& Table, jetsql::TableInfo Info);
    bool HasFileTable(const QString& Name);
    void ChangeTable(const TableDef& New);
    void RequireFreeRule(const TableDef& Table, const QString& Name) const;
    void RequireUnreferenced(const TableDef& Table, const QStringList& Key) const;
    static void RequireMatch(const TableDef& Table, const TableDef& Parent, const ConstraintDef& Constraint);
    void AppendForeign(const TableDef& Table, const ConstraintDef& Constraint);

    CConnection& m_connection;
    CSchemaFile m_file;
    std::vector<TableDef> m_tables;
    std::map<QString, jetsql::TableInfo> m_infos; ///< by folded name
    std::map<QString, Query> m_queries;           ///< by folded name
    qint64 m_version = 0;
    qint64 m_dataVersion = 0; ///< other programs' commits, as far as they were noticed
    bool m_hasExtras = false;
    bool m_hasConstraints = false;
};

} // namespace dao

#endif
