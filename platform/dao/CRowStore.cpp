// platform/dao/CRowStore.cpp
// Filling the columns.

#include "platform/dao/CRowStore.h"

namespace dao
{

CRowStore::CRowStore(CRun& Rows, const std::vector<ResultColumn>& Columns, CTopLimit Limit, bool IsUtf16)
{
    for (const ResultColumn& column : Columns)
        m_columns.emplace_back(column.Type);
    while (Rows.Step() && Limit.Takes(Rows)) {
        int number = 0;
        for (CColumn& column : m_columns)
            column.Append(Rows.Handle(), number++, IsUtf16);
        ++m_count;
    }
}

} // namespace dao
