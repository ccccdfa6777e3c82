// viewer/CMessageUpdates.cpp
// UPDATE statements made from board and number.

#include "viewer/CMessageUpdates.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

using namespace Qt::StringLiterals;

namespace
{

QString Where(CMessageId Id)
{
    return u" WHERE BBS_ID = "_s + QString::number(Id.BBS_ID) + u"   AND ID = "_s + QString::number(Id.ID);
}

} // namespace

void CMessageUpdates::Tell(const QString& Reason, Report Reporting)
{
    if (Reporting == Report::Always || !m_hasToldRefusal)
        m_app.Shell.MessageBox(Reason + u"\r\n\r\nメッセージの状態を変更できませんでした。"_s, m_app.AppTitle(),
                               Desktop::Icon::Critical);
    m_hasToldRefusal = true;
}

/// Many messages are one transaction: one synchronisation of the disk, and no half of them changed.
template<class Write> bool CMessageUpdates::Run(const std::vector<CMessageId>& Ids, Report Reporting, Write WriteOne)
{
    m_bbs.CommitPending();
    dao::Database* db = m_app.LogDB();
    if (!db || Ids.empty())
        return Ids.empty();
    try {
        std::optional<dao::CTransaction> transaction;
        if (Ids.size() > 1)
            transaction.emplace(*db);
        for (const CMessageId id : Ids)
            WriteOne(*db, id);
        if (transaction)
            transaction->Keep();
    } catch (const dao::Error& error) {
        Tell(error.Description, Reporting);
        return false;
    }
    m_hasToldRefusal = false;
    return true;
}

std::optional<std::map<qint32, int>> CMessageUpdates::SetRead(const std::vector<CMessageId>& Ids, bool Read,
                                                              Report Reporting)
{
    // Only a message in the other state changes, so the rows affected are the change of the board's count.
    const QString set = Read ? u"UPDATE Message SET Read = True"_s : u"UPDATE Message SET Read = False"_s;
    const QString other = Read ? u"   AND Read = False"_s : u"   AND Read = True"_s;
    std::map<qint32, int> changed;
    const bool isDone = Run(Ids, Reporting, [&](dao::Database& Db, CMessageId Id) {
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
    return Run(Ids, Report::Always, [&](dao::Database& Db, CMessageId Id) { Db.Execute(set + Where(Id)); });
}
