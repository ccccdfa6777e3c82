// platform/dao/CTopLimit.cpp
// Counting rows and comparing the sort keys of those past the count.

#include "platform/dao/CTopLimit.h"

namespace dao
{

bool CTopLimit::Takes(const CRun& Row)
{
    if (m_limit < 0)
        return true;
    ++m_taken;
    if (m_taken == m_limit && m_keyCount > 0)
        m_lastKeys = Keys(Row);
    if (m_taken <= m_limit)
        return true;
    return m_keyCount > 0 && m_limit > 0 && Keys(Row) == m_lastKeys;
}

std::vector<Value> CTopLimit::Keys(const CRun& Row) const
{
    std::vector<Value> keys;
    for (int key = m_firstKey; key < m_firstKey + m_keyCount; ++key) {
        const Value value = Row.Column(key, FieldType::Null);
        // SQLite keeps some whole numbers as integers and some as reals; they are equal all the same.
        keys.push_back(jetsql::IsNumber(value.Type()) ? Value::FromDouble(value.ToDouble()) : value);
    }
    return keys;
}

} // namespace dao
