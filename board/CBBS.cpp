// board/CBBS.cpp
// The one way to the boards: receiving, storing, queries on the message store, pages to post on.

#include "board/CBBS.h"

#include "board/CBBSProperty.h"
#include "board/CBlockStore.h"
#include "board/CPageFetcher.h"
#include "board/CQueryRunner.h"
#include "board/CRunState.h"
#include "board/ErrorLine.h"
#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace
{
constexpr QStringView ErrorPageStart = u"<html><head><title>Error!!";
/// Line of an error page that tells the reason, from 0.
constexpr qsizetype ErrorLine = 3;

/// The side of a two-sided board goes right behind the first question mark.
QString WithSide(const QString& Address, const CBBSProperty& Property)
{
    if (!Property.IsTwoSided())
        return Address;
    const qsizetype behind = Address.indexOf(u'?') + 1;
    return Address.first(behind) + u"&l_or_r="_s + (Property.Hitokoto == 0 ? u'0' : u'1') + u'&' +
           Address.sliced(behind);
}

QString LogAddress(const CBBSProperty& Property, bool NoReadLoad)
{
    return WithSide(Property.URL + u"?dousa=log&logmidoku="_s + (NoReadLoad ? u'1' : u'0') + u"&logno="_s, Property);
}

/// "reason:detail" from an error page of a board.
QString ErrorPageReason(const QString& Page)
{
    QString line = Page.split(u'\n').value(ErrorLine).trimmed();
    line.remove(u"<FONT SIZE=5>"_s);
    line.replace(u"</FONT><BR>"_s, u":"_s);
    return line.isEmpty() ? u"掲示板が理由のないエラーページを返しました。"_s : line;
}
} // namespace

/// What a receive does; nothing of it changes while it runs.
struct CBBS::CReceivePlan
{
    qint32 BBS_ID = 0;
    QString Address;          ///< of a log page, but for the page index at its end
    qint64 DownloadCount = 1; ///< messages of a full page
    qint64 PageCount = 0;     ///< pages that the board can have
    bool ExitIfMessageFound = false;
};

CBBS::CBBS(Application& App, QObject* Parent)
    : QObject(Parent)
    , m_app(App)
    , m_state(std::make_unique<CRunState>())
    , m_query(std::make_unique<CQueryRunner>(App))
    , m_fetcher(std::make_unique<CPageFetcher>(App.Cookies(), *m_state))
    , m_store(std::make_unique<CBlockStore>(App, *m_state))
{
    connect(m_fetcher.get(), &CPageFetcher::ChangeState, this, &CBBS::ChangeState);
    connect(m_store.get(), &CBlockStore::ChangeState, this, &CBBS::ChangeState);
    connect(m_store.get(), &CBlockStore::AddMessage, this, &CBBS::AddMessage);
    connect(m_store.get(), &CBlockStore::BatchWithdrawn, this, &CBBS::BatchWithdrawn);
    connect(m_store.get(), &CBlockStore::StoreProgress, this, &CBBS::StoreProgress);
    connect(m_store.get(), &CBlockStore::LogError, this, &CBBS::LogError);
}

CBBS::~CBBS() = default;

void CBBS::Initialize(dao::Database* Database)
{
    m_query->SetDatabase(Database);
    m_store->SetDatabase(Database);
}

qint32 CBBS::Timeout() const { return m_fetcher->Timeout(); }
void CBBS::SetTimeout(qint32 NewTimeout) { m_fetcher->SetTimeout(NewTimeout); }
bool CBBS::IsLoad() const { return m_state->IsLoad; }
bool CBBS::IsImport() const { return m_state->IsImport; }
bool CBBS::IsError() const { return m_state->IsError; }
bool CBBS::IsCancel() const { return m_state->IsCancel; }
qint32 CBBS::AnalyseError() const { return m_state->AnalyseError ? -1 : 0; }
qint32 CBBS::AnalyseCount() const { return m_state->AnalyseCount; }
qint32 CBBS::SaveCount() const { return m_state->SaveCount; }

