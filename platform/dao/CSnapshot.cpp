// platform/dao/CSnapshot.cpp
// Reading a query to its end.

#include "platform/dao/CSnapshot.h"

namespace dao
{

namespace
{

/// Rows beyond those of TOP that are read at once, as they may tie with the last one.
constexpr qint64 TiesExpected = 100;

} // namespace

CSnapshot::CSnapshot(std::shared_ptr<CSession> Session, const CSession::Filled& Query, RecordsetType Type)
    : Recordset(Type, Query.Statement.Columns)
    , m_session(std::move(Session))
{
    CConnection& connection = m_session->Connection();
    const CTopLimit limit = m_session->Limit(Query, FieldCount());
    const std::vector<Value> values = CSession::BoundValues(Query, true);
    const auto read = [&](const QByteArray& bound) {
        CRun run(connection, Query.Statement.Sql + bound);
        CSession::Bind(run, values);
        m_rows = CRowStore(run, Columns(), limit);
    };
    // Told how many rows are wanted, SQLite sorts without holding all the others, bodies and all, in memory.
    const bool isBounded = limit.Rows() >= 0 && Query.Statement.HiddenKeys > 0;
    const qint64 bound = limit.Rows() + TiesExpected;
    if (isBounded)
        read(" LIMIT " + QByteArray::number(bound));
    if (!isBounded || m_rows.Count() == bound)
        read({});
    Position().Open(m_rows.Count());
}

void CSnapshot::RequireEditable() const
{
    if (m_session->Connection().IsReadOnly())
        throw jetsql::MakeError(3027);
    throw jetsql::MakeError(Type() == RecordsetType::Dynaset ? 3326 : 3251);
}

} // namespace dao
