// tests/board/tst_Receive.cpp
// A receive from the request to the unread position, against real servers that behave and that do not.

#include "platform/net/CTransfer.h"
#include "platform/text/Codepage932.h"
#include "boardd/CBoardServer.h"
#include "tests/board/CBoardFixture.h"
#include "tests/board/Records.h"
#include "tests/support/CLoopServer.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;
using mdlRecords::Block;
using mdlRecords::Bytes;
using mdlRecords::Plain;

Q_DECLARE_METATYPE(CLoopReply)

namespace
{
CLoopReply Log(const QString& Text) { return CLoopServer::Page(Bytes(Text)); }

/// Board 3 at the server, two messages a page, 200 messages kept; nothing above 1 counts as read.
struct CReceiveFixture : CBoardFixture
{
    CLoopServer Server;
    QString Url = Server.Url(u"/cgi-bin/x.cgi"_s).toString();

    explicit CReceiveFixture(const std::vector<CLoopReply>& Script = {}, qint32 BBS_ID = 3)
        : Server(Script)
    {
        SetBoardUrl(QUrl(Url), BBS_ID);
        Run(u"UPDATE BBS SET MaxCount = 200"_s);
        CBBSProperty board = Property(BBS_ID);
        board.SetDownloadCount(2);
        board.SetNoReadPoint(1);
    }

    bool Load(bool ExitIfMessageFound = false) { return Board.LoadBBS(3, true, ExitIfMessageFound); }
    QString Numbers() { return Rows(u"SELECT ID FROM Message ORDER BY ID"_s); }
    int Pages() { return int(Server.Requests().size()); }

    /// Calls Act once, when a progress text that holds Part comes.
    void When(const QString& Part, const std::function<void()>& Act)
    {
        QObject::connect(&Board, &CBBS::ChangeState, &Board, [this, Part, Act, done = false](const QString& Text) mutable {
            if (!done && Text.contains(Part)) {
                done = true;
                Act();
            }
        });
    }
};
} // namespace

class tst_Receive : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void AWholeReceive();
    void StagesAreTold();
    void PagesAreAskedFor_data();
    void PagesAreAskedFor();
    void AddressesOfTheSides_data();
    void AddressesOfTheSides();
    void StoredMessages_data();
    void StoredMessages();
    void Faults_data();
    void Faults();
    void OddPages_data();
    void OddPages();
    void SilenceTimesOut();
    void CancelAt_data();
    void CancelAt();
    void CancelWhileNothingComes();
    void BytesAreCounted();
    void UnreadPositionFollowsTheCommit();
    void UnreadPositionOnlyGoesUp();
    void UnreadPositionThatIsNotStoredIsTold();
    void UnreadPositionStaysWhenTheDiskIsFull();
    void ServersCookieIsKept();
    void UnknownBoard();
    void PostingPages();
    void TheSampleServer();
};

void tst_Receive::AWholeReceive()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), Log(Plain(4, 5)), Log(Plain(6, 6))});
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.Server.Requests(), QByteArrayList({"GET /cgi-bin/x.cgi?dousa=log&logmidoku=1&logno=0",
                                                        "GET /cgi-bin/x.cgi?dousa=log&logmidoku=1&logno=1",
                                                        "GET /cgi-bin/x.cgi?dousa=log&logmidoku=1&logno=2"}));
    QCOMPARE(fixture.Threads(), u"2:2 3:3 4:4 5:5 6:6"_s);
    QCOMPARE(fixture.Board.SaveCount(), 5);
    QCOMPARE(fixture.Board.AnalyseCount(), 5);
    QCOMPARE(fixture.Board.AnalyseError(), 0);
    QCOMPARE(fixture.Added.size(), 5u);
    QCOMPARE(fixture.Property().NoReadPoint(), 6);
    QCOMPARE(fixture.States.mid(fixture.States.size() - 2),
             QStringList({u"未読位置を6に変更しています。"_s, u"未読位置を6に設定しました。"_s}));
    QVERIFY(fixture.Errors.isEmpty());
    QVERIFY(!fixture.Board.IsLoad());
    QCOMPARE(fixture.Server.Connections(), 1);
    QVERIFY(fixture.Server.RequestHeader(0, "Cookie").contains(fixture.Url.toLatin1() + "=,,,,20,,,1,2"));
}

