// tests/platform/tst_NetTransfer.cpp
// Transfers against a server that answers well, badly, late or not at all.

#include "platform/net/CCookieStore.h"
#include "platform/net/CTransfer.h"
#include "tests/support/CLoopServer.h"
#include "tests/support/Table.h"

#include <QEventLoop>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using State = CTransfer::State;

namespace
{
/// A transfer with an empty cookie store of its own, and what it told.
class CFetch
{
public:
    CFetch()
    {
        Transfer.SetTimeoutMs(20'000);
        QObject::connect(&Transfer, &CTransfer::StateChanged, &Transfer, [this](State state) {
            if (States.isEmpty() || States.last() != state) // data comes in any number of pieces
                States << state;
            if (OnState)
                OnState(state);
            if (!Transfer.StillExecuting())
                m_loop.quit();
        });
    }

    /// "OK" and the body, or the code.
    QByteArray Run(const QUrl& Url, const QByteArray& Method = "GET")
    {
        States.clear();
        if (!Transfer.Execute(Url, Method))
            return "not started " + QByteArray::number(Transfer.ResponseCode());
        m_loop.exec();
        return Outcome();
    }

    QByteArray Outcome()
    {
        if (States.isEmpty() || States.last() != State::ResponseCompleted)
            return "error " + QByteArray::number(Transfer.ResponseCode());
        return "OK " + Body();
    }

    QByteArray Body()
    {
        QByteArray body;
        for (QByteArray chunk = Transfer.GetChunk(2048); !chunk.isEmpty(); chunk = Transfer.GetChunk(2048))
            body += chunk;
        return body;
    }

    QTemporaryDir Folder;
    CCookieStore Cookies{Folder.filePath(u"c"_s)};
    CTransfer Transfer{Cookies};
    QList<State> States;
    std::function<void(State)> OnState;

private:
    QEventLoop m_loop;
};

const QList<State> WholeRun = {State::ResolvingHost,     State::HostResolved,     State::Connecting,
                               State::Connected,         State::Requesting,       State::RequestSent,
                               State::ReceivingResponse, State::ResponseReceived, State::ResponseCompleted};

QByteArray FirstLine(const QByteArray& Header) { return Header.left(Header.indexOf("\r\n")); }
} // namespace

class tst_NetTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TellsEveryStage();
    void KeepsOneConnection();
    void NameWithoutAddressForm();
    void AnyStatusIsAnAnswer_data();
    void AnyStatusIsAnAnswer();
    void SendsTheAddressAsWritten_data();
    void SendsTheAddressAsWritten();
    void SendsExactlyThis();
    void CookiesGoAndCome();
    void BrokenReplies_data();
    void BrokenReplies();
    void SilenceEndsInTime_data();
    void SilenceEndsInTime();
    void SlowDataIsProgress();
    void RefusedPort();
    void UnknownName();
    void NoWebAddress_data();
    void NoWebAddress();
    void LargestBody();
    void TooLarge_data();
    void TooLarge();
    void RedirectsAreFollowed();
    void RedirectLoopEnds();
    void BadRedirect();
    void RedirectKeepsCookiesApart();
    void CancelAtEachStage_data();
    void CancelAtEachStage();
    void CancelBeforeTheFirstStage();
    void SecondStartIsRefused();
    void NextRequestFromTheLastSignal();
    void DestroyedInASignal();
    void DeadKeptConnectionIsReplaced();
};

void tst_NetTransfer::TellsEveryStage()
{
    CLoopServer server{{CLoopServer::Page("hello")}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("OK hello"));
    QCOMPARE(fetch.States, WholeRun);
    QCOMPARE(fetch.Transfer.Header(),
             QByteArray("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5\r\n\r\n"));
    QCOMPARE(fetch.Transfer.HeaderValue("content-type"), QByteArray("text/html"));
    QCOMPARE(fetch.Transfer.ResponseCode(), 0);
    QCOMPARE(fetch.Transfer.ResponseInfo(), QString());
}

