// tests/load/tst_LoadDrivers.cpp
// The numbered commands and the runs that they start, with a real dialog and a real server.

#include "load/frmLoadDlg.h"
#include "load/mdlLoad.h"
#include "tests/board/CBoardFixture.h"
#include "tests/board/Records.h"
#include "tests/load/CRecordingReceiveHost.h"
#include "tests/support/CLoopServer.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using mdlRecords::Plain;

namespace
{
const QString Continue = u"継続して次の掲示板から受信しますか？"_s;

/// All boards at one server whose replies are log pages only: the boards' own pages are in the cache.
struct CDriverFixture : CBoardFixture
{
    CLoopServer Server;
    CRecordingReceiveHost Host;
    frmLoadDlg Dialog{App, Board};
    CLoadDrivers Drivers{App, Board, Dialog, Host};

    explicit CDriverFixture(const QStringList& Pages = {})
    {
        for (const QString& page : Pages)
            Server.Add(CLoopServer::Page(mdlRecords::Bytes(page)));
        for (const QString& board : {u"keyaki"_s, u"kaede"_s, u"kusunoki"_s})
            QVERIFY(QFile(Folder.filePath(board + u".html"_s)).open(QIODevice::WriteOnly));
        Run(u"UPDATE BBS SET URL = '%1', VisitLoad = False, ListOrder = -1"_s.arg(
            Server.Url(u"/x.cgi"_s).toString()));
        Run(u"UPDATE BBS SET VisitLoad = True, ListOrder = 10 - BBS_ID WHERE BBS_ID <= 5"_s);
        QObject::connect(&Board, &CBBS::ChangeState, &Dialog, [this](const QString& Text, bool, bool AddLog) {
            if (Dialog.IsLoad())
                Dialog.UpdateInfo(Text, frmLoadDlg::StateLine, AddLog);
        });
    }

    QStringList Log() const
    {
        return Dialog.findChild<QPlainTextEdit*>(u"txtLog"_s)->toPlainText().split(u'\n', Qt::SkipEmptyParts);
    }
    /// A log file with messages First to Last.
    QString LogFile(const QString& Name, int First, int Last)
    {
        QFile file(Folder.filePath(Name));
        return file.open(QIODevice::WriteOnly) && file.write(mdlRecords::Bytes(Plain(First, Last))) >= 0
                   ? file.fileName()
                   : QString();
    }
    /// Presses the dialog's button as soon as the board numbered Number tells of its first record.
    void CancelAtRecordOf(qint32 BBS_ID)
    {
        QObject::connect(&Board, &CBBS::AddMessage, &Dialog, [this, BBS_ID](const CMessage& Msg) {
            if (Msg.BBS_ID == BBS_ID)
                QTest::mouseClick(Dialog.findChild<QPushButton*>(u"cmdOK"_s), Qt::LeftButton);
        });
    }
};
} // namespace

class tst_LoadDrivers : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void OneBoard_data();
    void OneBoard();
    void BoardsInListOrder();
    void NoBoardToVisit();
    void StopsAtStoredOnlyForUnread();
    void AFailedBoardDoesNotStopTheRun();
    void CancelInTheMiddle_data();
    void CancelInTheMiddle();
    void CancelOnTheLastBoardAsksNothing();
    void ClosingTheWindowLeavesEverythingBe();
    void ASecondRunWaitsForItsTurn();
    void ImportQuestion_data();
    void ImportQuestion();
    void ManyFilesStayInTheQuestion();
    void ImportAsksForFiles();
    void ImportSummaries_data();
    void ImportSummaries();
    void CancelOfAnImportLeavesOutTheRest();
    void OtherCommands();
    void RefusalsOfTheDatabaseAreTold();
};

void tst_LoadDrivers::OneBoard_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QString>("summary");
    QTest::newRow("unread") << 7 << Plain(1, 3) << QByteArray("GET /x.cgi?dousa=log&logmidoku=1&logno=0")
                            << u"けやき掲示板で3件受信しました。"_s;
    QTest::newRow("all") << 8 << Plain(1, 1) << QByteArray("GET /x.cgi?dousa=log&logmidoku=0&logno=0")
                         << u"けやき掲示板で1件受信しました。"_s;
    QTest::newRow("nothing new") << 7 << QString() << QByteArray("GET /x.cgi?dousa=log&logmidoku=1&logno=0")
                                 << u"けやき掲示板に新規投稿はありませんでした。"_s;
}