void tst_Receive::StagesAreTold()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), Log(QString())});
    QVERIFY(fixture.Load());
    const QString request = fixture.Url + u"?dousa=log&logmidoku=1&logno=0"_s;
    QCOMPARE(fixture.States.mid(0, 3), QStringList({request + u" を探しています。"_s, request + u" に接続中です。"_s,
                                                    u"1番目のログを要求しています。"_s}));
    QVERIFY(fixture.States.contains(u"2番目のログを要求しています。"_s));
}

void tst_Receive::PagesAreAskedFor_data()
{
    mdlTable::AddRows<int, int, int>("receive.json", "PagesAreAskedFor", {"maxCount", "downloadCount", "wanted"});
}

/// Every page holds two records, the second of them broken.
void tst_Receive::PagesAreAskedFor()
{
    QFETCH(int, maxCount);
    QFETCH(int, downloadCount);
    CReceiveFixture fixture;
    fixture.Run(u"UPDATE BBS SET MaxCount = %1"_s.arg(maxCount));
    fixture.Property().SetDownloadCount(downloadCount);
    for (int page = 0; page < 10; ++page)
        fixture.Server.Add(Log(Plain(page + 2, page + 2) + Block({CRecordText{.ID = u"?"_s}.Text()})));
    QVERIFY(fixture.Load());
    QTEST(fixture.Pages(), "wanted");
    QCOMPARE(fixture.Board.SaveCount(), fixture.Pages());
    QCOMPARE(fixture.Board.AnalyseError(), -1);
    QCOMPARE(fixture.Logged.size(), fixture.Pages());
}

void tst_Receive::AddressesOfTheSides_data()
{
    QTest::addColumn<int>("board");
    QTest::addColumn<bool>("unread");
    QTest::addColumn<QByteArray>("wanted");
    QTest::newRow("ordinary, all") << 3 << false << QByteArray("GET /cgi-bin/x.cgi?dousa=log&logmidoku=0&logno=0");
    QTest::newRow("left, unread") << 13 << true << QByteArray("GET /cgi-bin/x.cgi?&l_or_r=0&dousa=log&logmidoku=1&logno=0");
    QTest::newRow("right, unread") << 14 << true << QByteArray("GET /cgi-bin/x.cgi?&l_or_r=1&dousa=log&logmidoku=1&logno=0");
    QTest::newRow("right, all") << 14 << false << QByteArray("GET /cgi-bin/x.cgi?&l_or_r=1&dousa=log&logmidoku=0&logno=0");
}

void tst_Receive::AddressesOfTheSides()
{
    QFETCH(int, board);
    QFETCH(bool, unread);
    const CRecordText record{.ID = u"8"_s};
    CReceiveFixture fixture({Log(Block({board == 3 ? record.Text() : record.TwoSidedText()}))}, board);
    QVERIFY(fixture.Board.LoadBBS(board, unread, false));
    QTEST(fixture.Server.Requests().value(0), "wanted");
    QCOMPARE(fixture.Rows(u"SELECT BBS_ID, ID, Subject FROM Message"_s),
             QString::number(board) + (board == 3 ? u",8,題名"_s : u",8,本文"_s));
    const QByteArray cookie = fixture.Cookie(fixture.Url);
    QCOMPARE(cookie.split(',').value(board == 14 ? 9 : 7), QByteArray("8"));
}