void tst_NetTransfer::KeepsOneConnection()
{
    CLoopServer server;
    server.SetDefault(CLoopServer::Page("page"));
    CFetch fetch;
    for (int i = 0; i < 100; ++i)
        QCOMPARE(fetch.Run(server.Url(u"/%1"_s.arg(i))), QByteArray("OK page"));
    QCOMPARE(server.Connections(), 1);
    QCOMPARE(server.Requests().last(), QByteArray("GET /99"));
    QCOMPARE(fetch.States, QList<State>({State::Requesting, State::RequestSent, State::ReceivingResponse,
                                         State::ResponseReceived, State::ResponseCompleted}));
}

void tst_NetTransfer::NameWithoutAddressForm()
{
    CLoopServer server{{CLoopServer::Page("hello")}};
    CFetch fetch;
    QUrl url = server.Url(u"/a"_s);
    url.setHost(u"localhost"_s);
    QCOMPARE(fetch.Run(url), QByteArray("OK hello"));
    QCOMPARE(fetch.States.first(), State::ResolvingHost);
    QCOMPARE(server.RequestHeader(0, "Host"), "localhost:" + QByteArray::number(server.Port()));
}

void tst_NetTransfer::AnyStatusIsAnAnswer_data()
{
    mdlTable::AddRows<QByteArray>("transfer.json", "AnyStatusIsAnAnswer", {"status"});
}

void tst_NetTransfer::AnyStatusIsAnAnswer()
{
    QFETCH(QByteArray, status);
    CLoopServer server{{CLoopServer::Page("<p>so</p>", status)}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("OK <p>so</p>"));
    QCOMPARE(FirstLine(fetch.Transfer.Header()), "HTTP/1.1 " + status);
    QCOMPARE(server.Requests(), QByteArrayList({"GET /a"}));
}

void tst_NetTransfer::SendsTheAddressAsWritten_data()
{
    mdlTable::AddRows<QString>("transfer.json", "SendsTheAddressAsWritten", {"path"});
}

void tst_NetTransfer::SendsTheAddressAsWritten()
{
    QFETCH(QString, path);
    CLoopServer server{{CLoopServer::Page("x")}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(path)), QByteArray("OK x"));
    QCOMPARE(server.Requests(), QByteArrayList({"GET " + path.toLatin1()}));
}

void tst_NetTransfer::SendsExactlyThis()
{
    CLoopServer server{{CLoopServer::Page("x")}};
    CFetch fetch;
    const QUrl url = server.Url(u"/b.cgi?&l_or_r=1&dousa=log"_s);
    const QByteArray name = server.Url(u"/b.cgi"_s).toEncoded();
    QVERIFY(fetch.Cookies.Set(url, name, "\x95\x5c,,,,30,,,0,50,9"));
    QVERIFY(fetch.Cookies.Set(url, "visit", ""));
    QCOMPARE(fetch.Run(url), QByteArray("OK x"));
    QByteArrayList lines = server.RawRequests().value(0).split('\n');
    QCOMPARE(lines.takeFirst(), QByteArray("GET /b.cgi?&l_or_r=1&dousa=log HTTP/1.1\r"));
    lines.removeIf([](const QByteArray& line) { return line.startsWith("Accept-Language:"); }); // the user's own
    std::sort(lines.begin(), lines.end());
    const QByteArray host = "127.0.0.1:" + QByteArray::number(server.Port());
    const QByteArrayList wanted = {"",
                                   "\r",
                                   "Accept-Encoding: identity\r",
                                   "Connection: Keep-Alive\r",
                                   "Cookie: http://" + host + "/b.cgi=\x95\x5c,,,,30,,,0,50,9; visit\r",
                                   "Host: " + host + "\r",
                                   "User-Agent: Tavora\r"};
    QCOMPARE(lines, wanted);
}

