// platform/dao/CRowStore.cpp
// Filling the columns.

#include "platform/dao/CRowStore.h"

namespace dao
{

CRowStore::CRowStore(CRun& Rows, const std::vector<ResultColumn>& Columns, CTopLimit Limit)
{
    CConnection& connection = Rows.Connection();
    const bool isUtf16 = connection.HasUtf16();
    for (const ResultColumn& column : Columns)
        m_columns.emplace_back(column.Type);
    qint64 room = connection.MaxResultSize();
    while (Rows.Step() && Limit.Takes(Rows)) {
        int number = 0;
        for (CColumn& column : m_columns)
            room -= column.Append(Rows.Handle(), number++, isUtf16);
        if (room < 0)
            RefuseSize();
        ++m_count;
    }
}

void CRowStore::RefuseSize()
{
    Error error = jetsql::MakeError(3183);
    error.Description = QStringLiteral("クエリの結果が大きすぎます。条件を加えて件数を減らしてください。");
    throw error;
}

} // namespace dao
