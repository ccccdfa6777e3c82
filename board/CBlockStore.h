// board/CBlockStore.h
// Takes a block of log text apart and stores its messages, a transaction at a time.

#ifndef BOARD_CBLOCKSTORE_H
#define BOARD_CBLOCKSTORE_H

#include "board/CMessage.h"
#include "board/CMessageWriter.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringView>

#include <vector>

class Application;
class CLogParser;
struct CRunState;

/// Stores blocks for CBBS, whose state it counts in.
///
/// The messages of a block are one batch: a transaction that is committed at the block's end together with its thread
/// links, or earlier when the user's own change must not hang on it. A batch that cannot be committed is rolled back
/// and withdrawn, and ends the run as an error.
class CBlockStore : public QObject
{
    Q_OBJECT

public:
    /// A long file is committed every so many records, so that a crash late in it costs little.
    static constexpr qint32 MaxBatchRecords = 2000;
    /// Milliseconds between two StoreProgress. A page of a board is stored sooner and tells none.
    static constexpr int ProgressMs = 250;

    CBlockStore(Application& App, CRunState& State, QObject* Parent = nullptr);

    /// Works on Database from here on; it stays the caller's. Null: none.
    void SetDatabase(dao::Database* Database) { m_database = Database; }

    /// Stores the messages of Text, which belong to board BBS_ID and get the read flag Read. Events are processed after
    /// every record. False when a message was stored already, when the user cancelled, and after an error of the
    /// database.
    bool Store(qint32 BBS_ID, QStringView Text, bool Read);

    /// Commits the open batch, if there is one. Never throws.
    void CommitPending();

Q_SIGNALS:
    void AddMessage(const CMessage& Msg);
    void BatchWithdrawn(const std::vector<CMessage>& Messages);
    void ChangeState(const QString& StateMessage, bool IsError, bool AddLog);
    void StoreProgress(int Percent);
    void LogError(qint32 BBS_ID, const QString& LogText, const QString& ErrorMessage);

private:
    void StayLive(qsizetype Place, qsizetype Size);
    bool StoreRecord(const CLogParser& Parser, QStringView Record, qint32 Index);
    bool StoreMessage(const CMessage& Message, QStringView Record, qint32 Index);
    bool OpenBatch();
    void CloseBatch(qint32 BBS_ID);
    void Withdraw(const dao::Error& Error);

    Application& m_app;
    CRunState& m_state;
    dao::Database* m_database = nullptr;
    CMessageWriter m_writer;
    QElapsedTimer m_clock; // since the last StoreProgress
    bool m_isOpen = false;
    std::vector<CMessage> m_batch; // stored since the batch was opened
};

#endif // BOARD_CBLOCKSTORE_H
