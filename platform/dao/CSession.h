// platform/dao/CSession.h
// What a database and the recordsets opened on it share: connection, catalogue, compiled statements.

#ifndef DAO_CSESSION_H
#define DAO_CSESSION_H

#include "platform/dao/CConnection.h"
#include "platform/dao/CRun.h"
#include "platform/dao/CSchema.h"
#include "platform/dao/CTopLimit.h"

#include <QCache>

#include <memory>
#include <vector>

namespace dao
{

class Recordset;

/// Compiles statements, remembers them by their shape, and runs them. All members throw Error.
class CSession : public std::enable_shared_from_this<CSession>
{
public:
    explicit CSession(std::unique_ptr<CConnection> Connection);

    CConnection& Connection() const { return *m_connection; }
    /// The catalogue; read anew first where a rollback has made it doubtful.
    CSchema& Schema();
    /// The catalogue for those who list it: with what other programs have made meanwhile.
    CSchema& FreshSchema();
    /// For a change of the structure; everything compiled is forgotten, as it may name what is gone.
    CSchema& SchemaToChange();
    /// For a change of saved queries; what was compiled from their text is forgotten.
    CSchema& QueriesToChange();

    std::shared_ptr<const jetsql::Statement> Compile(const jetsql::Shape& Shape);

    /// A compiled statement with the values of its constants and parameters.
    struct Filled
    {
        const jetsql::Statement& Statement;
        const jetsql::Shape& Shape;
        const std::vector<Value>& Parameters;
    };

    /// Throws 3061 unless there is a value for each parameter.
    static void RequireParameters(const Filled& Query);
    /// Runs an action statement and returns how many rows it changed.
    int Run(const Filled& Action, ExecuteOption Option);
    std::unique_ptr<Recordset> Open(const Filled& Query, RecordsetType Type);
    std::unique_ptr<Recordset> OpenTable(const TableDef& Table);

    /// The constants and parameters as the statement wants them; must outlive the run they are bound to.
    static std::vector<Value> BoundValues(const Filled& Query, bool IsStrict);
    static void Bind(CRun& Run, const std::vector<Value>& Values);
    /// How many rows to read of it.
    CTopLimit Limit(const Filled& Query, int FirstKey);

    void Commit();
    void Rollback();
    void Close();

private:
    int RunOne(const Filled& Action, const QByteArray& Sql, bool IsStrict);
    int RunSteps(const Filled& Action, bool IsStrict);

    std::unique_ptr<CConnection> m_connection;
    std::unique_ptr<CSchema> m_schema;
    QCache<QString, std::shared_ptr<const jetsql::Statement>> m_compiled;
    bool m_isSchemaDoubtful = false;
    bool m_hasChangedStructure = false; ///< within the running transaction
};

} // namespace dao

#endif