void tst_NetTransfer::CookiesGoAndCome()
{
    const QByteArray name = "http://localhost:8932/cgi-bin/keyaki.cgi";
    CLoopServer server{
        {CLoopServer::Page("x", "200 OK",
                           "Set-Cookie: " + name +
                               "=,,,,20,,,5,30; path=/\r\n"
                               "set-cookie: other=a, b; path=/; expires=Fri, 01-Jan-2088 00:00:00 GMT\r\n"
                               "Set-Cookie: not=ours; domain=example.jp\r\n"),
         CLoopServer::Page("no", "404 Not Found", "Set-Cookie: third=3; path=/\r\n"), CLoopServer::Page("y")}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a/"_s)), QByteArray("OK x"));
    QCOMPARE(fetch.Run(server.Url(u"/b/"_s)), QByteArray("OK no"));
    QCOMPARE(fetch.Run(server.Url(u"/c/"_s)), QByteArray("OK y"));
    QCOMPARE(server.RequestHeader(0, "Cookie"), QByteArray());
    QCOMPARE(server.RequestHeader(1, "Cookie"), name + "=,,,,20,,,5,30; other=a, b");
    QCOMPARE(server.RequestHeader(2, "Cookie"), name + "=,,,,20,,,5,30; other=a, b; third=3");
}

void tst_NetTransfer::BrokenReplies_data()
{
    QTest::addColumn<CLoopReply>("reply");
    QTest::addColumn<QByteArray>("wanted");

    const CLoopReply page = CLoopServer::Page(QByteArray(5000, 'x'));
    const qint64 header = page.Bytes.indexOf("\r\n\r\n") + 4;
    const CLoopReply chunked = CLoopServer::Raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                                "5\r\nhello\r\n5\r\nworld\r\n0\r\n\r\n");
    const auto headed = [](const QByteArray& field) {
        return CLoopServer::Raw("HTTP/1.1 200 OK\r\n" + field + "\r\n\r\nhello").Closing();
    };
    QTest::newRow("closed at once") << page.Cut(0) << QByteArray("error 12030");
    QTest::newRow("cut in the status line") << page.Cut(10) << QByteArray("error 12030");
    QTest::newRow("cut in the header") << page.Cut(30) << QByteArray("error 12030");
    QTest::newRow("cut before the body") << page.Cut(header) << QByteArray("error 12030");
    QTest::newRow("cut in the body") << page.Cut(header + 2500) << QByteArray("error 12030");
    QTest::newRow("cut before the last byte") << page.Cut(header + 4999) << QByteArray("error 12030");
    QTest::newRow("chunks") << chunked << QByteArray("OK helloworld");
    QTest::newRow("no length, closed at the end") << headed("X: y") << QByteArray("OK hello");
    QTest::newRow("length too long") << headed("Content-Length: 6") << QByteArray("error 12030");
    QTest::newRow("length too short") << headed("Content-Length: 4") << QByteArray("OK hell");
    QTest::newRow("length is no number") << headed("Content-Length: 5x") << QByteArray("error 12152");
    QTest::newRow("length below 0") << headed("Content-Length: -5") << QByteArray("error 12152");
    QTest::newRow("packed without being asked") << headed("Content-Encoding: gzip") << QByteArray("error 12152");
    QTest::newRow("identity by name") << headed("Content-Encoding: identity") << QByteArray("OK hello");
    // The library takes a first line that it cannot read for a broken connection.
    QTest::newRow("no web server") << CLoopServer::Raw("220 mail.example ESMTP\r\n") << QByteArray("error 12030");
    QTest::newRow("empty body") << CLoopServer::Page("") << QByteArray("OK ");
    QTest::newRow("no content") << CLoopServer::Raw("HTTP/1.1 204 No Content\r\n\r\n") << QByteArray("OK ");
    QTest::newRow("old server") << CLoopServer::Raw("HTTP/1.0 200 OK\r\n\r\nhello").Closing() << QByteArray("OK hello");
}

