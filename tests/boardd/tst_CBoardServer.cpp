// tests/boardd/tst_CBoardServer.cpp
// The board server over real connections: record bytes, paging, cookies, both sides, posts, refusals, faults, attacks.

#include "boardd/CBoardServer.h"

#include "platform/archive/CLzhReader.h"
#include "platform/text/Codepage932.h"
#include "tests/support/Table.h"

#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray Separator = "===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n";

struct CAnswer
{
    QByteArray Head;
    QByteArray Body;

    QByteArray Status() const { return Head.left(Head.indexOf("\r\n")); }
    QByteArray Header(const QByteArray& Name) const
    {
        const qsizetype from = Head.indexOf("\r\n" + Name + ": ");
        return from < 0 ? QByteArray() : Head.mid(from + Name.size() + 4, Head.indexOf("\r\n", from + 2) - from - Name.size() - 4);
    }
    QString Text() const { return text::From932(Body); }
};

/// Sends Bytes and collects what comes until the other side closes. Nothing within ten seconds ends the wait too.
QByteArray Talk(quint16 Port, const QByteArray& Bytes)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, Port);
    if (!socket.waitForConnected(10000))
        return "no connection";
    socket.write(Bytes);
    QByteArray answer;
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(10000))
        answer += socket.readAll();
    const bool stillOpen = socket.state() == QAbstractSocket::ConnectedState;
    return answer + socket.readAll() + (stillOpen ? "\nstill open" : "");
}

CAnswer Parsed(const QByteArray& Bytes)
{
    const qsizetype end = Bytes.indexOf("\r\n\r\n");
    return end < 0 ? CAnswer{Bytes, {}} : CAnswer{Bytes.first(end), Bytes.sliced(end + 4)};
}

QByteArray CookieName(const QByteArray& Script)
{
    return "http://localhost:8932/cgi-bin/" + Script + ".cgi";
}

CAnswer Get(const CBoardServer& Server, const QByteArray& Target, const QByteArray& Cookie = {})
{
    QByteArray request = "GET " + Target + " HTTP/1.1\r\nHost: localhost:8932\r\nConnection: close\r\n";
    if (!Cookie.isEmpty())
        request += "Cookie: " + Cookie + "\r\n";
    return Parsed(Talk(Server.Port(), request + "\r\n"));
}

CAnswer PostBytes(const CBoardServer& Server, const QByteArray& Target, const QByteArray& Type, const QByteArray& Body)
{
    return Parsed(Talk(Server.Port(), "POST " + Target + " HTTP/1.1\r\nHost: localhost:8932\r\nConnection: close\r\n"
                                          "Content-Type: " + Type + "\r\nContent-Length: " +
                                          QByteArray::number(Body.size()) + "\r\n\r\n" + Body));
}

using Fields = QList<std::pair<QByteArray, QByteArray>>;

CAnswer Post(const CBoardServer& Server, const QByteArray& Script, const Fields& Form)
{
    QByteArray body;
    for (const auto& [name, value] : Form)
        body += "--XbX\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
    return PostBytes(Server, "/cgi-bin/" + Script + ".cgi", "multipart/form-data; boundary=XbX", body + "--XbX--\r\n");
}

Fields SmallPost(const QString& Body)
{
    return {{"dousa", "post"}, {"namae", text::To932(u"ﾐｶﾝ"_s)}, {"daimei", text::To932(u"ソースの表示"_s)},
            {"mail", "mikan@example.com"}, {"honbun", text::To932(Body)}};
}

QList<int> Numbers(const QByteArray& Page)
{
    QList<int> numbers;
    static const QRegularExpression line(u"^Number:(\\d+)\r$"_s, QRegularExpression::MultilineOption);
    for (const QRegularExpressionMatch& match : line.globalMatch(text::From932(Page)))
        numbers += match.captured(1).toInt();
    return numbers;
}

/// Up or down; none from 0 on.
QList<int> Range(int From, int To)
{
    QList<int> numbers(From == 0 ? 0 : std::abs(To - From) + 1);
    std::generate(numbers.begin(), numbers.end(), [=, next = From]() mutable { return From < To ? next++ : next--; });
    return numbers;
}

