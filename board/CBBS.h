// board/CBBS.h
// The one way to the boards: receiving, storing, queries on the message store, pages to post on.

#ifndef BOARD_CBBS_H
#define BOARD_CBBS_H

#include "board/CMessage.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class Application;
class CBlockStore;
class CPageFetcher;
class CQueryRunner;
class WorkWatch;
struct CLogBlock;
struct CRunState;

namespace dao
{
class Database;
class Recordset;
} // namespace dao

/// Board access of the main window; one object for the whole run.
///
/// LoadBBS and ImportLog run inside the caller's event and keep the event loop turning: slots of the signals, and
/// anything that the user does meanwhile, run before they return. Only one of them runs at a time; the callers see to
/// that. Received messages of one page are one transaction. Whoever writes to the database of the user's own accord
/// calls CommitPending first, so that a batch that fails later never takes that change with it.
class CBBS : public QObject
{
    Q_OBJECT

public:
    explicit CBBS(Application& App, QObject* Parent = nullptr);
    ~CBBS() override;

    /// Closes a previous result; from here on everything works on Database, which stays the caller's. Null: none.
    void Initialize(dao::Database* Database);

    /// Seconds without progress until a request is given up; 0 is never.
    qint32 Timeout() const;
    void SetTimeout(qint32 NewTimeout);

    bool IsLoad() const;         ///< LoadBBS is running
    bool IsImport() const;       ///< log files are being read
    bool IsError() const;        ///< a transfer, an error page or the database ended the run
    bool IsCancel() const;       ///< the user asked to stop
    qint32 AnalyseError() const; ///< -1 when a record of the last block was broken or refused, else 0
    qint32 AnalyseCount() const; ///< records read since the run began, broken ones not counted
    qint32 SaveCount() const;    ///< messages newly stored since the run began

    /// Receives one board: its unread messages, or all that it still holds. With ExitIfMessageFound the page that
    /// brings a stored message is the last. The board's unread position moves only after a whole, committed receive.
    /// False when cancelled or ended by an error, which ChangeState has told then.
    bool LoadBBS(qint32 BBS_ID, bool NoReadLoad, bool ExitIfMessageFound);

    /// Stores the messages of a log file, a text or an LZH archive of texts, on a board, with the read flag ReadMode.
    /// What cannot be read of the file is told by ChangeState, and the rest is stored. The unread position stays. True
    /// when the whole file was log text without a broken or refused record; messages that were stored before do no
    /// harm. False also when cancelled (IsCancel stays set then) or ended by an error of the database (IsError is set).
    bool ImportLog(qint32 BBS_ID, const QString& FileName, bool ReadMode);

    /// Asks a running receive or import to stop; it returns soon after. What was committed stays.
    void Cancel();
    void InitCancel();

    /// Commits what a running receive has stored so far. Does nothing when no batch is open. A batch that cannot be
    /// committed is withdrawn and ends the receive as an error; never throws.
    void CommitPending();

    /// Who is told of queries that run, and may stop them; must outlive this object. Null: nobody.
    void SetWatch(WorkWatch* Watch);
    WorkWatch* Watch() const;

    /// Runs a statement and gives its query type. Rows are kept until the next query. Parameters are asked from the
    /// user; cancelling one stops the query as error 3059, and so does the watch. Throws dao::Error; the previous
    /// result is then gone or kept, never half replaced.
    qint16 ExecSQL(const QString& SQLString);
    /// 0 when the last result has exactly the columns of the messages' table, 1 otherwise.
    qint32 SQLType() const;
    /// Rows of the last result, or rows that the last action query changed.
    qint32 Count() const;
    /// The last result; null when there is none.
    dao::Recordset* Recordset() const;
    /// The message in row Index, from 0; empty beyond the end. For results of SQLType 0.
    std::optional<CMessage> Messages(qint32 Index) const;
    /// The message in the result's current row; empty at either end.
    std::optional<CMessage> GetMessage() const;
    void CloseLogMessages();

    /// Opens the board's page for a new message on the board of Msg, or for a reply to Msg, in the browser.
    /// True when the browser took the address.
    bool Send(const CMessage& Msg, bool Reply);

Q_SIGNALS:
    /// Msg has just been stored; it is committed with the rest of its page.
    void AddMessage(const CMessage& Msg);
    /// These messages were told by AddMessage but could not be committed: they are not in the database.
    void BatchWithdrawn(const std::vector<CMessage>& Messages);
    /// Progress (both flags false) or an error (both true).
    void ChangeState(const QString& StateMessage, bool IsError, bool AddLog);
    /// Of a long block so much is stored, 0 to 100. Told a few times a second at the most.
    void StoreProgress(int Percent);
    /// A record was broken or refused; LogText is the record.
    void LogError(qint32 BBS_ID, const QString& LogText, const QString& ErrorMessage);

private:
    struct CReceivePlan;

    void Receive(const CReceivePlan& Plan);
    bool StorePage(const CReceivePlan& Plan);
    void MoveNoReadPoint(qint32 BBS_ID);
    void Fail(const QString& Message);

    bool IsDatabase(const QString& FileName) const;
    bool ImportBlocks(qint32 BBS_ID, const QString& FileName, bool ReadMode);
    bool ImportBlock(qint32 BBS_ID, const QString& FileName, const CLogBlock& Block, bool ReadMode);
    void SumUpImport(const QString& FileName, bool IsSound);
    void TellOfFile(const QString& Message);

    Application& m_app;
    std::unique_ptr<CRunState> m_state;
    std::unique_ptr<CQueryRunner> m_query;
    std::unique_ptr<CPageFetcher> m_fetcher;
    std::unique_ptr<CBlockStore> m_store;
};

Q_DECLARE_METATYPE(std::vector<CMessage>)

#endif // BOARD_CBBS_H
