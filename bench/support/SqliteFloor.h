// bench/support/SqliteFloor.h
// The least that storing messages can cost: one prepared SQLite statement that inserts the same rows.

#ifndef BENCH_SUPPORT_SQLITEFLOOR_H
#define BENCH_SUPPORT_SQLITEFLOOR_H

#include <QString>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

/// A new, empty database in a folder of its own, for one round of a benchmark.
struct CEmptyDatabase
{
    QTemporaryDir Folder;
    QString FileName;

    CEmptyDatabase();
};

/// The floor as a benchmark: the sample messages 1 to Count of board BBS_ID are inserted into an empty database at the
/// sync level of the program, PerTransaction at a time.
void RunSqliteFloor(benchmark::State& State, qint32 BBS_ID, int Count, int PerTransaction);

#endif
