// store/CConversion.h
// Bringing the tables of an older database up to date.

#ifndef STORE_CCONVERSION_H
#define STORE_CCONVERSION_H

#include "platform/dao/Database.h"
#include "platform/dao/Progress.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>

/// Works inside the open database, a transaction for each table. None of the steps throws: false means that its table
/// is as it was, and Reason tells why. To be used on a copy, as a failed conversion has no way back.
class CConversion
{
public:
    /// Db must outlive this object. Report sees the rows of the messages only; the other tables have few.
    CConversion(dao::Database& Db, dao::Progress Report);

    /// Gives each table a version of its own where the file has one for all (before Ver.0.14).
    bool UpgradeVersionTable();
    /// Boards that a new database has take their settings from the old table, the pattern of their past logs from
    /// Ver.0.30 on; others are left out, missing ones are added. True without doing anything when the table is current;
    /// a missing table is made, whatever version the file tells.
    bool ConvertBBSTable();
    /// All messages; same result.
    bool ConvertMessageTable();
    /// Marks of the user's own; those that a new database has come back as they are there. Same result.
    bool ConvertMarkTable();
    /// Writes the current versions.
    bool WriteVersions();

    /// Whether so much was moved that the file is worth compacting.
    bool HasMovedRows() const { return m_hasMovedRows; }
    /// How many rows of each old table are not in the new one as they were; tables without such rows are not in it.
    const std::map<QString, int>& LeftOut() const { return m_leftOut; }
    const std::optional<dao::Error>& Reason() const { return m_reason; }

private:
    bool Try(const std::function<void()>& Step);
    bool IsToBeConverted(const QString& Table, const QString& Current);
    bool IsOlder(const QString& Table, const QString& Current);
    void ConvertTable(const QString& Table, bool (*Create)(dao::Database&),
                      const std::function<void(const QString& OldTable)>& CopyRows);
    [[noreturn]] void ThrowRefusal();
    QStringList TakeAway(const QString& Table);
    QString FreeTableName(const QString& Wanted);
    bool HasTable(const QString& Table);
    void NoteLeftOut(const QString& Table, int Count);

    dao::Database& m_db;
    dao::Progress m_report;
    bool m_hasMovedRows = false;
    std::map<QString, int> m_leftOut;
    std::optional<dao::Error> m_reason;
};

#endif
