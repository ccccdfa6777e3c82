// bench/support/CViewerOnDatabase.h
// The program over a large database, without a window.

#ifndef BENCH_SUPPORT_CVIEWERONDATABASE_H
#define BENCH_SUPPORT_CVIEWERONDATABASE_H

#include "bench/support/CNoWindow.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/desktop/desktop.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"
#include "viewer/CViewer.h"

/// The program without its window on the database of a folder; its board is the one on view.
struct CViewerOnDatabase
{
    CScriptedDesktop Desk;
    Application App;
    CBBS Bbs{App};
    CNoWindow Window;
    CViewer Viewer{App, Bbs, Window};

    CViewerOnDatabase(const QString& Folder, qint32 Board)
        : App(Desk, Folder, QStringLiteral("tavora"))
    {
        App.SetLogDB(mdlStore::OpenLogDatabase(App.DatabaseFileName(), App));
        App.Option().BBS_ID = Board;
        Bbs.Initialize(App.LogDB());
        Viewer.SelectBoard(Board);
    }

    /// "全て表示", and yes to the question whether so many are wanted.
    void ShowAll()
    {
        Desk.Expect(QStringLiteral("全件表示しますか？"), Desktop::Answer::Yes);
        Viewer.ShowViewMode(CViewModes::All);
    }
};

#endif
