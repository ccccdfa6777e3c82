// platform/dao/CRowStore.h
// The rows of a result in memory.

#ifndef DAO_CROWSTORE_H
#define DAO_CROWSTORE_H

#include "platform/dao/CColumn.h"
#include "platform/dao/CRun.h"
#include "platform/dao/CTopLimit.h"

#include <vector>

namespace dao
{

/// Rows column by column; any cell is reached in constant time.
class CRowStore
{
public:
    CRowStore() = default;
    /// Reads a run to its end or to the limit.
    CRowStore(CRun& Rows, const std::vector<ResultColumn>& Columns, CTopLimit Limit, bool IsUtf16);

    qsizetype Count() const { return m_count; }
    const CColumn& Column(int Field) const { return m_columns[size_t(Field)]; }

private:
    std::vector<CColumn> m_columns;
    qsizetype m_count = 0;
};

} // namespace dao

#endif
