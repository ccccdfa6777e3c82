// platform/dao/OwnTables.cpp
// Making them and keeping their names of tables right.

#include "platform/dao/OwnTables.h"

#include "platform/dao/CRun.h"

namespace dao::mdlOwnTables
{

using namespace Qt::StringLiterals;

namespace
{

struct OwnTable
{
    const char16_t* Name;
    const char* Fields;
};

constexpr OwnTable Tables[] = {
    {u"~Tables", "(TableName TEXT PRIMARY KEY, Attributes LONG)"},
    {u"~Fields", "(TableName TEXT, FieldName TEXT, AllowZeroLength BOOLEAN, Required BOOLEAN, Description MEMO TEXT, "
                 "PRIMARY KEY (TableName, FieldName))"},
    {u"~Indexes", "(TableName TEXT, IndexName TEXT, FileName TEXT, IsHidden BOOLEAN, "
                  "PRIMARY KEY (TableName, IndexName))"},
    {u"~Constraints", "(TableName TEXT, Name TEXT, Kind TEXT, FieldNames MEMO TEXT, ForeignTable TEXT, "
                      "ForeignFields MEMO TEXT, PRIMARY KEY (TableName, Name, Kind))"},
    {u"~Queries", "(Name TEXT PRIMARY KEY, Sql MEMO TEXT)"},
};

constexpr const char* TablesWithNames[] = {"~Tables", "~Fields", "~Indexes", "~Constraints"};

} // namespace

bool IsOne(const QString& TableName)
{
    for (const OwnTable& table : Tables) {
        if (TableName == QStringView(table.Name))
            return true;
    }
    return false;
}

void Require(CConnection& Connection)
{
    for (const OwnTable& table : Tables)
        Connection.Run("CREATE TABLE IF NOT EXISTS \"" + QString::fromUtf16(table.Name).toUtf8() + "\" " +
                       table.Fields);
}

void Run(CConnection& Connection, const QByteArray& Sql, const std::vector<Value>& Parameters)
{
    CRun run(Connection, Sql);
    int index = 0;
    for (const Value& parameter : Parameters)
        run.Bind(++index, parameter);
    run.Finish();
}

void Forget(CConnection& Connection, const QString& TableName)
{
    for (const char* own : TablesWithNames)
        Run(Connection, QByteArray("DELETE FROM \"") + own + "\" WHERE TableName = ?1", {Value::FromText(TableName)});
}

void Rename(CConnection& Connection, const QString& OldName, const QString& NewName)
{
    const std::vector<Value> names = {Value::FromText(OldName), Value::FromText(NewName)};
    for (const char* own : TablesWithNames)
        Run(Connection, QByteArray("UPDATE \"") + own + "\" SET TableName = ?2 WHERE TableName = ?1", names);
    Run(Connection, "UPDATE \"~Constraints\" SET ForeignTable = ?2 WHERE ForeignTable = ?1", names);
}

QString Joined(const QStringList& Names) { return Names.join(u'.'); }

QStringList Split(const QString& Names) { return Names.split(u'.', Qt::SkipEmptyParts); }

} // namespace dao::mdlOwnTables