void tst_NetTransfer::BrokenReplies()
{
    QFETCH(CLoopReply, reply);
    QFETCH(QByteArray, wanted);
    CLoopServer server;
    server.SetDefault(reply); // a request that got no answer at all may be tried again
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), wanted);
    QVERIFY(!fetch.Transfer.StillExecuting());
    QCOMPARE(fetch.Transfer.ResponseInfo().isEmpty(), wanted.startsWith("OK"));
}

void tst_NetTransfer::SilenceEndsInTime_data()
{
    QTest::addColumn<CLoopReply>("reply");
    const CLoopReply page = CLoopServer::Page(QByteArray(5000, 'x'));
    QTest::newRow("no word") << CLoopServer::Silence();
    QTest::newRow("silent in the header") << page.PausedAfter(20);
    QTest::newRow("silent in the body") << page.PausedAfter(3000);
    QTest::newRow("silent in a redirect's page")
        << CLoopServer::Raw("HTTP/1.1 302 Found\r\nLocation: /b\r\nContent-Length: 100\r\n\r\nx");
}

void tst_NetTransfer::SilenceEndsInTime()
{
    QFETCH(CLoopReply, reply);
    CLoopServer server{{reply}};
    CFetch fetch;
    fetch.Transfer.SetTimeoutMs(100);
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("error 12002"));
    QCOMPARE(fetch.States.last(), State::Error);
    QCOMPARE(server.Requests(), QByteArrayList({"GET /a"}));
}

/// The time-out counts from the last progress, not from the start.
void tst_NetTransfer::SlowDataIsProgress()
{
    CLoopServer server{{CLoopServer::Page(QByteArray(1000, 'x')).InPieces(140, 150)}};
    CFetch fetch;
    fetch.Transfer.SetTimeoutMs(900);
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), "OK " + QByteArray(1000, 'x'));
}

void tst_NetTransfer::RefusedPort()
{
    CFetch fetch;
    const QUrl url(u"http://127.0.0.1:%1/"_s.arg(CLoopServer::RefusedPort()));
    QCOMPARE(fetch.Run(url), QByteArray("error 12029"));
    QCOMPARE(fetch.States, QList<State>({State::ResolvingHost, State::HostResolved, State::Connecting, State::Error}));
    QCOMPARE(fetch.Transfer.Header(), QByteArray());
}

void tst_NetTransfer::UnknownName()
{
    CFetch fetch;
    QCOMPARE(fetch.Run(QUrl(u"http://no-such-host.invalid/"_s)), QByteArray("error 12007"));
    QCOMPARE(fetch.States, QList<State>({State::ResolvingHost, State::Error}));
}

void tst_NetTransfer::NoWebAddress_data() { mdlTable::AddRows<QString>("transfer.json", "NoWebAddress", {"address"}); }

void tst_NetTransfer::NoWebAddress()
{
    QFETCH(QString, address);
    CFetch fetch;
    QCOMPARE(fetch.Run(QUrl(address)), QByteArray("not started 12005"));
    QVERIFY(!fetch.Transfer.StillExecuting());
    QCOMPARE(fetch.States, QList<State>());
}

void tst_NetTransfer::LargestBody()
{
    const QByteArray body(CTransfer::MaxBodyBytes, 'x');
    CLoopServer server{{CLoopServer::Page(body)}};
    CFetch fetch;
    QVERIFY(fetch.Run(server.Url(u"/a"_s)) == "OK " + body);
}

void tst_NetTransfer::TooLarge_data()
{
    QTest::addColumn<CLoopReply>("reply");
    const QByteArray body(40 * 1024 * 1024, 'x');
    QTest::newRow("said in advance") << CLoopServer::Page(body);
    QTest::newRow("not said") << CLoopServer::Raw("HTTP/1.1 200 OK\r\n\r\n" + body).Closing();
    QTest::newRow("said, but nothing comes") << CLoopServer::Page(body).PausedAfter(200);
}