/// The line that a reader takes an error page's message from, without its tags; empty when Page is no error page.
QString ErrorLine(const QByteArray& Page)
{
    if (!Page.startsWith("<html><head><title>Error!!"))
        return {};
    QString line = text::From932(Page.split('\n').value(3));
    return line.remove(u"<FONT SIZE=5>"_s).replace(u"</FONT><BR>"_s, u":"_s);
}

std::unique_ptr<CBoardServer> Started(const CBoardServerOptions& Options = {})
{
    auto server = std::make_unique<CBoardServer>(Options);
    if (!server->Start())
        qFatal("the server does not start: %s", qPrintable(server->ErrorText()));
    return server;
}

std::unique_ptr<CBoardServer> WithMessages(int Count, FaultKind Fault = FaultKind::None, int From = 1)
{
    CBoardServerOptions options;
    options.Messages = Count;
    options.Fault = Fault;
    options.FaultFrom = From;
    return Started(options);
}

const QByteArray LogPath = "/cgi-bin/keyaki.cgi?dousa=log&logmidoku=1&logno=";

} // namespace

class tst_CBoardServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void RecordByteForByte();
    void SideRecordByteForByte();
    void Paging_data();
    void Paging();
    void UnreadOfEachSide();
    void PageOfABoard_data();
    void PageOfABoard();
    void Refusals_data();
    void Refusals();
    void BadPosts_data();
    void BadPosts();
    void PostsSurviveRestart();
    void HostilePostStaysOneRecord();
    void PostedTextIsNoHtml();
    void SecondClick();
    void Deletion();
    void SettingsCookie();
    void BrokenSettings();
    void FormIsFilledFromCookie();
    void Faults_data();
    void Faults();
    void SilentUntilStopped();
    void PortTaken();
    void ManyRequestsOnOneConnection();
    void Attacks_data();
    void Attacks();
    void HostileHost();
    void SiteIsWhole();
};

void tst_CBoardServer::RecordByteForByte()
{
    const auto server = WithMessages(3);
    const CAnswer answer = Get(*server, "/cgi-bin/keyaki.cgi?dousa=log&logmidoku=0&logno=0",
                               CookieName("keyaki") + "=,,,,20,,,0,1");
    const QByteArray wanted = text::To932(u"Number:1\r\n"
                                          "Title:質問その1\r\n"
                                          "Home Page:\r\n"
                                          "E-mail:user1@example.com\r\n"
                                          "Author:そら豆\r\n"
                                          "Posted:2001/04/01（日） 09:07\r\n"
                                          "ReplyTo:\r\n"
                                          "Message:\r\n"
                                          "#1番目の話題です。\r\nこんにちは。\r\n\r\n"
                                          "わたしの場合は、電源を入れ直したら直りました。\r\n"
                                          "ケーブルの差し込みも確かめてみてください。\r\n"_s) + Separator;
    QCOMPARE(answer.Status(), QByteArray("HTTP/1.1 200 OK"));
    QCOMPARE(answer.Header("Content-Type"), QByteArray("text/plain; charset=Shift_JIS"));
    QCOMPARE(answer.Header("Content-Length"), QByteArray::number(wanted.size()));
    QCOMPARE(answer.Body, wanted);
    // 表 is 95 5C: once in a body and once in the name of 表六.
    QCOMPARE(Get(*server, "/cgi-bin/keyaki.cgi?dousa=log&logmidoku=0&logno=0").Body.count("\x95\x5C"), 2);
}

void tst_CBoardServer::SideRecordByteForByte()
{
    const auto server = Started();
    const Fields form = {{"dousa", "post"}, {"l_or_r", "1"}, {"namae", "abc"}, {"homepage", "http://www.example.com/"},
                         {"daimei", "ignored"}, {"honbun", "one\r\ntwo"}};
    QCOMPARE(ErrorLine(Post(*server, "yanagi", form).Body), QString());
    const QByteArray page = Get(*server, "/cgi-bin/yanagi.cgi?&l_or_r=1&dousa=log&logmidoku=0&logno=0").Body;
    const QByteArray record = page.sliced(page.lastIndexOf("Number:"));
    const QByteArray today = record.mid(record.indexOf("Posted:"), 29);
    QVERIFY2(QRegularExpression(u"^Posted:\\d{4}/\\d\\d/\\d\\d（[月火水木金土日]） \\d\\d:\\d\\d$"_s).match(text::From932(today)).hasMatch(),
             today.constData());
    QVERIFY(record.endsWith("\r\nHome Page:http://www.example.com/\r\nE-mail:\r\nAuthor:abc\r\n" + today +
                            "\r\nReplyTo:\r\nMessage:\r\none\r\ntwo\r\n" + Separator));
    QVERIFY(!page.contains("\r\nTitle:"));
}

