// platform/dao/CRecoveredTable.h
// One table of a recovered file, while its rows are put into it.

#ifndef DAO_CRECOVEREDTABLE_H
#define DAO_CRECOVEREDTABLE_H

#include "platform/dao/CConnection.h"
#include "platform/dao/CPageFile.h"
#include "platform/dao/CStoredRow.h"
#include "platform/dao/Recover.h"

#include <algorithm>
#include <vector>

namespace dao
{

/// The table is there already; members throw Error for what is no fault of a row.
class CRecoveredTable
{
public:
    CRecoveredTable(CConnection& Target, const QString& Name, CPageFile::Encoding Encoding);

    /// Adds a row and counts it. A row that is empty, does not fit the table or breaks its rules counts as lost.
    void Add(const std::optional<CStoredRow>& Row);
    /// Whether the values of the row are of the kinds that the table has: told of rows whose table is not known.
    bool LooksLikeMine(const CStoredRow& Row) const;
    void Expect(qint64 Rows) { m_result.Expected = std::max(m_result.Expected, Rows); }
    void AddUnreadablePages(int Count) { m_result.UnreadablePages += Count; }

    const Recovered::Table& Result() const { return m_result; }

private:
    struct Column
    {
        QByteArray Name;
        bool IsRowId = false; ///< another name of the row's number; the row holds nothing for it
        bool IsText = false;
        bool IsNumber = false;
    };

    QByteArray InsertStatement(size_t Count) const;
    void Bind(sqlite3_stmt* Statement, int Index, const CStoredRow::StoredValue& Value) const;

    CConnection& m_target;
    CPageFile::Encoding m_encoding;
    std::vector<Column> m_columns;
    Recovered::Table m_result;
};

} // namespace dao

#endif
