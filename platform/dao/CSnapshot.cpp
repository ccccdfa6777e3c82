// platform/dao/CSnapshot.cpp
// Reading a query to its end.

#include "platform/dao/CSnapshot.h"

namespace dao
{

CSnapshot::CSnapshot(std::shared_ptr<CSession> Session, const CSession::Filled& Query, RecordsetType Type)
    : Recordset(Type, Query.Statement.Columns)
    , m_session(std::move(Session))
{
    CConnection& connection = m_session->Connection();
    const CTopLimit limit = m_session->Limit(Query, FieldCount());
    const std::vector<Value> values = CSession::BoundValues(Query, true);
    CRun run(connection, Query.Statement.Sql);
    CSession::Bind(run, values);
    m_rows = CRowStore(run, Columns(), limit);
    Position().Open(m_rows.Count());
}

void CSnapshot::RequireEditable() const
{
    if (m_session->Connection().IsReadOnly())
        throw jetsql::MakeError(3027);
    throw jetsql::MakeError(Type() == RecordsetType::Dynaset ? 3326 : 3251);
}

} // namespace dao