void tst_CBoardServer::Paging_data()
{
    // cookie: value of the board's cookie; first: message numbers from top to bottom, 0: none
    mdlTable::AddRows<QByteArray, QByteArray, int, int>("board-server.json", "Paging",
                                                        {"cookie", "query", "first", "last"});
}

void tst_CBoardServer::Paging()
{
    QFETCH(QByteArray, cookie);
    QFETCH(QByteArray, query);
    QFETCH(int, first);
    QFETCH(int, last);
    const QList<int> wanted = Range(first, last);
    const auto server = WithMessages(100);
    // Neighbours that must not be taken for it: another board's cookie and a name that only ends alike.
    const QByteArray cookies = "x" + CookieName("keyaki") + "=,,,,20,,,99,3; " + CookieName("keyaki2") + "=,,,,20,,,99,3" +
                               (cookie.isEmpty() ? "" : "; " + CookieName("keyaki") + "=" + cookie) + "; last=1";
    const CAnswer answer = Get(*server, "/cgi-bin/keyaki.cgi?" + query, cookies);
    QCOMPARE(answer.Status(), QByteArray("HTTP/1.1 200 OK"));
    QCOMPARE(Numbers(answer.Body), wanted);
    QCOMPARE(answer.Body.count(Separator), wanted.size());
}

void tst_CBoardServer::UnreadOfEachSide()
{
    const auto server = Started();
    const QByteArray left = "/cgi-bin/yanagi.cgi?&l_or_r=0&dousa=log&logmidoku=1&logno=0";
    const QByteArray right = "/cgi-bin/yanagi.cgi?&l_or_r=1&dousa=log&logmidoku=1&logno=0";
    const QList<int> allLeft = Numbers(Get(*server, left).Body);
    const QList<int> allRight = Numbers(Get(*server, right).Body);
    QVERIFY(allLeft.size() >= 5 && allRight.size() >= 5 && allLeft != allRight);
    const QByteArray cookie = CookieName("yanagi") + "=,,,,30,,," + QByteArray::number(allLeft[3]) + ",50," +
                              QByteArray::number(allRight[1]);
    QCOMPARE(Numbers(Get(*server, left, cookie).Body), allLeft.mid(4));
    QCOMPARE(Numbers(Get(*server, right, cookie).Body), allRight.mid(2));
    // Nine fields, as a left side alone writes them: everything on the right is unread.
    QCOMPARE(Numbers(Get(*server, right, CookieName("yanagi") + "=,,,,30,,,9999,50").Body), allRight);
}

void tst_CBoardServer::PageOfABoard_data()
{
    // first: message numbers from top to bottom, 0: none
    mdlTable::AddRows<QByteArray, QByteArray, int, int>("board-server.json", "PageOfABoard",
                                                        {"cookie", "query", "first", "last"});
}

void tst_CBoardServer::PageOfABoard()
{
    QFETCH(QByteArray, cookie);
    QFETCH(QByteArray, query);
    QFETCH(int, first);
    QFETCH(int, last);
    const QList<int> wanted = Range(first, last);
    const auto server = WithMessages(100);
    const CAnswer answer = Get(*server, "/cgi-bin/keyaki.cgi" + query,
                               cookie.isEmpty() ? cookie : CookieName("keyaki") + "=" + cookie);
    QCOMPARE(answer.Header("Content-Type"), QByteArray("text/html; charset=Shift_JIS"));
    QList<int> shown;
    static const QRegularExpression anchor(u"<A NAME=\"m(\\d+)\">"_s);
    for (const QRegularExpressionMatch& match : anchor.globalMatch(answer.Text()))
        shown += match.captured(1).toInt();
    QCOMPARE(shown, wanted);
}

void tst_CBoardServer::Refusals_data()
{
    // wanted: the error line; "404" for a plain missing page
    mdlTable::AddRows<QByteArray, QString>("board-server.json", "Refusals", {"target", "wanted"});
}