void tst_Receive::StoredMessages_data()
{
    QTest::addColumn<bool>("exitIfFound");
    QTest::addColumn<bool>("withBroken");
    QTest::addColumn<int>("pages");
    QTest::newRow("goes on") << false << false << 3;
    QTest::newRow("stops") << true << false << 2;
    QTest::newRow("stops at a page with a broken record") << false << true << 2;
}

void tst_Receive::StoredMessages()
{
    QFETCH(bool, exitIfFound);
    QFETCH(bool, withBroken);
    CReceiveFixture fixture({Log(Plain(2, 3)),
                             Log(Plain(4, 5) + (withBroken ? Block({CRecordText{.ID = u"x"_s}.Text()}) : QString())),
                             Log(Plain(6, 6))});
    fixture.Run(u"INSERT INTO Message(BBS_ID, ID, Read, Subject, InReplyTo, RootThread) VALUES(3, 4, True, 'old', 0, 4)"_s);
    QVERIFY(fixture.Load(exitIfFound));
    QTEST(fixture.Pages(), "pages");
    QCOMPARE(fixture.Rows(u"SELECT ID, Subject FROM Message WHERE Read = True"_s), u"4,old"_s);
    QCOMPARE(fixture.Property().NoReadPoint(), fixture.Pages() == 3 ? 6 : 5);
}

void tst_Receive::Faults_data()
{
    const QByteArray page = Bytes(Plain(4, 5));
    QTest::addColumn<CLoopReply>("second");
    QTest::addColumn<QString>("error");
    QTest::newRow("404") << CLoopServer::Page("<html></html>", "404 Not Found") << u"Error:HTTP/1.1 404 Not Found"_s;
    QTest::newRow("500 with a log in it") << CLoopServer::Page(page, "500 Broken") << u"Error:HTTP/1.1 500 Broken"_s;
    QTest::newRow("204") << CLoopServer::Raw("HTTP/1.1 204 No Content\r\n\r\n") << u"Error:HTTP/1.1 204 No Content"_s;
    QTest::newRow("cut in the body") << CLoopServer::Page(page).Cut(200) << u"受信エラー(12030):"_s;
    QTest::newRow("cut in the header") << CLoopServer::Page(page).Cut(12) << u"受信エラー("_s;
    QTest::newRow("closed without an answer") << CLoopServer::Raw({}).Cut(0) << u"受信エラー("_s;
    QTest::newRow("no HTTP") << CLoopServer::Raw("+OK ready\r\n\r\n").Closing() << u"受信エラー("_s;
    QTest::newRow("too large") << CLoopServer::Raw("HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\nx") << u"受信エラー(12152):"_s;
    QTest::newRow("error page")
        << CLoopServer::Page(Bytes(u"<html><head><title>Error!!</title>\r\n</head>\r\n<body>\r\n"
                                   "<FONT SIZE=5>ログがありません</FONT><BR>番号が不正です\r\n</body></html>"_s))
        << u"ログがありません:番号が不正です"_s;
    QTest::newRow("error page of one line") << CLoopServer::Page("<html><head><title>Error!!")
                                            << u"掲示板が理由のないエラーページを返しました。"_s;
}

/// The first page comes whole, the second one does not.
void tst_Receive::Faults()
{
    QFETCH(CLoopReply, second);
    QFETCH(QString, error);
    CReceiveFixture fixture({Log(Plain(2, 3))});
    fixture.Server.SetDefault(second); // a kept connection that breaks is tried once more
    QVERIFY(!fixture.Load());
    QVERIFY(fixture.Board.IsError());
    QVERIFY(!fixture.Board.IsCancel());
    QCOMPARE(fixture.Errors.size(), 1);
    QVERIFY2(fixture.Errors[0].startsWith(error), qPrintable(fixture.Errors[0]));
    QCOMPARE(fixture.Threads(), u"2:2 3:3"_s);
    QCOMPARE(fixture.Property().NoReadPoint(), 1);

    fixture.Server.Add(Log(Plain(2, 5)));
    fixture.Server.Add(Log(QString()));
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.Threads(), u"2:2 3:3 4:4 5:5"_s);
    QCOMPARE(fixture.Property().NoReadPoint(), 5);
}

