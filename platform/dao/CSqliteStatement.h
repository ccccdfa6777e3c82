// platform/dao/CSqliteStatement.h
// One prepared SQLite statement.

#ifndef DAO_CSQLITESTATEMENT_H
#define DAO_CSQLITESTATEMENT_H

#include <QByteArray>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace dao
{

/// Owns a prepared statement; finalised with it.
class CSqliteStatement
{
public:
    /// Null handle when SQLite refuses the text; its reason is then the connection's last error.
    CSqliteStatement(sqlite3* Connection, const QByteArray& Sql);

    sqlite3_stmt* Handle() const { return m_handle.get(); }

    /// True while somebody steps through it; whoever needs the same text then prepares another.
    bool InUse = false;

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt* Handle) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

} // namespace dao

#endif