void tst_CBoardServer::Refusals()
{
    QFETCH(QByteArray, target);
    QFETCH(QString, wanted);
    const auto server = Started();
    const CAnswer answer = Get(*server, target);
    const bool missing = wanted == u"404";
    QCOMPARE(answer.Status(), missing ? QByteArray("HTTP/1.1 404 Not Found") : QByteArray("HTTP/1.1 200 OK"));
    QCOMPARE(ErrorLine(answer.Body), missing ? QString() : wanted);
}

void tst_CBoardServer::BadPosts_data()
{
    QTest::addColumn<QByteArray>("field"); // the field that is wrong
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("no name") << QByteArray("namae") << QByteArray("  ") << u"投稿できません:お名前が入っていません。"_s;
    QTest::newRow("no body") << QByteArray("honbun") << QByteArray(" \r\n\r\n") << u"投稿できません:本文が入っていません。"_s;
    QTest::newRow("long name") << QByteArray("namae") << QByteArray(41, 'a') << u"投稿できません:お名前が長すぎます（40文字まで）。"_s;
    QTest::newRow("long title") << QByteArray("daimei") << QByteArray(101, 'a') << u"投稿できません:題名が長すぎます（100文字まで）。"_s;
    QTest::newRow("long body") << QByteArray("honbun") << QByteArray(20001, 'a') << u"投稿できません:本文が長すぎます（20000文字まで）。"_s;
    QTest::newRow("answers a word") << QByteArray("resno") << QByteArray("x") << u"投稿できません:返信先の番号が正しくありません。"_s;
    QTest::newRow("answers a missing one") << QByteArray("resno") << QByteArray("99999999")
                                           << u"指定されたメッセージはありません:番号が違うか、もう流れてしまったようです。"_s;
    QTest::newRow("unknown action") << QByteArray("dousa") << QByteArray("x")
                                    << u"パラメーターが正しくありません:そのような動作（dousa）はありません。"_s;
}

void tst_CBoardServer::BadPosts()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, value);
    QFETCH(QString, wanted);
    const auto server = WithMessages(2);
    Fields form = {{field, value}}; // the first of two fields with one name counts
    form += SmallPost(u"本文"_s);
    QCOMPARE(ErrorLine(Post(*server, "keyaki", form).Body), wanted);
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 2));
}

void tst_CBoardServer::PostsSurviveRestart()
{
    const QTemporaryDir folder;
    CBoardServerOptions options;
    options.DataFolder = folder.path();
    options.Messages = 4;
    auto server = Started(options);
    Fields form = SmallPost(u"一行目\r\n\r\n　三行目 ソ表①\r\n\r\n"_s);
    form.emplaceBack("resno", "3");
    QCOMPARE(ErrorLine(Post(*server, "keyaki", form).Body), QString());
    const QByteArray before = Get(*server, LogPath + "0").Body;
    QVERIFY(text::From932(before).endsWith(
        u"\r\nReplyTo:3\r\nMessage:\r\n一行目\r\n\r\n　三行目 ソ表①\r\n"_s + QString::fromLatin1(Separator)));
    QVERIFY(before.contains(text::To932(u"Number:5\r\nTitle:ソースの表示\r\n"_s)));

    server = nullptr;
    QFile file(folder.filePath(u"posts.dat"_s));
    QVERIFY(file.open(QIODevice::Append));
    file.write("TVP1\x40"); // the next post was being written when the power went
    file.close();
    server = Started(options);
    QCOMPARE(server->Warnings().size(), 1);
    QCOMPARE(Get(*server, LogPath + "0").Body, before);
    QCOMPARE(ErrorLine(Post(*server, "keyaki", SmallPost(u"もうひとつ"_s)).Body), QString());
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 6));
}

void tst_CBoardServer::HostilePostStaysOneRecord()
{
    const auto server = WithMessages(1);
    Fields form = SmallPost(u"前\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\nNumber:9\r\n後\x01"_s);
    form.prepend({"daimei", "a\r\nNumber:8\r\nb"});
    form.prepend({"mail", QByteArray("x\0y", 3)});
    QCOMPARE(ErrorLine(Post(*server, "keyaki", form).Body), QString());
    const QByteArray page = Get(*server, LogPath + "0").Body;
    QCOMPARE(page.count("\r\n" + Separator), 2);
    QVERIFY(page.contains("\r\nTitle:a  Number:8  b\r\n"));
    QVERIFY(page.contains("\r\nE-mail:x y\r\n"));
    QVERIFY(page.endsWith(text::To932(u"\r\nNumber:9\r\n後\r\n"_s) + Separator));
}

