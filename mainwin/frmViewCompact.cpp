// mainwin/frmViewCompact.cpp
// The command that writes the database anew.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "controls/JobWindow.h"
#include "mainwin/CStatusPanels.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"
#include "store/Compaction.h"
#include "store/Recovery.h"
#include "viewer/CViewer.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int BrokenOff = 3059;

} // namespace

void frmView::DoCompactDatabase()
{
    if (m_busy != BusyState::None || !m_app.LogDB())
        return;
    const QString question = u"データベースファイルを最適化します。\n"
                             "データベースが壊れる可能性がありますので、十分注意した上で実行してください。"_s;
    if (m_app.Shell.MessageBox(question, m_app.AppTitle(), Desktop::Icon::None, Desktop::Buttons::OkCancel) ==
        Desktop::Answer::Ok)
        CompactDatabase();
}

void frmView::CompactDatabase()
{
    m_busy = BusyState::Compact;
    m_tmrRead->stop();
    m_panels->CloseNoReadPoint();
    UpdateEnabled();
    m_bbs->CloseLogMessages();
    m_bbs->Initialize(nullptr);
    std::unique_ptr<dao::Database> database = m_app.ReleaseLogDB();
    const auto reason = mdlStore::CompactLogDatabase(
        database, mdlJobWindow::Open(this, u"データベースファイルを最適化しています..."_s));
    m_app.SetLogDB(std::move(database));
    m_bbs->Initialize(m_app.LogDB());
    m_busy = BusyState::None;
    UpdateEnabled();
    if (reason)
        TellUncompacted(*reason);
    else
        UseDatabase();
}

/// What the lists show was read before and stands in the new file as well.
void frmView::UseDatabase()
{
    m_viewer->RefreshAfterRun();
    m_app.Shell.MessageBox(u"最適化が完了しました。"_s, m_app.AppTitle(), Desktop::Icon::None);
}

/// For the next start: the program ends after a failed compaction.
void frmView::OfferRecovery()
{
    m_bbs->Initialize(nullptr);
    m_app.SetLogDB(nullptr);
    mdlStore::OfferRecovery(m_app.DatabaseFileName(), m_app,
                            [this](const QString& Text) { return mdlJobWindow::Open(this, Text); });
}

void frmView::TellUncompacted(const dao::Error& Reason)
{
    if (Reason.Number == BrokenOff && m_app.LogDB()) {
        ChangeStatusBarStyle(1);
        SetStatus(u"最適化を中止しました。データベースファイルは元のままです。"_s);
        return;
    }
    m_app.Shell.MessageBox(u"データベースファイルは元のまま残してあります。\n\n"_s + Reason.Description,
                           m_app.AppTitle(), Desktop::Icon::Critical);
    if (mdlStore::IsDamage(Reason.Number))
        OfferRecovery();
    m_app.Shell.MessageBox(u"最適化に失敗しました。\nTavoraを終了します。"_s, m_app.AppTitle(),
                           Desktop::Icon::Critical);
    close();
}
