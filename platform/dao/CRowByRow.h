// platform/dao/CRowByRow.h
// An action statement that leaves out the rows that are refused.

#ifndef DAO_CROWBYROW_H
#define DAO_CROWBYROW_H

#include "platform/dao/CRowStore.h"
#include "platform/dao/CSession.h"
#include "platform/dao/CTableWriter.h"

#include <optional>
#include <vector>

namespace dao
{

/// Takes the rows of an action statement one by one: what a rule of the table refuses is skipped, what does not convert
/// to its field becomes Null, and text that is too long is cut where rows are added.
///
/// All rows and their new values are worked out before the first is changed.
class CRowByRow
{
public:
    CRowByRow(std::shared_ptr<CSession> Session, const CSession::Filled& Action);

    /// How many rows were changed. Throws Error for what is not a row's fault, and leaves the table as it was then.
    int Run();

private:
    using NewValues = std::vector<std::optional<Value>>;

    bool Take(qsizetype Row, const CRowStore& Rows);
    NewValues ValuesOf(qsizetype Row, const CRowStore& Rows) const;
    Value Fitting(const Value& Given, const ResultColumn& Field) const;

    std::shared_ptr<CSession> m_session;
    const CSession::Filled& m_action;
    std::vector<ResultColumn> m_fields; ///< those that get a value
    CTableWriter m_writer;
};

} // namespace dao

#endif