void tst_NetTransfer::TooLarge()
{
    QFETCH(CLoopReply, reply);
    CLoopServer server{{reply}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("error 12152"));
    QCOMPARE(fetch.Transfer.ResponseInfo(), u"サーバーの応答が大きすぎます。"_s);
}

void tst_NetTransfer::RedirectsAreFollowed()
{
    CLoopServer server{{CLoopServer::Redirect("b?x=1", "301 Moved"), CLoopServer::Redirect("/c", "303 See Other"),
                        CLoopServer::Page("here")}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/d/a"_s)), QByteArray("OK here"));
    QCOMPARE(server.Requests(), QByteArrayList({"GET /d/a", "GET /d/b?x=1", "GET /c"}));
    QCOMPARE(server.Connections(), 1);
    QCOMPARE(FirstLine(fetch.Transfer.Header()), QByteArray("HTTP/1.1 200 OK"));
    QCOMPARE(fetch.Transfer.Url(), server.Url(u"/d/a"_s));
    QCOMPARE(fetch.Transfer.FinalUrl(), server.Url(u"/c"_s));
}

void tst_NetTransfer::RedirectLoopEnds()
{
    CLoopServer server;
    server.SetDefault(CLoopServer::Redirect("/a"));
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("error 12152"));
    QCOMPARE(server.Requests().size(), CTransfer::MaxRedirects + 1);
}

void tst_NetTransfer::BadRedirect()
{
    for (const QByteArray location : {"file:///etc/passwd", "http:///x", "javascript:alert(1)", "data:text/html,x"}) {
        CLoopServer server{{CLoopServer::Redirect(location)}};
        CFetch fetch;
        QCOMPARE(location + fetch.Run(server.Url(u"/a"_s)), location + "error 12152");
        QCOMPARE(fetch.Transfer.ResponseInfo(), u"サーバーの転送先が正しくありません。"_s);
    }
}

void tst_NetTransfer::RedirectKeepsCookiesApart()
{
    CLoopServer other{{CLoopServer::Page("other")}};
    QUrl target = other.Url(u"/x"_s);
    target.setHost(u"localhost"_s);
    CLoopServer server{
        {CLoopServer::Page("", "302 Found", "Location: " + target.toEncoded() + "\r\nSet-Cookie: late=1; path=/\r\n"),
         CLoopServer::Page("again")}};
    CFetch fetch;
    QVERIFY(fetch.Cookies.Set(server.Url(u"/a"_s), "secret", "password"));
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("OK other"));
    QCOMPARE(server.RequestHeader(0, "Cookie"), QByteArray("secret=password"));
    QCOMPARE(other.RequestHeader(0, "Cookie"), QByteArray());
    QCOMPARE(fetch.Run(server.Url(u"/a"_s)), QByteArray("OK again"));
    QCOMPARE(server.RequestHeader(1, "Cookie"), QByteArray("secret=password; late=1"));
}

void tst_NetTransfer::CancelAtEachStage_data()
{
    QTest::addColumn<int>("stage");
    QTest::addColumn<bool>("named");
    for (const State state : WholeRun.first(WholeRun.size() - 1))
        QTest::addRow("stage %d", static_cast<int>(state)) << static_cast<int>(state) << false;
    QTest::newRow("look-up of a name") << static_cast<int>(State::ResolvingHost) << true;
}

