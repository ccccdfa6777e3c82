// platform/dao/CFileCheck.h
// Whether a database file is whole, from its first page to its last index entry.

#ifndef DAO_CFILECHECK_H
#define DAO_CFILECHECK_H

#include "platform/dao/CConnection.h"
#include "platform/dao/Progress.h"

#include <vector>

namespace dao
{

/// Reads every page; for a copy that is about to replace the only original. Members throw Error.
class CFileCheck
{
public:
    explicit CFileCheck(CConnection& Connection)
        : m_connection(Connection)
    {}

    /// False when pages are damaged or an index does not fit its table. Rows that break a rule of their table are no
    /// damage: somebody may have put them there.
    bool IsSound(const Progress& Report);
    /// Whether every table of Other is here with as many rows.
    bool HasRowsOf(CConnection& Other);

private:
    std::vector<QByteArray> Tables(CConnection& Connection);
    qint64 RowTotal();

    CConnection& m_connection;
};

} // namespace dao

#endif