void tst_Receive::OddPages_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<int>("logged");
    QTest::addColumn<int>("noReadPoint");
    QTest::newRow("empty") << QByteArray() << QString() << 0 << 1;
    QTest::newRow("no separators") << Bytes(CRecordText{.ID = u"5"_s}.Text()) << QString() << 0 << 1;
    QTest::newRow("some other page") << QByteArray("<html><body>under construction</body></html>") << QString() << 0 << 1;
    QTest::newRow("bare line feeds") << Bytes(Plain(5, 5)).replace("\r\n", "\n") << u"5"_s << 0 << 5;
    QTest::newRow("bare carriage returns") << Bytes(Plain(5, 5)).replace("\r\n", "\r") << u"5"_s << 0 << 5;
    QTest::newRow("record cut at the end") << Bytes(Plain(5, 6)).chopped(60) << u"5"_s << 0 << 5;
    QTest::newRow("UTF-8") << Plain(5, 5).toUtf8() << QString() << 1 << 1;
    QTest::newRow("random bytes") << QByteArray::fromHex("81ff00fe8000a0ff0d0a0a0d").repeated(500) << QString() << 0 << 1;
    QTest::newRow("10 MB body") << Bytes(Block({CRecordText{.ID = u"5"_s, .Body = u"あいうえお|'\r\n"_s.repeated(800'000)}.Text()}))
                                << u"5"_s << 0 << 5;
    QTest::newRow("subject of 300") << Bytes(Block({CRecordText{.ID = u"5"_s, .Subject = QString(300, u'長')}.Text()}))
                                    << QString() << 1 << 5;
    QTest::newRow("same number twice") << Bytes(Plain(5, 5) + Plain(5, 5)) << u"5"_s << 0 << 5;
}

void tst_Receive::OddPages()
{
    QFETCH(QByteArray, page);
    CReceiveFixture fixture({CLoopServer::Page(page)});
    fixture.Property().SetDownloadCount(50);
    QVERIFY(fixture.Load());
    QTEST(fixture.Numbers(), "numbers");
    QTEST(int(fixture.Logged.size()), "logged");
    QTEST(fixture.Property().NoReadPoint(), "noReadPoint");
}

void tst_Receive::SilenceTimesOut()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), CLoopServer::Silence()});
    fixture.Board.SetTimeout(1);
    QCOMPARE(fixture.Board.Timeout(), 1);
    QVERIFY(!fixture.Load());
    QVERIFY2(fixture.Errors.value(0).startsWith(u"受信エラー(12002):"_s), qPrintable(fixture.Errors.join(u'/')));
    QCOMPARE(fixture.Numbers(), u"2 3"_s);
}

void tst_Receive::CancelAt_data()
{
    // pages: -1 where the request may or may not have left
    mdlTable::AddRows<QString, QString, int>("receive.json", "CancelAt", {"stage", "stored", "pages"});
}

void tst_Receive::CancelAt()
{
    QFETCH(QString, stage);
    QFETCH(int, pages);
    CReceiveFixture fixture({Log(Plain(2, 3)), Log(Plain(4, 5)), Log(Plain(6, 7))});
    fixture.When(stage, [&] { fixture.Board.Cancel(); });
    QVERIFY(!fixture.Load());
    QVERIFY(fixture.Board.IsCancel());
    QVERIFY(!fixture.Board.IsError());
    QVERIFY(fixture.Errors.isEmpty());
    QTEST(fixture.Threads(), "stored");
    QCOMPARE(fixture.Property().NoReadPoint(), 1);
    if (pages >= 0)
        QCOMPARE(fixture.Pages(), pages);
    fixture.Board.InitCancel();
    QVERIFY(!fixture.Board.IsCancel());
}

