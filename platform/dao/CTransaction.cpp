// platform/dao/CTransaction.cpp
// Begin, keep, or roll back.

#include "platform/dao/CTransaction.h"

#include "platform/dao/Database.h"

namespace dao
{

CTransaction::CTransaction(Database& Owner)
    : m_owner(Owner)
{
    m_owner.BeginTrans();
}

CTransaction::~CTransaction()
{
    if (!m_open)
        return;
    try {
        m_owner.Rollback();
    } catch (const Error&) {
        // Only a database that was closed meanwhile refuses, and closing rolls back.
    }
}

void CTransaction::Keep()
{
    m_owner.CommitTrans();
    m_open = false;
}

} // namespace dao
