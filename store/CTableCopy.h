// store/CTableCopy.h
// The rows of an old table on their way into today's.

#ifndef STORE_CTABLECOPY_H
#define STORE_CTABLECOPY_H

#include "platform/dao/Database.h"
#include "platform/dao/Progress.h"

#include <QStringList>

#include <memory>
#include <vector>

/// Copies row by row by the names of the fields. Old tables were written by other programs and by hand: types are
/// converted, an empty text becomes Null where none is allowed. A whole number that the old row lacks is 0 in a row
/// that is added, as the statements of the program expect; in a row that is changed it stays.
///
/// Rows that the rules of the new table refuse are left out and counted. Memory: eight bytes a row.
class CTableCopy
{
public:
    /// Fields are names of the new table. Throws Error.
    CTableCopy(dao::Database& Db, const QString& OldTable, const QString& NewTable, const QStringList& Fields);

    /// Adds every row. Throws Error for what is no fault of a row; 3059 when broken off.
    void AddRows(const dao::Progress& Report);
    /// Changes the rows that have the old rows' primary keys. Old rows without such a row are left out.
    void ChangeRows();

    /// Rows of the old table that are not in the new one as they were, in the fields that were asked for.
    int LeftOut() const { return m_leftOut; }

private:
    struct Pair
    {
        int From; ///< -1 where the old table has no such field
        int To;
        bool AllowsEmpty;
        bool IsLong;
        bool IsDate;
    };

    void AddRow();
    void ChangeRow();
    void SetFields(const dao::Value& MissingNumber);
    bool SeekRow();
    bool IsSameRow() const;
    dao::Value OldValue(const Pair& Field) const;

    std::unique_ptr<dao::Recordset> m_old;
    std::unique_ptr<dao::Recordset> m_new;
    std::vector<Pair> m_fields;
    std::vector<int> m_key; ///< fields of the old table in the order of the new one's primary key
    int m_leftOut = 0;
};

#endif