void tst_Receive::CancelWhileNothingComes()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), CLoopServer::Silence()});
    fixture.When(u"2番目のログを要求しています"_s,
                 [&] { QTimer::singleShot(50, &fixture.Board, [&] { fixture.Board.Cancel(); }); });
    QVERIFY(!fixture.Load());
    QVERIFY(fixture.Errors.isEmpty());
    QCOMPARE(fixture.Numbers(), u"2 3"_s);
}

void tst_Receive::BytesAreCounted()
{
    CReceiveFixture fixture({CLoopServer::Page(QByteArray(5000, 'x'))});
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.States.filter(u"バイト"_s),
             QStringList({u"2,048バイト受信しました。"_s, u"4,096バイト受信しました。"_s, u"5,000バイト受信しました。"_s}));
}

void tst_Receive::UnreadPositionFollowsTheCommit()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), Log(Plain(4, 4))});
    const auto other = dao::Database::Open(fixture.App.DatabaseFileName());
    QStringList seen;
    const auto look = [&] {
        const auto rows = other->OpenRecordset(u"SELECT Count(*) FROM Message"_s);
        seen << u"%1 stored, position %2"_s.arg(rows->Long(0)).arg(fixture.Property().NoReadPoint());
    };
    fixture.When(u"0件目を解析中"_s, look);
    fixture.When(u"2番目のログ"_s, look);
    fixture.When(u"未読位置を4に変更しています"_s, look);
    fixture.When(u"未読位置を4に設定しました"_s, look);
    QVERIFY(fixture.Load());
    QCOMPARE(seen, QStringList({u"0 stored, position 1"_s, u"2 stored, position 1"_s, u"3 stored, position 1"_s,
                                u"3 stored, position 4"_s}));
}

void tst_Receive::UnreadPositionOnlyGoesUp()
{
    CReceiveFixture fixture({Log(Plain(2, 2))});
    fixture.Property().SetNoReadPoint(500);
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.Property().NoReadPoint(), 500);
    QVERIFY(fixture.States.filter(u"未読位置"_s).isEmpty());
}

void tst_Receive::UnreadPositionThatIsNotStoredIsTold()
{
    CReceiveFixture fixture({Log(Plain(2, 2))});
    fixture.When(u"未読位置を2に変更しています"_s, [&] {
        QFile::remove(fixture.App.CookieFileName());
        QVERIFY(QDir().mkpath(fixture.App.CookieFileName())); // so that it cannot be written
    });
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.Errors, QStringList(u"未読位置を保存できませんでした。"_s));
}

