// board/CBlockStore.cpp
// Takes a block of log text apart and stores its messages, a transaction at a time.

#include "board/CBlockStore.h"

#include "board/CBBSProperty.h"
#include "board/CLogParser.h"
#include "board/CRunState.h"
#include "board/CThreadLinker.h"
#include "board/ErrorLine.h"
#include "platform/dao/Database.h"

#include <QCoreApplication>

#include <utility>

using namespace Qt::StringLiterals;

CBlockStore::CBlockStore(Application& App, CRunState& State, QObject* Parent)
    : QObject(Parent)
    , m_app(App)
    , m_state(State)
{}

bool CBlockStore::Store(qint32 BBS_ID, QStringView Text, bool Read)
{
    m_state.AnalyseError = m_state.IsEndMissing = false;
    m_clock.start();
    CBBSProperty property(m_app);
    property.GetProperty(BBS_ID);
    const CLogParser parser(BBS_ID, property.IsTwoSided(), Read);
    CRecordCutter records(Text);
    bool result = true;
    qint32 index = 0;
    for (auto record = records.Next(); record && !m_state.IsCancel && !m_state.IsError; record = records.Next()) {
        result = StoreRecord(parser, *record, index++) && result;
        StayLive(records.Place(), Text.size());
        if (m_batch.size() >= MaxBatchRecords)
            CloseBatch(BBS_ID);
    }
    if (m_state.IsError)
        return false; // the error's text stays in sight
    m_state.IsEndMissing = !records.Rest().trimmed().isEmpty();
    Q_EMIT ChangeState(u"スレッド情報を更新中..."_s, false, false);
    CloseBatch(BBS_ID);
    if (!m_state.IsError)
        Q_EMIT ChangeState(u"スレッド情報の更新を終了しました。"_s, false, false);
    return result && !m_state.IsCancel && !m_state.IsError;
}

/// The only place where the user can stop a block.
void CBlockStore::StayLive(qsizetype Place, qsizetype Size)
{
    QCoreApplication::processEvents();
    if (m_clock.elapsed() < ProgressMs)
        return;
    m_clock.start();
    Q_EMIT StoreProgress(int(Place * 100 / Size));
}

bool CBlockStore::StoreRecord(const CLogParser& Parser, QStringView Record, qint32 Index)
{
    ++m_state.RecordCount;
    const auto message = Parser.Parse(Record);
    if (!message) {
        m_state.AnalyseError = true;
        ++m_state.RefusedCount;
        Q_EMIT LogError(Parser.BBS_ID(), Record.toString(), QString::number(Index) + u"件目のログが壊れていました。"_s);
        return true;
    }
    m_state.HighestNumber = qMax(m_state.HighestNumber, message->ID);
    const bool isNew = StoreMessage(*message, Record, Index);
    if (m_state.IsError)
        return false;
    ++m_state.AnalyseCount;
    Q_EMIT ChangeState(QString::number(Index) + u"件目を解析中..."_s, false, false);
    return isNew;
}

/// False when the message was there already.
bool CBlockStore::StoreMessage(const CMessage& Message, QStringView Record, qint32 Index)
{
    if (!OpenBatch())
        return false;
    switch (m_writer.Save(*m_database, Message)) {
    case SaveOutcome::Stored:
        ++m_state.SaveCount;
        m_batch.push_back(Message);
        Q_EMIT AddMessage(Message);
        return true;
    case SaveOutcome::AlreadyStored:
        return false;
    case SaveOutcome::Failed:
        break;
    }
    if (CMessageWriter::ConcernsAll(m_writer.LastError())) {
        Withdraw(m_writer.LastError());
        return false;
    }
    m_state.AnalyseError = true;
    ++m_state.RefusedCount;
    Q_EMIT LogError(Message.BBS_ID, Record.toString(),
                    QString::number(Index) + u"件目のログをデータベースに登録できませんでした。"_s);
    return true;
}

bool CBlockStore::OpenBatch()
{
    if (m_isOpen)
        return true;
    try {
        m_database->BeginTrans();
        m_isOpen = true;
    } catch (const dao::Error& error) {
        Withdraw(error);
    }
    return m_isOpen;
}

/// Links the threads and commits. After an error nothing is left to commit.
void CBlockStore::CloseBatch(qint32 BBS_ID)
{
    if (m_state.IsError || !OpenBatch())
        return;
    try {
        CThreadLinker(*m_database, BBS_ID).Link();
        CommitPending();
    } catch (const dao::Error& error) {
        Withdraw(error);
    }
}

void CBlockStore::CommitPending()
{
    if (!m_isOpen)
        return;
    try {
        m_database->CommitTrans();
        m_isOpen = false;
        m_batch.clear();
    } catch (const dao::Error& error) {
        Withdraw(error);
    }
}

/// Undoes the open batch and ends the run.
void CBlockStore::Withdraw(const dao::Error& Error)
{
    if (std::exchange(m_isOpen, false)) {
        try {
            m_database->Rollback();
        } catch (const dao::Error&) {
            // A transaction that a failing disk has taken away is as good as rolled back.
        }
    }
    const std::vector<CMessage> lost = std::exchange(m_batch, {});
    m_state.SaveCount -= qint32(lost.size());
    m_state.IsError = true;
    if (!lost.empty())
        Q_EMIT BatchWithdrawn(lost);
    Q_EMIT ChangeState(mdlErrorLine::Numbered(Error.Number, Error.Description), true, true);
}