void tst_LoadDrivers::OneBoard()
{
    QFETCH(int, command);
    QFETCH(QString, page);
    QFETCH(QByteArray, request);
    QFETCH(QString, summary);
    CDriverFixture fixture({page});
    fixture.Drivers.ExecuteCommand(command);
    QCOMPARE(fixture.Server.Requests(), QByteArrayList{request});
    QCOMPARE(fixture.Host.Events, QStringList({u"receive"_s, summary, u"ended"_s}));
    QVERIFY(fixture.Dialog.IsLoad());
    QCOMPARE(fixture.Dialog.windowTitle(), u"完了 - Tavora Ver.0.50"_s);
    QCOMPARE(fixture.Dialog.ButtonMode(), qint16(frmLoadDlg::OkMode));
    QCOMPARE(fixture.Dialog.Infomation().section(u"\r\n"_s, 2, 2), summary);
    QCOMPARE(fixture.Log(), QStringList({u"けやき掲示板から受信中..."_s, summary}));
}

void tst_LoadDrivers::BoardsInListOrder()
{
    for (const int command : {9, 10}) {
        CDriverFixture fixture({Plain(1, 1), Plain(1, 2), Plain(1, 3)});
        fixture.Run(u"UPDATE BBS SET VisitLoad = False WHERE BBS_ID = 3"_s);
        fixture.Drivers.ExecuteCommand(command);
        QStringList boards;
        for (const CMessage& message : fixture.Added)
            boards << QString::number(message.BBS_ID);
        boards.removeDuplicates();
        QCOMPARE(boards.join(u' '), command == 9 ? u"5 4"_s : u"5 4 3"_s);
        QVERIFY(fixture.Server.Requests().at(0).contains("logmidoku=1"));
        QCOMPARE(fixture.Host.Events.filter(u"ended"_s).size(), 1);
    }
}

void tst_LoadDrivers::NoBoardToVisit()
{
    CDriverFixture fixture;
    fixture.Run(u"UPDATE BBS SET VisitLoad = False"_s);
    fixture.Desk.Expect(u"巡回受信対象の掲示板はありませんでした。"_s);
    fixture.Drivers.ExecuteCommand(9);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Desk.Boxes.at(0).Icon, Desktop::Icon::Information);
    QCOMPARE(fixture.Host.Events, QStringList());
    QVERIFY(!fixture.Dialog.IsLoad());
}

void tst_LoadDrivers::StopsAtStoredOnlyForUnread()
{
    for (const int command : {7, 8}) {
        CDriverFixture fixture({Plain(1, 2), QString()});
        fixture.Property().SetDownloadCount(2);
        fixture.App.Option().ExitIfMessageFound = true;
        fixture.Run(u"INSERT INTO Message(BBS_ID, ID, RootThread) VALUES(3, 2, 2)"_s);
        fixture.Drivers.ExecuteCommand(command);
        QCOMPARE(fixture.Server.Requests().size(), command == 7 ? 1 : 2);
    }
}

void tst_LoadDrivers::AFailedBoardDoesNotStopTheRun()
{
    CDriverFixture fixture;
    fixture.Server.Add(CLoopServer::Page("x", "404 Not Found"));
    fixture.Server.Add(CLoopServer::Page(mdlRecords::Bytes(Plain(1, 2))));
    fixture.Run(u"UPDATE BBS SET VisitLoad = False WHERE BBS_ID = 3"_s);
    fixture.Drivers.ExecuteCommand(9);
    QCOMPARE(fixture.Host.Events, QStringList({u"receive"_s, u"くすのき掲示板の受信でエラーが発生しました。"_s,
                                               u"かえで掲示板で2件受信しました。"_s, u"ended"_s}));
    QCOMPARE(fixture.Log(), QStringList({u"くすのき掲示板から受信中..."_s, u"Error:HTTP/1.1 404 Not Found"_s,
                                         u"かえで掲示板から受信中..."_s, u"かえで掲示板で2件受信しました。"_s}));
}

