// platform/dao/Recover.h
// Taking everything that can still be read out of a damaged database file.

#ifndef DAO_RECOVER_H
#define DAO_RECOVER_H

#include "platform/dao/Progress.h"
#include "platform/dao/TableDef.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace dao
{

/// What came out of a recovery.
struct Recovered
{
    struct Table
    {
        QString Name;
        qint64 Rows = 0;         ///< in the new file
        qint64 Expected = 0;     ///< that an undamaged index knows of; 0 where there is none
        qint64 CutRows = 0;      ///< of these, rows whose end is missing
        qint64 LostRows = 0;     ///< seen, but unreadable or refused by the rules of the table
        int UnreadablePages = 0; ///< each of them held several rows or led to further pages
    };
    std::vector<Table> Tables;
    QStringList LostObjects; ///< tables, indexes and views that could not be made anew
    int StrayPages = 0;      ///< pages with rows that belong to no known table

    /// The table of that name; an empty one where none was recovered.
    Table Find(QStringView Name) const;
    bool IsComplete() const;
};

/// Reads the damaged Source without SQLite, page by page, and writes its tables with their rows, indexes and saved
/// queries into the new file Destination. Source is only read, and nobody may be writing to it. The rows below a
/// damaged page are found by looking at all pages; to which table they belong is told by their values.
///
/// Known are tables that the file should have: they are made also where their definition is damaged.
/// Throws Error: 3024, 3051 and 3040 for Source, what Database::Create throws for Destination, 3026 full disk, 3059
/// broken off. Nothing of Destination is left then.
Recovered RecoverDatabase(const QString& Source, const QString& Destination, const std::vector<TableDef>& Known = {},
                          const Progress& Report = {});

} // namespace dao

#endif
