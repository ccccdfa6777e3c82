// load/mdlLoadImport.cpp
// The drivers of an import: choosing the files, the question, and one file after another.

#include "load/mdlLoad.h"

#include "load/ImportChoice.h"
#include "load/frmLoadDlg.h"
#include "load/receive_host.h"
#include "board/CBBS.h"
#include "board/CBBSProperty.h"
#include "app/Application.h"
#include "app/CIniFile.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
/// Section of the settings file for the file dialog, and its key for the folder of the last import.
QString DialogSection() { return u"ImportDialog"_s; }
QString FolderKey() { return u"Folder"_s; }
} // namespace

void CLoadDrivers::ChooseFiles()
{
    CBBSProperty property(m_app);
    if (!m_app.LogDB() || !property.GetProperty(m_host.CurrentBoard()))
        return;
    const QStringList paths = m_app.Shell.OpenFileDialog({}, ImportFolder(), {}, mdlImportChoice::Filter(property));
    if (paths.isEmpty() || m_host.IsClosing())
        return;
    KeepImportFolder(paths.front());
    ConfirmImport(paths);
}

/// The board is that of the question, whatever is in view when it is answered.
void CLoadDrivers::ConfirmImport(const QStringList& Paths)
{
    CBBSProperty property(m_app);
    if (Paths.isEmpty() || !m_app.LogDB() || !property.GetProperty(m_host.CurrentBoard()))
        return;
    const auto [text, usual] = mdlImportChoice::Ask(*m_app.LogDB(), property, Paths);
    const auto answer =
        m_app.Shell.MessageBox(text, m_app.AppTitle(), Desktop::Icon::Information, Desktop::Buttons::YesNo, usual);
    if (answer == Desktop::Answer::Yes && !m_host.IsClosing())
        ImportFiles(property.ID(), Paths);
}

/// The dialog's log is the only place that tells what had to be left out, so it closes by itself only after a clean
/// run.
void CLoadDrivers::ImportFiles(qint32 BBS_ID, const QStringList& Paths)
{
    ImportCount count;
    RunAsOne(RunKind::Import, u"インポート"_s, [&] { ImportInTurn(BBS_ID, Paths, count); });
    if (m_app.Option().AutoCloseImportDialog && count.IsWhole && !m_host.IsClosing())
        m_dialog.close();
}

void CLoadDrivers::ImportInTurn(qint32 BBS_ID, const QStringList& Paths, ImportCount& Count)
{
    const QString of = u'/' + QString::number(Paths.size()) + u')';
    const auto percent = QObject::connect(&m_board, &CBBS::StoreProgress, &m_dialog, [this](int Percent) {
        m_dialog.UpdateInfo(QString::number(Percent) + u"% 完了"_s, frmLoadDlg::CacheLine, false);
    });
    const auto done = qScopeGuard([&] { QObject::disconnect(percent); });
    for (qsizetype place = 0; place < Paths.size() && !Count.IsOver; ++place) {
        m_dialog.UpdateInfo(Paths[place] + u"のインポート中...("_s + QString::number(place + 1) + of,
                            frmLoadDlg::BoardLine, false);
        m_dialog.UpdateInfo({}, frmLoadDlg::CacheLine, false);
        ImportFile(BBS_ID, Paths[place], Count);
    }
    m_dialog.UpdateInfo({}, frmLoadDlg::CacheLine, false);
    if (!m_host.IsClosing())
        ShowImportSummary(Count);
}

void CLoadDrivers::ImportFile(qint32 BBS_ID, const QString& Path, ImportCount& Count)
{
    Count.IsWhole = m_board.ImportLog(BBS_ID, Path, m_app.Option().ImportReadMode) && Count.IsWhole;
    Count.Saved += m_board.SaveCount();
    Count.IsOver = m_board.IsCancel() || m_board.IsError() || m_host.IsClosing();
}

void CLoadDrivers::ShowImportSummary(const ImportCount& Count)
{
    QString summary = u"インポートできるログはありませんでした。"_s;
    if (m_board.IsCancel())
        summary = u"処理は中断されました。"_s;
    else if (Count.Saved >= 1)
        summary = QString::number(Count.Saved) + u"件インポートしました。"_s;
    if (m_board.IsError())
        summary = u"インポートでエラーが発生しました。"_s + (Count.Saved >= 1 ? summary : QString());
    m_host.SetStatus(summary);
    if (m_dialog.IsLoad())
        m_dialog.UpdateInfo(summary, frmLoadDlg::SummaryLine, true);
}

/// That of the last import; at first the one where the browser puts what it fetches.
QString CLoadDrivers::ImportFolder() const
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(DialogSection());
    const QString folder = ini.Data(FolderKey());
    return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) : folder;
}

void CLoadDrivers::KeepImportFolder(const QString& Path)
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(DialogSection());
    ini.SetData(FolderKey(), QFileInfo(Path).absolutePath());
    ini.Save(DialogSection());
}
