// platform/dao/CTransaction.h
// A transaction that cannot be left open by accident.

#ifndef DAO_CTRANSACTION_H
#define DAO_CTRANSACTION_H

namespace dao
{

class Database;

/// Begins a transaction and rolls it back when it goes out of scope, unless it was kept.
class CTransaction
{
public:
    /// Throws Error: 3003 beyond five levels, 3260 when another program is writing, 3027 for a read-only file.
    explicit CTransaction(Database& Owner);
    ~CTransaction();
    CTransaction(const CTransaction&) = delete;
    CTransaction& operator=(const CTransaction&) = delete;

    /// Commits. When that throws, the destructor still rolls back.
    void Keep();

private:
    Database& m_owner;
    bool m_open = true;
};

} // namespace dao

#endif