void tst_NetTransfer::CancelAtEachStage()
{
    QFETCH(int, stage);
    QFETCH(bool, named);
    CLoopServer server{{CLoopServer::Page(QByteArray(5000, 'x')).PausedAfter(3000)}};
    CFetch fetch;
    int told = 0;
    fetch.OnState = [&](State state) {
        ++told;
        if (state == static_cast<State>(stage)) {
            told = 0;
            fetch.Transfer.Cancel();
            QVERIFY(!fetch.Transfer.StillExecuting());
        }
    };
    QUrl url = server.Url(u"/a"_s);
    if (named)
        url.setHost(u"localhost"_s);
    QCOMPARE(fetch.Run(url), QByteArray("error 12017"));
    QCOMPARE(told, 1); // the error, and nothing after it
    QCoreApplication::processEvents();
    QCOMPARE(told, 1);

    // The object is as good as new.
    fetch.OnState = {};
    CLoopServer next{{CLoopServer::Page("next")}};
    QCOMPARE(fetch.Run(next.Url(u"/"_s)), QByteArray("OK next"));
}

void tst_NetTransfer::CancelBeforeTheFirstStage()
{
    CLoopServer server{{CLoopServer::Page("x")}};
    CFetch fetch;
    QVERIFY(fetch.Transfer.Execute(server.Url(u"/a"_s)));
    fetch.Transfer.Cancel();
    QCOMPARE(fetch.Outcome(), QByteArray("error 12017"));
    fetch.Transfer.Cancel();
    QCOMPARE(fetch.States, QList<State>({State::Error}));
    QCOMPARE(fetch.Run(server.Url(u"/b"_s)), QByteArray("OK x"));
    QCOMPARE(server.Requests(), QByteArrayList({"GET /b"}));
}

void tst_NetTransfer::SecondStartIsRefused()
{
    CLoopServer server{{CLoopServer::Page("first")}};
    CFetch fetch;
    bool second = true;
    fetch.OnState = [&](State state) {
        if (state == State::RequestSent)
            second = fetch.Transfer.Execute(server.Url(u"/second"_s));
    };
    QCOMPARE(fetch.Run(server.Url(u"/first"_s)), QByteArray("OK first"));
    QVERIFY(!second);
    QCOMPARE(fetch.Transfer.Url(), server.Url(u"/first"_s));
    QCOMPARE(server.Requests(), QByteArrayList({"GET /first"}));
}

void tst_NetTransfer::NextRequestFromTheLastSignal()
{
    CLoopServer server{{CLoopServer::Page("one"), CLoopServer::Page("two")}};
    CFetch fetch;
    bool again = true;
    fetch.OnState = [&](State state) {
        if (state == State::ResponseCompleted && std::exchange(again, false))
            QVERIFY(fetch.Transfer.Execute(server.Url(u"/two"_s)));
    };
    QCOMPARE(fetch.Run(server.Url(u"/one"_s)), QByteArray("OK two"));
    QCOMPARE(server.Requests(), QByteArrayList({"GET /one", "GET /two"}));
}

void tst_NetTransfer::DestroyedInASignal()
{
    for (const State stage : WholeRun) {
        CLoopServer server{{CLoopServer::Page("x")}};
        const QTemporaryDir folder;
        CCookieStore cookies(folder.filePath(u"c"_s));
        auto transfer = std::make_unique<CTransfer>(cookies);
        QObject::connect(transfer.get(), &CTransfer::StateChanged, &cookies, [&](State state) {
            if (state == stage)
                transfer.reset();
        });
        QVERIFY(transfer->Execute(server.Url(u"/a"_s)));
        QTRY_VERIFY(!transfer);
        QCoreApplication::processEvents();
    }
}

void tst_NetTransfer::DeadKeptConnectionIsReplaced()
{
    CLoopServer server{{CLoopServer::Page("one").Closing(), CLoopServer::Page("two")}};
    CFetch fetch;
    QCOMPARE(fetch.Run(server.Url(u"/one"_s)), QByteArray("OK one"));
    QCOMPARE(fetch.Run(server.Url(u"/two"_s)), QByteArray("OK two"));
    QCOMPARE(server.Connections(), 2);
}

QTEST_GUILESS_MAIN(tst_NetTransfer)
#include "tst_NetTransfer.moc"
