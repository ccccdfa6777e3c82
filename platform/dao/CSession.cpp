// platform/dao/CSession.cpp
// Running statements of known and new shapes.

#include "platform/dao/CSession.h"

#include "platform/dao/CDynaset.h"
#include "platform/dao/CRowByRow.h"
#include "platform/dao/CSnapshot.h"
#include "platform/dao/CTableRecordset.h"
#include "platform/dao/Crosstab.h"
#include "platform/dao/MakeTable.h"
#include "platform/dao/RunDefinition.h"
#include "platform/dao/Values.h"

#include <sqlite3.h>

namespace dao
{

namespace
{

constexpr int CompiledKept = 300;

/// What cannot be taken row by row: SQLite has a word of its own for leaving rows out.
QByteArray SkippingRows(const QByteArray& Sql)
{
    for (const char* verb : {"INSERT", "UPDATE"}) {
        if (Sql.startsWith(verb))
            return QByteArray(verb) + " OR IGNORE" + Sql.mid(6);
    }
    return Sql;
}

} // namespace

CSession::CSession(std::unique_ptr<CConnection> Connection)
    : m_connection(std::move(Connection))
    , m_schema(std::make_unique<CSchema>(*m_connection))
    , m_compiled(CompiledKept)
{}

CSchema& CSession::Schema()
{
    m_connection->RequireOpen();
    if (m_isSchemaDoubtful) {
        m_compiled.clear();
        m_schema->Load();
        m_isSchemaDoubtful = false;
    }
    return *m_schema;
}

CSchema& CSession::FreshSchema()
{
    CSchema& schema = Schema();
    if (schema.Refresh())
        m_compiled.clear();
    return schema;
}

CSchema& CSession::SchemaToChange()
{
    CSchema& schema = FreshSchema();
    m_compiled.clear();
    m_hasChangedStructure = m_hasChangedStructure || m_connection->Depth() > 0;
    return schema;
}

CSchema& CSession::QueriesToChange()
{
    CSchema& schema = FreshSchema();
    const QList<QString> keys = m_compiled.keys();
    for (const QString& key : keys) {
        if ((*m_compiled.object(key))->UsesQueries)
            m_compiled.remove(key);
    }
    m_hasChangedStructure = m_hasChangedStructure || m_connection->Depth() > 0;
    return schema;
}

std::shared_ptr<const jetsql::Statement> CSession::Compile(const jetsql::Shape& Shape)
{
    CSchema& schema = Schema();
    if (const auto* known = m_compiled.object(Shape.Key))
        return *known;
    std::shared_ptr<const jetsql::Statement> compiled;
    try {
        compiled = jetsql::Compile(Shape, schema);
    } catch (const Error&) {
        // The name that is missing may be there since another program changed the file.
        if (!schema.Refresh())
            throw;
        m_compiled.clear();
        compiled = jetsql::Compile(Shape, schema);
    }
    // A definition holds constants of its text.
    if (!compiled->Ddl)
        m_compiled.insert(Shape.Key, new std::shared_ptr<const jetsql::Statement>(compiled));
    return compiled;
}

void CSession::RequireParameters(const Filled& Query)
{
    const size_t wanted = Query.Statement.Parameters.size();
    if (Query.Parameters.size() < wanted)
        throw jetsql::MakeError(3061, {QString::number(wanted)});
}

namespace
{

Value BoundValue(const jetsql::Binding& Wanted, const CSession::Filled& Query)
{
    const size_t index = size_t(Wanted.Index);
    if (Wanted.Source == jetsql::Binding::Parameter)
        return mdlValues::ConvertTo(Wanted.As, Query.Parameters[index]);
    if (Wanted.Source == jetsql::Binding::Constant)
        return mdlValues::ConvertTo(Wanted.As, Query.Statement.Constants[index]);
    try {
        return mdlValues::ConvertTo(Wanted.As, Query.Shape.Literals[index]);
    } catch (Error& error) {
        error.Offset = Query.Shape.Offsets[2 * index];
        throw;
    }
}

} // namespace

std::vector<Value> CSession::BoundValues(const Filled& Query, bool IsStrict)
{
    std::vector<Value> values;
    values.reserve(Query.Statement.Bindings.size());
    for (const jetsql::Binding& binding : Query.Statement.Bindings) {
        try {
            values.push_back(BoundValue(binding, Query));
        } catch (const Error&) {
            // Where nobody asked for errors, what does not fit its field becomes Null and the row is kept.
            if (IsStrict)
                throw;
            values.push_back(Value());
        }
    }
    return values;
}

void CSession::Bind(CRun& Run, const std::vector<Value>& Values)
{
    int index = 0;
    for (const Value& value : Values)
        Run.Bind(++index, value);
}

int CSession::Run(const Filled& Action, ExecuteOption Option)
{
    if (jetsql::ReturnsRows(Action.Statement.Type))
        throw jetsql::MakeError(3065);
    RequireParameters(Action);
    m_connection->RequireWritable();
    if (Action.Statement.Ddl) {
        mdlDefinition::Run(SchemaToChange(), *Action.Statement.Ddl);
        return 0;
    }
    if (Action.Statement.Type == QueryType::MakeTable)
        return mdlMakeTable::Run(*this, Action);
    const bool isStrict = Option == ExecuteOption::FailOnError;
    if (!isStrict && Action.Statement.Rows)
        return CRowByRow(shared_from_this(), Action).Run();
    if (!Action.Statement.Steps.empty())
        return RunSteps(Action, isStrict);
    return RunOne(Action, Action.Statement.Sql, isStrict);
}

int CSession::RunOne(const Filled& Action, const QByteArray& Sql, bool IsStrict)
{
    const std::vector<Value> values = BoundValues(Action, IsStrict);
    CRun run(*m_connection, IsStrict ? Sql : SkippingRows(Sql));
    Bind(run, values);
    run.Finish();
    return sqlite3_changes(m_connection->Handle());
}

int CSession::RunSteps(const Filled& Action, bool IsStrict)
{
    int changed = 0;
    m_connection->Atomically([&] {
        RunOne(Action, Action.Statement.Sql, IsStrict);
        changed = int(m_connection->RunForNumber(Action.Statement.Counter));
        for (const QByteArray& step : Action.Statement.Steps)
            m_connection->Run(IsStrict ? step : SkippingRows(step));
    });
    return changed;
}

CTopLimit CSession::Limit(const Filled& Query, int FirstKey)
{
    const jetsql::Statement& statement = Query.Statement;
    qint64 rows = statement.Top;
    if (statement.TopPercent && rows >= 0) {
        const std::vector<Value> values = BoundValues(Query, true);
        CRun count(*m_connection, "SELECT count(*) FROM (" + statement.Sql + ")");
        Bind(count, values);
        count.Step();
        rows = (rows * count.Number(0) + 99) / 100;
    }
    return CTopLimit(rows, FirstKey, statement.HiddenKeys);
}

std::unique_ptr<Recordset> CSession::Open(const Filled& Query, RecordsetType Type)
{
    if (!jetsql::ReturnsRows(Query.Statement.Type))
        throw jetsql::MakeError(3219);
    RequireParameters(Query);
    if (Query.Statement.Pivot) {
        const jetsql::Statement spread = mdlCrosstab::Spread(*this, Query);
        return std::make_unique<CSnapshot>(shared_from_this(), Filled{spread, Query.Shape, Query.Parameters}, Type);
    }
    if (Type == RecordsetType::Dynaset && !Query.Statement.EditableTable.isEmpty())
        return std::make_unique<CDynaset>(shared_from_this(), Query);
    return std::make_unique<CSnapshot>(shared_from_this(), Query, Type);
}

std::unique_ptr<Recordset> CSession::OpenTable(const TableDef& Table)
{
    return std::make_unique<CTableRecordset>(shared_from_this(), Table);
}

void CSession::Commit()
{
    m_connection->Commit();
    m_hasChangedStructure = m_hasChangedStructure && m_connection->Depth() > 0;
}

void CSession::Rollback()
{
    m_connection->Rollback();
    m_isSchemaDoubtful = m_isSchemaDoubtful || m_hasChangedStructure;
    if (m_connection->Depth() == 0)
        m_hasChangedStructure = false;
}

void CSession::Close()
{
    m_compiled.clear();
    m_connection->Close();
}

} // namespace dao