void tst_LoadDrivers::CancelInTheMiddle_data()
{
    QTest::addColumn<Desktop::Answer>("answer");
    QTest::addColumn<int>("received");
    QTest::newRow("go on") << Desktop::Answer::Yes << 3;
    QTest::newRow("stop") << Desktop::Answer::No << 2;
}

void tst_LoadDrivers::CancelInTheMiddle()
{
    QFETCH(Desktop::Answer, answer);
    QFETCH(int, received);
    CDriverFixture fixture({Plain(1, 2), Plain(1, 2), Plain(1, 2)});
    fixture.CancelAtRecordOf(4);
    fixture.Desk.Expect(Continue, answer);
    fixture.Drivers.ExecuteCommand(9);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Desk.Boxes.at(0).Caption, u"Tavora Ver.0.50"_s);
    QCOMPARE(fixture.Server.Requests().size(), received);
    const QStringList wanted{u"receive"_s, u"くすのき掲示板で2件受信しました。"_s, u"処理は中断されました。"_s,
                             u"けやき掲示板で2件受信しました。"_s};
    QCOMPARE(fixture.Host.Events, wanted.first(received + 1) + QStringList{u"ended"_s});
    QCOMPARE(fixture.Dialog.IsLoad(), answer == Desktop::Answer::Yes);
    QCOMPARE(fixture.Threads(4), u"1:1"_s);
    QVERIFY(!fixture.App.LogDB()->InTransaction());
}

void tst_LoadDrivers::CancelOnTheLastBoardAsksNothing()
{
    CDriverFixture fixture({Plain(1, 2)});
    fixture.CancelAtRecordOf(3);
    fixture.Drivers.ExecuteCommand(7);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Host.Events, QStringList({u"receive"_s, u"処理は中断されました。"_s, u"ended"_s}));
    QVERIFY(!fixture.Dialog.IsLoad());
}

void tst_LoadDrivers::ClosingTheWindowLeavesEverythingBe()
{
    CDriverFixture fixture({Plain(1, 2), Plain(1, 2)});
    connect(&fixture.Board, &CBBS::AddMessage, this, [&] {
        fixture.Host.Closing = true;
        fixture.Dialog.SetIsNextBBS(false);
        fixture.Dialog.close();
    });
    fixture.Drivers.ExecuteCommand(9);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Host.Events, QStringList{u"receive"_s});
    QCOMPARE(fixture.Server.Requests().size(), 1);
}

void tst_LoadDrivers::ASecondRunWaitsForItsTurn()
{
    CDriverFixture fixture({Plain(1, 1)});
    connect(&fixture.Board, &CBBS::AddMessage, this, [&] { fixture.Drivers.ExecuteCommand(7); });
    fixture.Drivers.ExecuteCommand(7);
    QCOMPARE(fixture.Server.Requests().size(), 1);
    QCOMPARE(fixture.Host.Events.filter(u"receive"_s).size(), 1);
}

void tst_LoadDrivers::ImportQuestion_data()
{
    QTest::addColumn<QString>("own");   // the pattern of board 3
    QTest::addColumn<QString>("other"); // of board 5
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isOther");
    QTest::newRow("no patterns") << u""_s << u""_s << u"a.txt"_s << false;
    QTest::newRow("its own") << u"keyaki*"_s << u""_s << u"keyaki1.txt"_s << false;
    QTest::newRow("another's") << u"*"_s << u"KUSU##.*"_s << u"kusu12.log"_s << true;
    QTest::newRow("another's, not quite") << u"*"_s << u"kusu##.*"_s << u"kusu1.log"_s << false;
    QTest::newRow("folders do not count") << u""_s << u"*tmp*"_s << u"a.txt"_s << false;
    QTest::newRow("apostrophe and bar") << u""_s << u"it's|*"_s << u"it's|1.txt"_s << true;
    QTest::newRow("a pattern that cannot be read") << u"["_s << u"kusu*"_s << u"kusu.txt"_s << true;
}

