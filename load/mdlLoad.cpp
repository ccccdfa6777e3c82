// load/mdlLoad.cpp
// The numbered commands of the File and Board menus and the drivers of a receive and an import behind them.

#include "load/mdlLoad.h"

#include "load/frmLoadDlg.h"
#include "load/receive_host.h"
#include "board/CBBS.h"
#include "board/CBBSProperty.h"
#include "store/Recovery.h"
#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
/// The community's archive of past logs, on the board server that a new database names.
QString ArchiveAddress() { return u"http://localhost:8932/kakolog/"_s; }
} // namespace

CLoadDrivers::CLoadDrivers(Application& App, CBBS& Board, frmLoadDlg& Dialog, ReceiveHost& Host)
    : m_app(App)
    , m_board(Board)
    , m_dialog(Dialog)
    , m_host(Host)
{}

void CLoadDrivers::ExecuteCommand(int Number)
{
    Run([=, this] { Execute(LoadCommand(Number)); });
}

void CLoadDrivers::ImportChosen(const QStringList& Paths)
{
    Run([&] { ConfirmImport(Paths); });
}

/// Tells what the database refuses.
void CLoadDrivers::Run(const std::function<void()>& Action)
{
    try {
        Action();
    } catch (const dao::Error& error) {
        m_app.Shell.MessageBox(mdlStore::RefusalText(error), m_app.AppTitle(), Desktop::Icon::Information);
    }
}

void CLoadDrivers::Execute(LoadCommand Command)
{
    switch (Command) {
    case LoadCommand::ImportFiles: ChooseFiles(); break;
    case LoadCommand::ImportInternet:
    case LoadCommand::Export:
        m_app.Shell.MessageBox(u"未実装m(_ _)m"_s, m_app.AppTitle(), Desktop::Icon::Information);
        break;
    case LoadCommand::ImportKakolog: m_app.Shell.ShellOpenOwn(ArchiveAddress()); break;
    case LoadCommand::Exit: m_host.CloseWindow(); break;
    case LoadCommand::Receive: ReceiveBoards({m_host.CurrentBoard()}, true); break;
    case LoadCommand::ReceiveAll: ReceiveBoards({m_host.CurrentBoard()}, false); break;
    case LoadCommand::VisitReceive: VisitReceive(u" WHERE VisitLoad = True"_s); break;
    case LoadCommand::ReceiveAllBoards: VisitReceive(u" WHERE ListOrder >= 0"_s); break;
    case LoadCommand::NewMessage: m_board.Send({.BBS_ID = m_host.CurrentBoard()}, false); break;
    case LoadCommand::Reply:
        if (const auto message = m_host.SelectedMessage())
            m_board.Send({.BBS_ID = m_host.CurrentBoard(), .ID = message->ID}, true);
        break;
    }
}

void CLoadDrivers::VisitReceive(const QString& Condition)
{
    const std::vector<qint32> boards = BoardsWhere(Condition);
    if (boards.empty())
        m_app.Shell.MessageBox(u"巡回受信対象の掲示板はありませんでした。"_s, m_app.AppTitle(),
                               Desktop::Icon::Information);
    else
        ReceiveBoards(boards, true);
}

std::vector<qint32> CLoadDrivers::BoardsWhere(const QString& Condition) const
{
    std::vector<qint32> boards;
    if (!m_app.LogDB())
        return boards;
    const auto rows =
        m_app.LogDB()->OpenRecordset(u"SELECT BBS_ID"_s + u"  FROM BBS"_s + Condition + u" ORDER BY ListOrder"_s);
    for (; !rows->Eof(); rows->MoveNext())
        boards.push_back(rows->Long(0));
    return boards;
}

void CLoadDrivers::ReceiveBoards(const std::vector<qint32>& Boards, bool NoReadLoad)
{
    RunAsOne(RunKind::Receive, u"受信"_s, [&] { ReceiveInTurn(Boards, NoReadLoad); });
}

/// Whatever happens in between, a run that was started is ended, unless the window is on its way out.
void CLoadDrivers::RunAsOne(RunKind Kind, const QString& HeadCaption, const std::function<void()>& Action)
{
    if (m_board.IsLoad() || m_board.IsImport())
        return;
    m_host.RunStarted(Kind);
    m_board.InitCancel();
    std::optional<dao::Error> refusal;
    try {
        OpenDialog(HeadCaption);
        Action();
    } catch (const dao::Error& error) {
        refusal = error;
    }
    if (m_host.IsClosing())
        return;
    FinishDialog();
    m_host.RunEnded();
    if (refusal)
        throw *refusal;
}

void CLoadDrivers::OpenDialog(const QString& HeadCaption)
{
    if (m_dialog.IsLoad())
        m_dialog.close();
    m_dialog.ShowDialog(HeadCaption, m_host.DialogOwner());
}

void CLoadDrivers::ReceiveInTurn(const std::vector<qint32>& Boards, bool NoReadLoad)
{
    for (std::size_t place = 0; place < Boards.size(); ++place) {
        ReceiveBoard(Boards[place], NoReadLoad, place + 1 < Boards.size());
        if (m_host.IsClosing() || !m_dialog.IsNextBBS())
            break;
    }
}

void CLoadDrivers::ReceiveBoard(qint32 BBS_ID, bool NoReadLoad, bool IsMore)
{
    CBBSProperty property(m_app);
    property.GetProperty(BBS_ID);
    m_dialog.InitNewBBS(property, IsMore);
    bool isErrorLogged = false;
    const auto watch = QObject::connect(&m_board, &CBBS::ChangeState, &m_dialog,
                                        [&](const QString&, bool, bool AddLog) { isErrorLogged |= AddLog; });
    const bool stopsAtStored = m_app.Option().ExitIfMessageFound && NoReadLoad;
    const bool isDone = m_board.LoadBBS(BBS_ID, NoReadLoad, stopsAtStored);
    QObject::disconnect(watch);
    if (!m_host.IsClosing())
        ShowSummary(property.Name, isDone, isErrorLogged);
}

void CLoadDrivers::ShowSummary(const QString& BoardName, bool IsDone, bool IsErrorLogged)
{
    const bool isError = !IsDone && m_board.IsError();
    QString summary;
    if (isError)
        summary = BoardName + u"の受信でエラーが発生しました。"_s;
    else if (!IsDone)
        summary = u"処理は中断されました。"_s;
    else if (m_board.SaveCount() >= 1)
        summary = BoardName + u"で"_s + QString::number(m_board.SaveCount()) + u"件受信しました。"_s;
    else
        summary = BoardName + u"に新規投稿はありませんでした。"_s;
    m_host.SetStatus(summary);
    if (m_dialog.IsLoad())
        m_dialog.UpdateInfo(summary, frmLoadDlg::SummaryLine, !(isError && IsErrorLogged));
}

void CLoadDrivers::FinishDialog()
{
    if (!m_dialog.IsLoad())
        return;
    m_dialog.setWindowTitle(u"完了 - "_s + m_app.AppTitle());
    m_dialog.SetButtonMode(frmLoadDlg::OkMode);
}
