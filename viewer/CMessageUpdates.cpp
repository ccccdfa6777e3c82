// viewer/CMessageUpdates.cpp
// Statements made from board and number.

#include "viewer/CMessageUpdates.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

using namespace Qt::StringLiterals;

namespace
{

QString Unchanged() { return u"メッセージの状態を変更できませんでした。"_s; }

QString Where(CMessageId Id)
{
    return u" WHERE BBS_ID = "_s + QString::number(Id.BBS_ID) + u"   AND ID = "_s + QString::number(Id.ID);
}

} // namespace

void CMessageUpdates::Tell(const QString& Reason, const Job& Doing)
{
    if (Doing.Reporting == Report::Always || !m_hasToldRefusal)
        m_app.Shell.MessageBox(Reason + u"\r\n\r\n"_s + Doing.Refusal, m_app.AppTitle(), Desktop::Icon::Critical);
    m_hasToldRefusal = true;
}

/// One transaction: one synchronisation of the disk, and no half of the messages changed.
template<class Write> bool CMessageUpdates::Run(const std::vector<CMessageId>& Ids, const Job& Doing, Write WriteOne)
{
    m_bbs.CommitPending();
    dao::Database* db = m_app.LogDB();
    if (!db || Ids.empty())
        return Ids.empty();
    try {
        const CWatchedWork watched(m_bbs.Watch(), Doing.What);
        dao::CTransaction transaction(*db);
        for (const CMessageId id : Ids) {
            WriteOne(*db, id);
            if (!watched.GoesOn())
                return false;
        }
        transaction.Keep();
    } catch (const dao::Error& error) {
        Tell(error.Description, Doing);
        return false;
    }
    m_hasToldRefusal = false;
    return true;
}

std::optional<CMessageUpdates::Counts> CMessageUpdates::SetRead(const std::vector<CMessageId>& Ids, bool Read,
                                                                Report Reporting)
{
    // Only a message in the other state changes, so the rows affected are the change of the board's count.
    const QString set = Read ? u"UPDATE Message SET Read = True"_s : u"UPDATE Message SET Read = False"_s;
    const QString other = Read ? u"   AND Read = False"_s : u"   AND Read = True"_s;
    Counts changed;
    const bool isDone = Run(Ids, {Work::Change, Reporting, Unchanged()}, [&](dao::Database& Db, CMessageId Id) {
        Db.Execute(set + Where(Id) + other);
        changed[Id.BBS_ID] += Db.RecordsAffected();
    });
    if (!isDone)
        return std::nullopt;
    return changed;
}

bool CMessageUpdates::SetMark(const std::vector<CMessageId>& Ids, qint32 Mark)
{
    const QString set = u"UPDATE Message SET Mark = "_s + QString::number(Mark);
    return Run(Ids, {Work::Change, Report::Always, Unchanged()},
               [&](dao::Database& Db, CMessageId Id) { Db.Execute(set + Where(Id)); });
}

std::optional<CMessageUpdates::Counts> CMessageUpdates::Delete(const std::vector<CMessageId>& Ids)
{
    // The database knows best which of them count as unread: another program may have changed that.
    Counts unread;
    const Job job{Work::Delete, Report::Always, u"メッセージを削除できませんでした。"_s};
    const bool isDone = Run(Ids, job, [&](dao::Database& Db, CMessageId Id) {
        const QString sql = u"DELETE FROM Message"_s + Where(Id);
        Db.Execute(sql + u"   AND Read = False"_s);
        unread[Id.BBS_ID] += Db.RecordsAffected();
        if (Db.RecordsAffected() == 0)
            Db.Execute(sql);
    });
    if (!isDone)
        return std::nullopt;
    return unread;
}