void tst_LoadDrivers::ImportQuestion()
{
    QFETCH(QString, own);
    QFETCH(QString, other);
    QFETCH(bool, isOther);
    CDriverFixture fixture;
    for (const auto& [board, pattern] : {std::pair(3, own), std::pair(5, other), std::pair(16, u"[z-a"_s)}) {
        CBBSProperty property = fixture.Property(board);
        property.DefaultLogFile = own == u"[" || board != 16 ? pattern : QString();
        property.SetProperty();
    }
    QFETCH(QString, file);
    const QString paths = u"\r\n\r\n/tmp/x/z.txt\r\n/tmp/x/"_s + file;
    fixture.Desk.Expect(u"けやき掲示板"_s, Desktop::Answer::No);
    fixture.Drivers.ImportChosen({u"/tmp/x/z.txt"_s, u"/tmp/x/"_s + file});
    QVERIFY(fixture.Desk.Verify());
    const CShownBox& box = fixture.Desk.Boxes.at(0);
    QCOMPARE(box.Text, (isOther ? u"くすのき掲示板用のログファイルと思われるファイルが指定されています。\r\n"
                                  "このままけやき掲示板に下記のファイルをインポートしてもよろしいですか？"_s
                                : u"けやき掲示板に下記のファイルをインポートします。\r\nよろしいですか？"_s) +
                           paths);
    QCOMPARE(box.Default, isOther ? Desktop::Answer::No : Desktop::Answer::Yes);
    QCOMPARE(box.Icon, Desktop::Icon::Information);
    QCOMPARE(box.Caption, u"Tavora Ver.0.50"_s);
    QCOMPARE(fixture.Host.Events, QStringList());
}

void tst_LoadDrivers::ManyFilesStayInTheQuestion()
{
    CDriverFixture fixture;
    QStringList paths;
    for (int i = 0; i < 1000; ++i)
        paths << u"/tmp/a\nb%1"_s.arg(i);
    fixture.Desk.Expect(u"よろしいですか？"_s, Desktop::Answer::No);
    fixture.Drivers.ImportChosen(paths);
    QCOMPARE(fixture.Desk.Boxes.at(0).Text.count(u'\n'), 23);
    QVERIFY(fixture.Desk.Boxes.at(0).Text.endsWith(u"/tmp/a?b19\r\nほか980件"_s));
}

void tst_LoadDrivers::ImportAsksForFiles()
{
    CDriverFixture fixture;
    const QString types =
        u"テキストファイル(*.txt;*.log)|*.txt;*.log|LHA書庫ファイル(*.lzh)|*.lzh|全てのファイル(*.*)|*.*"_s;
    fixture.Run(u"UPDATE BBS SET DefaultLogFile = ''"_s);
    fixture.Desk.ExpectFiles({}, {});
    fixture.Drivers.ExecuteCommand(1);
    QCOMPARE(fixture.Desk.Boxes.size(), std::size_t(1));
    QCOMPARE(fixture.Desk.LastFilter, types);

    CBBSProperty property = fixture.Property();
    property.DefaultLogFile = u"key*.txt;*.lzh"_s;
    property.SetProperty();
    const QString file = fixture.LogFile(u"a.txt"_s, 1, 2);
    for (int i = 0; i < 2; ++i) {
        fixture.Desk.ExpectFiles({}, {file});
        fixture.Desk.Expect(u"けやき掲示板に下記のファイルをインポートします。"_s, Desktop::Answer::Yes);
        fixture.Drivers.ExecuteCommand(1);
    }
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Desk.LastFilter, u"けやき掲示板用ログファイル(key*.txt;*.lzh)|key*.txt;*.lzh|"_s + types);
    QCOMPARE(fixture.Desk.LastFolder, fixture.Folder.path());
    QCOMPARE(fixture.Host.Events, QStringList({u"import"_s, u"2件インポートしました。"_s, u"ended"_s, u"import"_s,
                                               u"インポートできるログはありませんでした。"_s, u"ended"_s}));
    QCOMPARE(fixture.Log(),
             QStringList({file + u"から0件インポートしました。"_s, u"インポートできるログはありませんでした。"_s}));
    QCOMPARE(fixture.Dialog.windowTitle(), u"完了 - Tavora Ver.0.50"_s);
    QCOMPARE(fixture.Dialog.Infomation().section(u"\r\n"_s, 0, 0), file + u"のインポート中...(1/1)"_s);
    QCOMPARE(fixture.Dialog.ButtonMode(), qint16(frmLoadDlg::OkMode));
}