void tst_Receive::UnreadPositionStaysWhenTheDiskIsFull()
{
    CReceiveFixture fixture({Log(Plain(2, 3)), Log(Block({CRecordText{.ID = u"4"_s}.Text(),
                                                          CRecordText{.ID = u"5"_s, .Body = QString(100'000, u'大')}.Text()}))});
    fixture.When(u"2番目のログ"_s, [&] {
        fixture.App.LogDB()->Checkpoint();
        fixture.App.LogDB()->SetMaxFileSize(QFileInfo(fixture.App.DatabaseFileName()).size());
    });
    QVERIFY(!fixture.Load());
    QVERIFY(fixture.Board.IsError());
    QCOMPARE(fixture.Errors, QStringList{u"Error(3026):ディスクの空き領域が足りません。"_s});
    QCOMPARE(fixture.Board.SaveCount(), 2);
    QCOMPARE(fixture.Withdrawn.size(), 1u);
    QCOMPARE(fixture.Numbers(), u"2 3"_s);
    QCOMPARE(fixture.Property().NoReadPoint(), 1);
}

void tst_Receive::ServersCookieIsKept()
{
    CReceiveFixture fixture;
    fixture.Server.Add(CLoopServer::Page(Bytes(Plain(2, 2)), "200 OK",
                                         "Set-Cookie: " + fixture.Url.toLatin1()
                                             + "=web,m,h,p,99,1,1,1,2; expires=Wed, 01-Jan-2098 00:00:00 GMT\r\n"));
    QVERIFY(fixture.Load());
    QCOMPARE(fixture.Cookie(fixture.Url), QByteArray("web,m,h,p,99,1,1,2,2"));
}

void tst_Receive::UnknownBoard()
{
    CReceiveFixture fixture;
    QVERIFY(!fixture.Board.LoadBBS(999, true, false));
    QVERIFY(fixture.Board.IsError());
    QCOMPARE(fixture.Errors, QStringList{u"掲示板の情報が見つかりません。"_s});
    QCOMPARE(fixture.Pages(), 0);

    for (const auto& [address, error] : {std::pair{u"ftp://localhost/x.cgi"_s, u"Error("_s},
                                         std::pair{u"http://127.0.0.1:%1/x.cgi"_s.arg(CLoopServer::RefusedPort()), u"受信エラー(12029):"_s}}) {
        fixture.Errors.clear();
        fixture.SetBoardUrl(QUrl(address));
        QVERIFY(!fixture.Load());
        QCOMPARE(fixture.Errors.size(), 1);
        QVERIFY2(fixture.Errors[0].startsWith(error), qPrintable(fixture.Errors[0]));
    }
}

void tst_Receive::PostingPages()
{
    CBoardFixture fixture;
    for (const int board : {3, 13, 14}) {
        QVERIFY(fixture.Board.Send({.BBS_ID = board, .ID = 1234}, false));
        QVERIFY(fixture.Board.Send({.BBS_ID = board, .ID = 1234}, true));
    }
    QCOMPARE(fixture.Desk.Opened.join(u' ').remove(u"http://localhost:8932/cgi-bin/"_s),
             u"keyaki.cgi?dousa=sinki keyaki.cgi?dousa=res&resno=1234 yanagi.cgi?dousa=sinki&l_or_r=0 "
             "yanagi.cgi?dousa=res&resno=1234&l_or_r=0 yanagi.cgi?dousa=sinki&l_or_r=1 "
             "yanagi.cgi?dousa=res&resno=1234&l_or_r=1"_s);
    QVERIFY(!fixture.Board.Send({.BBS_ID = 999, .ID = 1}, true));
    fixture.Desk.OpenSucceeds = false;
    QVERIFY(!fixture.Board.Send({.BBS_ID = 3, .ID = 1234}, true));
}

/// Everything that the sample board holds comes once, and never again.
void tst_Receive::TheSampleServer()
{
    CBoardServerOptions options;
    options.Messages = 100;
    CBoardServer server(options);
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CBoardFixture fixture;
    fixture.SetBoardUrl(server.Url(u"/cgi-bin/keyaki.cgi"_s));
    QVERIFY2(fixture.Board.LoadBBS(3, true, false), qPrintable(fixture.Errors.join(u'\n')));
    QCOMPARE(fixture.Board.SaveCount(), 100);
    QCOMPARE(fixture.Logged, QStringList());
    QCOMPARE(server.Requests().size(), 4);
    QCOMPARE(fixture.Rows(u"SELECT Count(*) FROM Message WHERE RootThread = 0"_s), u"0"_s);
    const auto highest = fixture.Rows(u"SELECT Max(ID) FROM Message"_s).toInt();
    QCOMPARE(fixture.Property().NoReadPoint(), highest);

    QVERIFY(fixture.Board.LoadBBS(3, true, false));
    QCOMPARE(fixture.Board.SaveCount(), 0);
    QCOMPARE(server.Requests().size(), 5);
    QVERIFY(fixture.Board.LoadBBS(3, false, true));
    QCOMPARE(fixture.Board.SaveCount(), 0);
    QCOMPARE(server.Requests().size(), 6);
}

QTEST_GUILESS_MAIN(tst_Receive)
#include "tst_Receive.moc"
