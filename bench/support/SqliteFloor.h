// bench/support/SqliteFloor.h
// The least that storing messages can cost: one prepared SQLite statement that inserts the same rows.

#ifndef BENCH_SUPPORT_SQLITEFLOOR_H
#define BENCH_SUPPORT_SQLITEFLOOR_H

#include "board/CMessage.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <array>
#include <vector>

/// A new, empty database in a folder of its own, for one round of a benchmark.
struct CEmptyDatabase
{
    QTemporaryDir Folder;
    QString FileName;

    CEmptyDatabase();
};

namespace mdlSqliteFloor
{
/// A message with its texts ready to be bound.
struct CRow
{
    CMessage Msg;
    std::array<QByteArray, 5> Texts;
};

/// The sample messages 1 to Count of board BBS_ID.
std::vector<CRow> MakeRows(qint32 BBS_ID, int Count);

/// Inserts Rows at the sync level of the program, PerTransaction at a time. False when SQLite refused something.
bool Insert(const QString& FileName, const std::vector<CRow>& Rows, std::size_t PerTransaction);
} // namespace mdlSqliteFloor

#endif