void tst_CBoardServer::PostedTextIsNoHtml()
{
    const auto server = WithMessages(1);
    Fields form = SmallPost(u"<script>alert(1)</script> http://example.com/?a=1&b=\"><b>2"_s);
    form.prepend({"homepage", "javascript:alert(1)"});
    form.prepend({"namae", "<b>'\""});
    QCOMPARE(ErrorLine(Post(*server, "keyaki", form).Body), QString());
    const QByteArray page = Get(*server, "/cgi-bin/keyaki.cgi").Body;
    QVERIFY(page.contains("&lt;script&gt;alert(1)&lt;/script&gt; <A HREF=\"http://example.com/?a=1&amp;b=\">"));
    QVERIFY(page.contains("<B>&lt;b&gt;&#39;&quot;</B>"));
    QVERIFY(page.contains(" [javascript:alert(1)]"));
    QVERIFY(!page.contains("<script"));
}

void tst_CBoardServer::SecondClick()
{
    const auto server = WithMessages(1);
    QCOMPARE(ErrorLine(Post(*server, "keyaki", SmallPost(u"本文"_s)).Body), QString());
    QCOMPARE(ErrorLine(Post(*server, "keyaki", SmallPost(u"本文"_s)).Body),
             u"二重投稿です:同じメッセージが、すでに書き込まれています。"_s);
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 2));
}

void tst_CBoardServer::Deletion()
{
    const QTemporaryDir folder;
    CBoardServerOptions options;
    options.DataFolder = folder.path();
    options.Messages = 2;
    auto server = Started(options);
    Fields form = SmallPost(u"消したい本文"_s);
    form.emplaceBack("password", "himitsu");
    QCOMPARE(ErrorLine(Post(*server, "keyaki", form).Body), QString());
    const auto erase = [&](const QByteArray& number, const QByteArray& password) {
        return ErrorLine(Post(*server, "keyaki", {{"dousa", "sakujo"}, {"no", number}, {"password", password}}).Body);
    };
    QVERIFY(erase("3", "himitu").startsWith(u"消せません"));
    QVERIFY(erase("2", "").startsWith(u"消せません")); // a sample message has no password to match
    QCOMPARE(erase("3", "himitsu"), QString());
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 2));
    server = nullptr;
    server = Started(options);
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 2));
    QCOMPARE(ErrorLine(Post(*server, "keyaki", SmallPost(u"次"_s)).Body), QString());
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), QList<int>({1, 2, 4})); // 3 is never given again
}

void tst_CBoardServer::SettingsCookie()
{
    const auto server = Started();
    const CAnswer answer =
        Post(*server, "yanagi", {{"dousa", "setcookie"}, {"namae", text::To932(u"表,ソ;%"_s)}, {"mail", "a@example.com"},
                                 {"homepage", ""}, {"password", "p"}, {"viewcount", "12"}, {"vieworder", "1"},
                                 {"noreadview", "0"}, {"noreadpoint", "7"}, {"rightnoreadpoint", "9"}, {"downloadcount", "40"}});
    QCOMPARE(ErrorLine(answer.Body), QString());
    const QByteArray cookie = answer.Header("Set-Cookie");
    QVERIFY2(cookie.startsWith(CookieName("yanagi") + text::To932(u"=表，ソ；％,a@example.com,,p,12,1,0,7,40,9; expires="_s)),
             cookie.constData());
    const QDateTime expires = QLocale::c().toDateTime(QString::fromLatin1(cookie.sliced(cookie.indexOf("expires=") + 8)),
                                                      u"ddd, dd-MMM-yyyy HH:mm:ss 'GMT'"_s);
    const qint64 days = QDateTime::currentDateTimeUtc().date().daysTo(expires.date());
    QVERIFY2(days == 120 || days == 119, cookie.constData());
}

void tst_CBoardServer::BrokenSettings()
{
    const auto server = Started();
    for (const QByteArray number : {"0", "-1", "x", "", "501"}) {
        const CAnswer answer = Post(*server, "keyaki", {{"dousa", "setcookie"}, {"viewcount", number}, {"vieworder", "0"},
                                                        {"noreadview", "0"}, {"noreadpoint", "0"}, {"downloadcount", "30"}});
        QVERIFY(ErrorLine(answer.Body).startsWith(u"保存できません"));
        QCOMPARE(answer.Header("Set-Cookie"), QByteArray());
    }
}

