// tests/board/tst_ReceiveKilled.cpp
// The power goes while a board is received: what is on the disk fits together afterwards.

#include "tests/board/CBoardFixture.h"
#include "tests/board/Records.h"
#include "tests/support/CLoopServer.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{
constexpr int PerPage = 30;
constexpr int PageCount = 3000;
constexpr int Rounds = 12;

/// The process that is killed: receives page after page, moving the unread position after each.
int ReceiveForever(const QString& Folder)
{
    CScriptedDesktop desktop;
    Application app(desktop, Folder, u"Tavora"_s);
    app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
    CBBS board(app);
    board.Initialize(app.LogDB());
    while (board.LoadBBS(3, true, false)) {
    }
    return 1;
}
} // namespace

class tst_ReceiveKilled : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NothingIsTorn();
};

void tst_ReceiveKilled::NothingIsTorn()
{
    CBoardFixture fixture;
    CLoopServer server;
    fixture.SetBoardUrl(server.Url(u"/cgi-bin/x.cgi"_s));
    fixture.Run(u"UPDATE BBS SET MaxCount = 30"_s);
    for (int page = 0; page < PageCount; ++page)
        server.Add(CLoopServer::Page(mdlRecords::Bytes(mdlRecords::Plain(page * PerPage + 1, (page + 1) * PerPage))));
    fixture.Board.Initialize(nullptr);
    fixture.App.ReleaseLogDB().reset();

    std::mt19937 random(20020115);
    for (int round = 0; round < Rounds; ++round) {
        const qsizetype until = server.Requests().size() + 2 + qsizetype(random() % 12);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {u"--receive-forever"_s, fixture.Folder.path()});
        QTRY_VERIFY_WITH_TIMEOUT(server.Requests().size() >= until, 30000);
        child.kill();
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);

        Application app(fixture.Desk, fixture.Folder.path(), u"Tavora"_s);
        app.SetLogDB(mdlStore::OpenLogDatabase(app.DatabaseFileName(), app));
        QVERIFY(app.LogDB());
        const auto look = [&](const QString& Sql) { return app.LogDB()->OpenRecordset(Sql)->Long(0); };
        const qint32 count = look(u"SELECT Count(*) FROM Message"_s);
        CBBSProperty board(app);
        QVERIFY(board.GetProperty(3));
        QVERIFY(count > 0);
        QCOMPARE(count % PerPage, 0); // pages are there whole or not at all
        QCOMPARE(look(u"SELECT Count(*) FROM Message WHERE RootThread = 0"_s), 0);
        QVERIFY(board.NoReadPoint() <= look(u"SELECT Max(ID) FROM Message"_s));
        QVERIFY(board.NoReadPoint() >= look(u"SELECT Max(ID) FROM Message"_s) - PerPage);
    }
    QVERIFY(fixture.Desk.Verify());
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == u"--receive-forever")
        return ReceiveForever(arguments.value(2));
    tst_ReceiveKilled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ReceiveKilled.moc"
