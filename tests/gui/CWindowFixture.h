// tests/gui/CWindowFixture.h
// The real main window over a real database in a folder of its own, started and ended as the program does it.

#ifndef TESTS_GUI_CWINDOWFIXTURE_H
#define TESTS_GUI_CWINDOWFIXTURE_H

#include "app/Application.h"
#include "app/Settings.h"
#include "board/CBBS.h"
#include "mainwin/frmView.h"
#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/support/Files.h"
#include "viewer/CViewer.h"

#include <QAction>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// Board 3 is the first board of a new database and the one shown first.
struct CWindowFixture
{
    QTemporaryDir Folder;
    CScriptedDesktop Desk;
    std::unique_ptr<Application> App;
    std::unique_ptr<frmView> Window;
    int ClosedCount = 0;

    /// A new database with the sixteen boards, not open yet. Address, if given, becomes that of board 3.
    explicit CWindowFixture(const QString& Address = {})
    {
        auto db = mdlStore::CreateNewDatabase(Folder.filePath(QStringLiteral("log.mdb")));
        if (!Address.isEmpty())
            db->Execute(QStringLiteral("UPDATE BBS SET URL = '%1' WHERE BBS_ID = 3").arg(Address));
        db->Close();
        QDir(Folder.path()).mkdir(QStringLiteral("cache"));
        QDir(Folder.path()).mkdir(QStringLiteral("image"));
    }

    ~CWindowFixture() { End(); }

    /// What the settings file holds before the start.
    void WriteIni(const QByteArray& Text) const
    {
        mdlFiles::Write(Folder.filePath(QStringLiteral("Tavora.ini")), Text);
    }

    /// Starts the program; what Open says.
    bool Start()
    {
        App = std::make_unique<Application>(Desk, Folder.path(), QStringLiteral("Tavora"));
        App->SetLogDB(mdlStore::OpenLogDatabase(App->DatabaseFileName(), *App));
        App->SettingsIni().Load(App->IniFileName());
        mdlSettings::ReadSettings(*App);
        mdlSettings::InitWebSearchList(*App);
        mdlSettings::CheckFolders(*App);
        Window = std::make_unique<frmView>(*App);
        QObject::connect(Window.get(), &frmView::Closed, [this] { ++ClosedCount; });
        return Window->Open() && QTest::qWaitForWindowActive(Window.get());
    }

    void End()
    {
        if (Window)
            Window->close();
        Window.reset();
        App.reset();
    }

    template<typename Widget> Widget* Find(const QString& Name) const { return Window->findChild<Widget*>(Name); }
    QAction* Action(const QString& Name) const { return Find<QAction>(Name); }
    CViewer& Viewer() const { return Window->Viewer(); }
    CMessageList& List(int Index = 0) const { return Viewer().List(Index); }

    void Run(const QString& Sql) { App->LogDB()->Execute(Sql); }

    /// The first column of the rows of Sql, as texts.
    QString Rows(const QString& Sql)
    {
        QStringList texts;
        for (const auto rows = App->LogDB()->OpenRecordset(Sql); !rows->Eof(); rows->MoveNext())
            texts.append(rows->Get(0).ToText());
        return texts.join(u' ');
    }

    /// Stores messages First to Last of board 3, unread; each but the first answers the one before it.
    void Add(qint32 First, qint32 Last)
    {
        auto db = dao::Database::Open(Folder.filePath(QStringLiteral("log.mdb")));
        dao::CTransaction transaction(*db);
        for (qint32 id = First; id <= Last; ++id) {
            db->Execute(
                QStringLiteral("INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, "
                               "InReplyTo, Body, RootThread, Mark) VALUES(3,%1,False,'題名%1',"
                               "'http://www.example.com/%1','a%1@example.com','投稿者',#2002/01/15 09:05#,%2,"
                               "'本文%1',%3,0)")
                    .arg(id)
                    .arg(id - First ? id - 1 : 0)
                    .arg(First));
        }
        transaction.Keep();
    }
};

#endif