void tst_CBoardServer::FormIsFilledFromCookie()
{
    const auto server = WithMessages(2);
    const QByteArray cookie = CookieName("keyaki") + text::To932(u"=表\"六,a@example.com,http://www.example.com/,pw,20,,,0,30"_s);
    const QString page = Get(*server, "/cgi-bin/keyaki.cgi?dousa=res&resno=2", cookie).Text();
    QVERIFY(page.contains(u"VALUE=\"表&quot;六\""));
    QVERIFY(page.contains(u"VALUE=\"a@example.com\""));
    QVERIFY(page.contains(u"NAME=\"password\" SIZE=12 MAXLENGTH=20 VALUE=\"pw\""));
    QVERIFY(page.contains(u"NAME=\"resno\" VALUE=\"2\""));
    QVERIFY(page.contains(u"VALUE=\"Re: 質問その1\""));
    QVERIFY(page.contains(u"\n&gt; &gt; 1番のメッセージについて\n&gt; \n&gt; 表の並べ替えで困っています。"));
    QVERIFY(page.contains(u"ENCTYPE=\"multipart/form-data\""));
}

void tst_CBoardServer::Faults_data()
{
    QTest::addColumn<FaultKind>("kind");
    QTest::addColumn<QByteArray>("status"); // of the second request; empty: no answer at all
    QTest::addColumn<QString>("body");      // "whole", "half", "first record broken", "UTF-8", empty, or the error line
    QTest::newRow("404") << FaultKind::Status404 << QByteArray("HTTP/1.1 404 Not Found") << u"other"_s;
    QTest::newRow("error page") << FaultKind::ErrorPage << QByteArray("HTTP/1.1 200 OK") << u"error"_s;
    QTest::newRow("cut") << FaultKind::Cut << QByteArray("HTTP/1.1 200 OK") << u"half"_s;
    QTest::newRow("bad record") << FaultKind::BadRecord << QByteArray("HTTP/1.1 200 OK") << u"broken"_s;
    QTest::newRow("wrong encoding") << FaultKind::WrongEncoding << QByteArray("HTTP/1.1 200 OK") << u"UTF-8"_s;
    QTest::newRow("close") << FaultKind::Close << QByteArray() << QString();
    QTest::newRow("empty") << FaultKind::Empty << QByteArray("HTTP/1.1 200 OK") << QString();
}

void tst_CBoardServer::Faults()
{
    QFETCH(FaultKind, kind);
    QFETCH(QByteArray, status);
    QFETCH(QString, body);
    const auto server = WithMessages(30, kind, 2);
    const CAnswer good = Get(*server, LogPath + "0");
    QCOMPARE(Numbers(good.Body), Range(1, 30));
    QCOMPARE(Get(*server, "/").Status(), QByteArray("HTTP/1.1 200 OK")); // no log request: neither counted nor spoiled
    const CAnswer spoiled = Get(*server, LogPath + "0");
    QCOMPARE(spoiled.Status(), status);
    if (body == u"half") {
        QCOMPARE(spoiled.Header("Content-Length"), QByteArray::number(good.Body.size()));
        QCOMPARE(spoiled.Body, good.Body.first(good.Body.size() / 2));
    } else if (body == u"UTF-8") {
        QCOMPARE(spoiled.Body, good.Text().toUtf8());
    } else if (body == u"error") {
        QCOMPARE(ErrorLine(spoiled.Body), u"ただいま混み合っています:しばらくしてからお試しください。"_s);
    } else if (body == u"broken") {
        QVERIFY(spoiled.Body.startsWith("Number:\r\nTitle:"));
        QCOMPARE(Numbers(spoiled.Body), Range(2, 30));
        QCOMPARE(spoiled.Body.sliced(spoiled.Body.indexOf(Separator)), good.Body.sliced(good.Body.indexOf(Separator)));
    } else if (body.isEmpty()) {
        QCOMPARE(spoiled.Body, QByteArray());
    }
    server->SetFault(FaultKind::None);
    QCOMPARE(Get(*server, LogPath + "0").Body, good.Body);
}

