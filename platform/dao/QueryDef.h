// platform/dao/QueryDef.h
// A saved query, or one that lives only as long as its object.

#ifndef DAO_QUERYDEF_H
#define DAO_QUERYDEF_H

#include "platform/dao/Types.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace dao
{

class Database;
class Recordset;

/// A statement with a name and values for its parameters. Borrows its Database, which must outlive it.
/// All members throw Error.
class QueryDef
{
public:
    /// Made by Database only.
    QueryDef(Database& Owner, QString Name, QString Sql);

    /// Empty for a query that was not saved.
    const QString& Name() const { return m_name; }
    const QString& Sql() const { return m_sql; }
    /// Checks the statement and, for a saved query, stores it; 3102 when it would read itself. Parameter values are
    /// forgotten.
    void SetSql(const QString& Sql);

    QueryType Type();
    /// Declared parameters in their order, then unknown names as they appear.
    std::vector<ParameterInfo> Parameters();
    /// 3265 outside the parameters, 3421 when the value does not convert to the declared type. Null counts as filled.
    void SetParameter(int Parameter, const Value& NewValue);

    /// Runs an action statement: 3065 for one that gives rows, 3061 with unfilled parameters.
    void Execute(ExecuteOption Option = ExecuteOption::FailOnError);
    std::unique_ptr<Recordset> OpenRecordset(RecordsetType Type = RecordsetType::Snapshot);
    /// Rows that the last Execute of this object stored, changed or removed.
    int RecordsAffected() const { return m_recordsAffected; }

private:
    void Save(const QString& Sql, const jetsql::Shape& Shape);
    std::shared_ptr<const jetsql::Statement> Statement();
    std::vector<Value> FilledParameters(const jetsql::Statement& Statement) const;

    Database& m_owner;
    QString m_name;
    QString m_sql;
    jetsql::Shape m_shape;
    std::vector<std::optional<Value>> m_values;
    int m_recordsAffected = 0;
};

} // namespace dao

#endif
