// tests/viewer/CViewerFixture.h
// A viewer over a real, new database in a folder of its own.

#ifndef TESTS_VIEWER_CVIEWERFIXTURE_H
#define TESTS_VIEWER_CVIEWERFIXTURE_H

#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/dao/Database.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/viewer/CRecordingHost.h"
#include "tests/viewer/Messages.h"
#include "viewer/CViewer.h"

#include <QTemporaryDir>

/// Pages of three messages, no read timer unless a test wants one. Board 3 has whatever Add stored.
struct CViewerFixture
{
    QTemporaryDir Folder;
    CScriptedDesktop Desk;
    Application App{Desk, Folder.path(), QStringLiteral("Tavora")};
    CBBS Board{App};
    CRecordingHost Host;
    CViewer Viewer{App, Board, Host};

    CViewerFixture()
    {
        App.SetLogDB(mdlStore::CreateNewDatabase(App.DatabaseFileName()));
        Board.Initialize(App.LogDB());
        App.Option().AddMax = 3;
        App.Option().ReadTiming = 1500;
        App.Option().DateFormat = QStringLiteral("yyyy/mm/dd hh:nn");
    }

    void Run(const QString& Sql) { App.LogDB()->Execute(Sql); }

    /// Stores messages First to Last of the board, unread, subject "s<number>", body "b<number>".
    void Add(qint32 BBS_ID, qint32 First, qint32 Last)
    {
        dao::CTransaction transaction(*App.LogDB());
        for (qint32 id = First; id <= Last; ++id)
            Run(QStringLiteral(
                    "INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, "
                    "Body, RootThread, Mark) VALUES(%1,%2,False,'s%2','','','n',#2002/01/15 09:05#,0,'b%2',%2,0)")
                    .arg(BBS_ID)
                    .arg(id));
        transaction.Keep();
    }

    /// The first column of the rows of Sql, as texts.
    QString Rows(const QString& Sql)
    {
        QStringList texts;
        const auto rows = App.LogDB()->OpenRecordset(Sql);
        for (; !rows->Eof(); rows->MoveNext())
            texts.append(rows->Get(0).ToText());
        return texts.join(u' ');
    }
    QString ReadIds() { return Rows(QStringLiteral("SELECT ID FROM Message WHERE Read = True ORDER BY ID")); }

    CMessageList& List(int Index) { return Viewer.List(Index); }
    /// The user clicks a row: the view selects it, then tells.
    void Click(int List, int Row)
    {
        Viewer.List(List).SetSelection({{Row, Row}}, Row);
        Viewer.ItemClicked(List, Row);
    }
};

#endif // TESTS_VIEWER_CVIEWERFIXTURE_H