void tst_LoadDrivers::ImportSummaries_data()
{
    QTest::addColumn<QStringList>("files"); // name, and the messages in it; without any there is no such file
    QTest::addColumn<QString>("summary");
    QTest::addColumn<bool>("closes");
    QTest::newRow("one") << QStringList{u"a.txt 1 3"_s} << u"3件インポートしました。"_s << true;
    QTest::newRow("the sum") << QStringList{u"a.txt 1 3"_s, u"b.txt 2 5"_s} << u"5件インポートしました。"_s << true;
    QTest::newRow("one is missing") << QStringList{u"a.txt"_s, u"b.txt 2 5"_s} << u"4件インポートしました。"_s << false;
    QTest::newRow("none is there") << QStringList{u"a.txt"_s} << u"インポートできるログはありませんでした。"_s << false;
}

/// What had to be left out stands in the dialog only, so it stays then.
void tst_LoadDrivers::ImportSummaries()
{
    QFETCH(QStringList, files);
    QFETCH(QString, summary);
    CDriverFixture fixture;
    QStringList paths;
    for (const QString& file : files) {
        const QStringList parts = file.split(u' ');
        paths << (parts.size() == 1 ? fixture.Folder.filePath(file)
                                    : fixture.LogFile(parts[0], parts[1].toInt(), parts[2].toInt()));
    }
    fixture.App.Option().AutoCloseImportDialog = true;
    fixture.App.Option().ImportReadMode = true;
    fixture.Drivers.ImportFiles(4, paths);
    QCOMPARE(fixture.Host.Events, QStringList({u"import"_s, summary, u"ended"_s}));
    QCOMPARE(fixture.Log().last(), summary);
    QTEST(!fixture.Dialog.IsLoad(), "closes");
    QCOMPARE(fixture.Rows(u"SELECT Count(*) FROM Message WHERE BBS_ID <> 4 OR Read = False"_s), u"0"_s);
}

void tst_LoadDrivers::CancelOfAnImportLeavesOutTheRest()
{
    CDriverFixture fixture;
    const QStringList files{fixture.LogFile(u"a"_s, 1, 2), fixture.LogFile(u"b"_s, 11, 15),
                            fixture.LogFile(u"c"_s, 21, 22)};
    connect(&fixture.Board, &CBBS::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID == 13)
            fixture.Dialog.reject();
    });
    fixture.Drivers.ImportFiles(3, files);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Host.Events, QStringList({u"import"_s, u"処理は中断されました。"_s, u"ended"_s}));
    QCOMPARE(fixture.Threads(), u"1:1 2:2 11:11 12:12 13:13"_s);
    QVERIFY(!fixture.Dialog.IsLoad());
}

void tst_LoadDrivers::OtherCommands()
{
    CDriverFixture fixture;
    fixture.SetBoardUrl(QUrl(u"http://b/x.cgi"_s));
    fixture.Desk.Expect(u"未実装m(_ _)m"_s);
    fixture.Desk.Expect(u"未実装m(_ _)m"_s);
    for (const int command : {2, 3, 4, 5, 6, 11, 12, 0, -1, 99})
        fixture.Drivers.ExecuteCommand(command);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Host.Events, QStringList{u"close"_s});
    QCOMPARE(fixture.Desk.Opened, QStringList({u"http://localhost:8932/kakolog/"_s, u"http://b/x.cgi?dousa=sinki"_s}));

    fixture.Host.Selected = CMessage{.BBS_ID = 16, .ID = 77}; // in a list of results; the board on view is meant
    fixture.Drivers.ExecuteCommand(12);
    QCOMPARE(fixture.Desk.Opened.last(), u"http://b/x.cgi?dousa=res&resno=77"_s);
}

void tst_LoadDrivers::RefusalsOfTheDatabaseAreTold()
{
    CDriverFixture fixture;
    fixture.App.LogDB()->DeleteTable(u"BBS"_s);
    fixture.Desk.Expect(u"実行時エラー '3078'"_s);
    fixture.Drivers.ExecuteCommand(9);
    QVERIFY(fixture.Desk.Verify());

    fixture.Desk.Expect(u"実行時エラー '3078'"_s);
    fixture.Drivers.ExecuteCommand(7);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Host.Events, QStringList({u"receive"_s, u"ended"_s}));
}

QTEST_MAIN(tst_LoadDrivers)
#include "tst_LoadDrivers.moc"
