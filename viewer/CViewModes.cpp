// viewer/CViewModes.cpp
// Statements and captions of the view modes.

#include "viewer/CViewModes.h"

#include "platform/dao/Database.h"

using namespace Qt::StringLiterals;

namespace
{

/// Rows that Sql gives; nothing when the database refuses it or there is none.
int CountRows(dao::Database* Db, const QString& Sql)
{
    if (!Db)
        return 0;
    try {
        const auto rows = Db->OpenRecordset(Sql);
        if (rows->Eof())
            return 0;
        rows->MoveLast();
        return rows->RecordCount();
    } catch (const dao::Error&) {
        return 0;
    }
}

} // namespace

CViewModes::CViewModes()
{
    m_entries[Newest].Caption = u"最新の100件(&T)"_s;
    m_entries[NewerPage].Caption = u"前の100件(&P)"_s;
    m_entries[OlderPage].Caption = u"次の100件(&N)"_s;
    m_entries[Unread].Caption = u"未読のみ(&R)"_s;
    m_entries[All].Caption = u"全て表示(&A)"_s;
}

QString CViewModes::Statement(int Index, qint32 BBS_ID, int PageSize) const
{
    const bool isPage = Index <= OlderPage;
    QString sql = isPage ? u"SELECT TOP "_s + QString::number(PageSize) + u" *"_s : u"SELECT *"_s;
    sql += u"  FROM Message WHERE BBS_ID = "_s + QString::number(BBS_ID);
    if (Index == NewerPage)
        return sql + u"   AND ID > "_s + QString::number(m_highestId) + u" ORDER BY ID"_s;
    if (Index == OlderPage)
        sql += u"   AND ID < "_s + QString::number(m_lowestId);
    if (Index == Unread)
        sql += u"   AND Read = False"_s;
    return sql + u" ORDER BY ID DESC"_s;
}

void CViewModes::SetEntry(int Index, const CaptionParts& Parts, int Found, int PageSize)
{
    const int count = Found == 0 ? PageSize : Found;
    const QString text = Parts.Word + QString::number(count) + u"件("_s;
    ViewEntry& entry = m_entries[static_cast<std::size_t>(Index)];
    entry.Caption = text + u'&' + Parts.AccessKey + u')';
    entry.ToolTip = text + Parts.Shortcut + u')';
    entry.Enabled = Found > 0;
    entry.Count = count;
}

void CViewModes::Recount(dao::Database* Db, qint32 BBS_ID, int PageSize)
{
    const QString sql =
        u"SELECT TOP "_s + QString::number(PageSize) + u" ID  FROM Message WHERE BBS_ID = "_s + QString::number(BBS_ID);
    const int newest = CountRows(Db, sql);
    const int older = CountRows(Db, sql + u"   AND ID < "_s + QString::number(m_lowestId));
    const int newer = CountRows(Db, sql + u"   AND ID > "_s + QString::number(m_highestId));
    SetEntry(Newest, {u"最新の"_s, u'T', u"F6"_s}, newest, PageSize);
    SetEntry(OlderPage, {u"次の"_s, u'N', u"F8"_s}, older, PageSize);
    SetEntry(NewerPage, {u"前の"_s, u'P', u"F7"_s}, newer, PageSize);
}

void CViewModes::Note(qint32 ID)
{
    if (ID > m_highestId || m_highestId == 0)
        m_highestId = ID;
    if (ID < m_lowestId || m_lowestId == 0)
        m_lowestId = ID;
}