void tst_CBoardServer::SilentUntilStopped()
{
    const auto server = WithMessages(3, FaultKind::Silent);
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, server->Port());
    QVERIFY(socket.waitForConnected(10000));
    socket.write("GET " + LogPath + "0 HTTP/1.1\r\nHost: a\r\n\r\n");
    QTRY_COMPARE(server->Requests(), QByteArrayList({"GET " + LogPath + "0"}));
    server->Stop(); // returns although that connection is still waiting
    QVERIFY(socket.state() != QAbstractSocket::ConnectedState || socket.waitForDisconnected(10000));
    QCOMPARE(socket.readAll(), QByteArray());
    QCOMPARE(server->Port(), quint16(0));
}

void tst_CBoardServer::PortTaken()
{
    const auto first = Started();
    CBoardServerOptions options;
    options.Port = first->Port();
    CBoardServer second(options);
    QVERIFY(!second.Start());
    QVERIFY2(second.ErrorText().contains(u"ポート %1 は、すでに"_s.arg(first->Port())), qPrintable(second.ErrorText()));
    QCOMPARE(Get(*first, "/").Status(), QByteArray("HTTP/1.1 200 OK"));
}

void tst_CBoardServer::ManyRequestsOnOneConnection()
{
    const auto server = WithMessages(100);
    // Written at once: the answers come in order on the one connection, and only the last request closes it.
    QByteArray requests;
    for (int page = 0; page < 200; ++page)
        requests += "GET " + LogPath + QByteArray::number(page % 4) + " HTTP/1.1\r\nHost: a\r\n\r\n";
    const QByteArray answers =
        Talk(server->Port(), requests + "GET / HTTP/1.1\r\nHost: a\r\nConnection: close\r\n\r\n");
    QCOMPARE(answers.count("HTTP/1.1 200 OK\r\n"), 201);
    QCOMPARE(answers.count("Number:100\r\n"), 50);
    QCOMPARE(server->Requests().size(), 201);
}

void tst_CBoardServer::Attacks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("status"); // of the first answer; empty: closed or refused in any way
    const QByteArray start = "GET / HTTP/1.1\r\nHost: a\r\nConnection: close\r\n";
    const QByteArray post = "POST /cgi-bin/keyaki.cgi HTTP/1.1\r\nHost: a\r\nConnection: close\r\n";
    QTest::newRow("rubbish") << QByteArray("\x00\xff\xfe\r\n\r\n", 7) << QByteArray("HTTP/1.1 400 Bad Request");
    QTest::newRow("NUL in the line") << QByteArray("GET /\0 HTTP/1.1\r\n\r\n", 19) << QByteArray("HTTP/1.1 400 Bad Request");
    QTest::newRow("endless line") << "GET /" + QByteArray(300000, 'a') << QByteArray();
    QTest::newRow("long path") << "GET /" + QByteArray(7000, 'a') + " HTTP/1.1\r\nConnection: close\r\n\r\n"
                               << QByteArray("HTTP/1.1 404 Not Found");
    QTest::newRow("long query") << "GET /cgi-bin/keyaki.cgi?dousa=" + QByteArray(7000, '&') + " HTTP/1.1\r\nConnection: close\r\n\r\n"
                                << QByteArray("HTTP/1.1 200 OK");
    QTest::newRow("endless header") << start + "X: " + QByteArray(300000, 'a') << QByteArray("HTTP/1.1 400 Bad Request");
    QTest::newRow("many headers") << start + QByteArray("X: y\r\n").repeated(50000) << QByteArray("HTTP/1.1 400 Bad Request");
    QTest::newRow("many ranges") << start + "Range: bytes=" + QByteArray("0-1,").repeated(1900) + "0-1\r\n\r\n"
                                 << QByteArray("HTTP/1.1 200 OK");
    QTest::newRow("body too long") << post + "Content-Length: 999999999999\r\n\r\n" + QByteArray(500000, 'a') << QByteArray();
    QTest::newRow("endless chunks") << post + "Transfer-Encoding: chunked\r\n\r\n" +
                                           QByteArray("4000\r\n" + QByteArray(16384, 'a') + "\r\n").repeated(40)
                                    << QByteArray();
    QTest::newRow("parts without end") << post + "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: 200000\r\n\r\n" +
                                              QByteArray("--x\r\n").repeated(40000)
                                       << QByteArray("HTTP/1.1 200 OK");
    QTest::newRow("long part header") << post + "Content-Type: multipart/form-data; boundary=x\r\nContent-Length: 200012\r\n\r\n--x\r\n" +
                                             QByteArray(200000, 'a') + "\r\n--x--" << QByteArray("HTTP/1.1 200 OK");
    QTest::newRow("form of no kind") << post + "Content-Length: 3\r\n\r\nabc" << QByteArray("HTTP/1.1 200 OK");
    QTest::newRow("other method") << QByteArray("DELETE / HTTP/1.1\r\nHost: a\r\nContent-Length: 16\r\n\r\nGET / HTTP/1.1\r\n")
                                  << QByteArray("HTTP/1.1 405 Method Not Allowed");
}