bool CBBS::LoadBBS(qint32 BBS_ID, bool NoReadLoad, bool ExitIfMessageFound)
{
    if (m_state->IsLoad || m_state->IsImport)
        return false;
    *m_state = CRunState{.IsLoad = true};
    const auto done = qScopeGuard([this] { m_state->IsLoad = false; });
    try {
        CBBSProperty property(m_app);
        if (!property.GetProperty(BBS_ID)) {
            Fail(u"掲示板の情報が見つかりません。"_s);
            return false;
        }
        const qint64 perPage = property.DownloadCount();
        Receive({BBS_ID, LogAddress(property, NoReadLoad), perPage, (property.MaxCount + perPage - 1) / perPage,
                 ExitIfMessageFound});
        if (m_state->IsCancel || m_state->IsError)
            return false;
        MoveNoReadPoint(BBS_ID);
        m_state->IsCancel = m_state->IsError = false;
        return true;
    } catch (const dao::Error& error) {
        Fail(mdlErrorLine::Numbered(error.Number, error.Description));
        return false;
    }
}

void CBBS::Receive(const CReceivePlan& Plan)
{
    do {
        m_fetcher->Fetch(Plan.Address + QString::number(m_state->PageIndex));
    } while (StorePage(Plan) && ++m_state->PageIndex < Plan.PageCount);
}

/// Stores what was fetched. True when the next page is worth asking for.
bool CBBS::StorePage(const CReceivePlan& Plan)
{
    const QString& page = m_fetcher->Text();
    if (m_state->IsError)
        return false;
    if (page.startsWith(ErrorPageStart)) {
        Fail(ErrorPageReason(page));
        return false;
    }
    if (m_state->IsCancel || page.isEmpty())
        return false;
    const bool isAllNew = m_store->Store(Plan.BBS_ID, page, false);
    if (m_state->IsCancel || m_state->IsError)
        return false;
    if (!isAllNew && (m_state->AnalyseError || Plan.ExitIfMessageFound))
        return false;
    // Broken records count too: one of them must not make a full page look like the last.
    return m_state->RecordCount >= Plan.DownloadCount * (m_state->PageIndex + 1);
}

/// Everything up to the highest number met counts as read on the board from now on. The messages are committed by now.
void CBBS::MoveNoReadPoint(qint32 BBS_ID)
{
    CBBSProperty property(m_app); // read anew: a reply may have brought a new cookie
    if (!property.GetProperty(BBS_ID) || m_state->HighestNumber <= property.NoReadPoint())
        return;
    const QString number = QString::number(m_state->HighestNumber);
    Q_EMIT ChangeState(u"未読位置を"_s + number + u"に変更しています。"_s, false, false);
    if (property.SetNoReadPoint(m_state->HighestNumber))
        Q_EMIT ChangeState(u"未読位置を"_s + number + u"に設定しました。"_s, false, false);
    else // nothing is lost: what is received twice is stored once
        Q_EMIT ChangeState(u"未読位置を保存できませんでした。"_s, true, true);
}

void CBBS::Fail(const QString& Message)
{
    m_state->IsError = true;
    Q_EMIT ChangeState(Message, true, true);
}

void CBBS::Cancel()
{
    m_state->IsCancel = true;
    m_fetcher->Cancel();
    m_store->CommitPending(); // the user may be asked something now, and the file must not stay locked meanwhile
}

void CBBS::InitCancel() { m_state->IsCancel = false; }
void CBBS::CommitPending() { m_store->CommitPending(); }

void CBBS::SetWatch(WorkWatch* Watch) { m_query->SetWatch(Watch); }
WorkWatch* CBBS::Watch() const { return m_query->Watch(); }

qint16 CBBS::ExecSQL(const QString& SQLString) { return m_query->ExecSQL(SQLString); }
qint32 CBBS::SQLType() const { return m_query->SQLType(); }
qint32 CBBS::Count() const { return m_query->Count(); }
dao::Recordset* CBBS::Recordset() const { return m_query->Recordset(); }
std::optional<CMessage> CBBS::Messages(qint32 Index) const { return m_query->Messages(Index); }
std::optional<CMessage> CBBS::GetMessage() const { return m_query->GetMessage(); }
void CBBS::CloseLogMessages() { m_query->CloseLogMessages(); }

bool CBBS::Send(const CMessage& Msg, bool Reply)
{
    CBBSProperty property(m_app);
    if (!property.GetProperty(Msg.BBS_ID))
        return false;
    if (property.URL.trimmed().isEmpty()) {
        m_app.Shell.MessageBox(u"この掲示板にはアドレスが設定されていません。"_s, m_app.AppTitle(),
                               Desktop::Icon::Information);
        return false;
    }
    QString address = property.URL;
    address += Reply ? u"?dousa=res&resno="_s + QString::number(Msg.ID) : u"?dousa=sinki"_s;
    if (property.IsTwoSided())
        address += property.Hitokoto == 0 ? u"&l_or_r=0"_s : u"&l_or_r=1"_s;
    return m_app.Shell.ShellOpen(address);
}
