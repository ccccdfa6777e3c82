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
    /// Reads a run to its end or to the limit. 3183 when the rows take more than the connection allows, 3059 when the
    /// reading is broken off.
    CRowStore(CRun& Rows, const std::vector<ResultColumn>& Columns, CTopLimit Limit);

    qsizetype Count() const { return m_count; }
    const CColumn& Column(int Field) const { return m_columns[size_t(Field)]; }

private:
    [[noreturn]] static void RefuseSize();

    std::vector<CColumn> m_columns;
    qsizetype m_count = 0;
};

} // namespace dao

#endif