void tst_CBoardServer::Attacks()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, status);
    const auto server = WithMessages(2);
    const CAnswer answer = Parsed(Talk(server->Port(), bytes));
    if (!status.isEmpty())
        QCOMPARE(answer.Status(), status);
    QVERIFY(!answer.Head.contains("still open") && !answer.Body.contains("still open"));
    QCOMPARE(Numbers(Get(*server, LogPath + "0").Body), Range(1, 2));
}

void tst_CBoardServer::HostileHost()
{
    const auto server = Started();
    const QByteArray body = "dousa=post&namae=a&honbun=b&kioku=1";
    const CAnswer answer = Parsed(Talk(server->Port(), "POST /cgi-bin/keyaki.cgi HTTP/1.1\r\nConnection: close\r\n"
                                                       "Host: a%0d%0aSet-Cookie:%20x=y\r\n"
                                                       "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                                                           QByteArray::number(body.size()) + "\r\n\r\n" + body));
    QCOMPARE(answer.Head.count("Set-Cookie"), 1);
    QVERIFY(answer.Header("Set-Cookie").startsWith("http://localhost:" + QByteArray::number(server->Port()) + "/cgi-bin/keyaki.cgi=a,"));
}

void tst_CBoardServer::SiteIsWhole()
{
    const auto server = Started();
    // Every link of ours that can be reached from the entrance leads to a page.
    static const QRegularExpression link(u"(?:HREF|SRC)=\"(/[^\"#]*)"_s);
    QStringList seen{u"/"_s};
    for (qsizetype index = 0; index < seen.size(); ++index) {
        const CAnswer answer = Get(*server, seen[index].toLatin1());
        QVERIFY2(answer.Status() == "HTTP/1.1 200 OK" && ErrorLine(answer.Body).isEmpty(), qPrintable(seen[index]));
        if (!answer.Header("Content-Type").startsWith("text/html"))
            continue;
        for (const QRegularExpressionMatch& match : link.globalMatch(answer.Text())) {
            const QString target = match.captured(1).replace(u"&amp;"_s, u"&"_s);
            const bool oneOfMany = target.contains(u"resno=") || target.contains(u"no=") || target.contains(u"page=");
            if (!oneOfMany && !seen.contains(target))
                seen += target;
        }
    }
    for (const QString& page : {u"/tavora/"_s, u"/kakolog/"_s, u"/kakolog/keyaki_kako.txt"_s,
                                u"/kakolog/keyaki_kako.lzh"_s, u"/howto/kyoutsuu.html"_s, u"/howto/keyaki.html"_s,
                                u"/icon/keyaki.png"_s, u"/cgi-bin/yanagi.cgi?rightonly=1"_s})
        QVERIFY2(seen.contains(page), qPrintable(page));
    QVERIFY(Get(*server, "/icon/keyaki.png").Body.startsWith("\x89PNG\r\n\x1a\n"));
    QCOMPARE(Get(*server, "/howto/yanagi.html").Status(), QByteArray("HTTP/1.1 200 OK"));

    const auto member = CLzhReader(Get(*server, "/kakolog/keyaki_kako.lzh").Body).Next();
    QVERIFY(member && member->Problem == CLzhMember::Fault::None && member->Name == u"keyaki_kako.txt");
    QCOMPARE(member->Bytes, Get(*server, "/kakolog/keyaki_kako.txt").Body);
}

QTEST_GUILESS_MAIN(tst_CBoardServer)
#include "tst_CBoardServer.moc"
