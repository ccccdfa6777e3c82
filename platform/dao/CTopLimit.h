// platform/dao/CTopLimit.h
// How many rows a query with TOP gives.

#ifndef DAO_CTOPLIMIT_H
#define DAO_CTOPLIMIT_H

#include "platform/dao/CRun.h"

#include <vector>

namespace dao
{

/// Tells row by row whether it still belongs to the result. Rows that tie with the last one on every sort key do, so
/// more rows than asked for can come.
class CTopLimit
{
public:
    /// Limit -1 takes every row. The KeyCount sort keys begin at column FirstKey of each row.
    CTopLimit(qint64 Limit, int FirstKey, int KeyCount)
        : m_limit(Limit)
        , m_firstKey(FirstKey)
        , m_keyCount(KeyCount)
    {}

    /// How many rows are asked for, without those that tie; -1 for all of them.
    qint64 Rows() const { return m_limit; }

    /// To be asked once for each row in order.
    bool Takes(const CRun& Row);

private:
    std::vector<Value> Keys(const CRun& Row) const;

    qint64 m_limit;
    int m_firstKey;
    int m_keyCount;
    qint64 m_taken = 0;
    std::vector<Value> m_lastKeys;
};

} // namespace dao

#endif
