// tests/platform/tst_NetCookieStore.cpp
// Cookies named like a board's address, their reach and their file.

#include "platform/net/CCookieStore.h"
#include "tests/support/CFileSizeLimit.h"
#include "platform/net/CookieText.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray Board = "http://localhost:8932/cgi-bin/keyaki.cgi";
constexpr char Future[] = "; expires=Fri, 01-Jan-2088 00:00:00 GMT";

QUrl At(const char* Address) { return QUrl(QString::fromLatin1(Address)); }
} // namespace

class tst_NetCookieStore : public QObject
{
    Q_OBJECT

private:
    QString FileName() const { return m_folder->filePath(u"Tavora.cookies"_s); }
    QByteArray FileText() const
    {
        QFile file(FileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    void WriteFile(const QByteArray& Text) const
    {
        QFile file(FileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(Text);
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void Reach_data();
    void Reach();
    void Refusals_data();
    void Refusals();
    void Dates_data();
    void Dates();
    void NameIsABoardAddress();
    void LongerPathsComeFirst();
    void PastEndDeletes();
    void OwnCookiesGetNoEnd();
    void BytesSurviveTheFile();
    void LineBreaksAreDropped();
    void ReadsAFileOfAnotherRun();
    void FileIsTheOwnersOnly();
    void UnreadableFileIsKept();
    void UnwritableFolderKeepsTheOldFile();
    void FullDiskKeepsTheOldFile();
    void ServerCannotPushOutOwnCookies();
    void LaterEndAloneIsWrittenAtTheEnd();
};

void tst_NetCookieStore::Reach_data()
{
    QTest::addColumn<QByteArray>("setAt");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("askedAt");
    QTest::addColumn<QByteArray>("wanted");

    const QByteArray page = "http://a.example.jp/cgi-bin/x.cgi";
    const auto row = [](const char* name, const QByteArray& setAt, const QByteArray& line, const QByteArray& askedAt,
                        const QByteArray& wanted) { QTest::newRow(name) << setAt << line << askedAt << wanted; };
    row("same page", page, "n=v", page, "n=v");
    row("same folder, query", page, "n=v", "http://a.example.jp/cgi-bin/y.cgi?a=/b/", "n=v");
    row("other port", page, "n=v", "http://a.example.jp:8080/cgi-bin/x.cgi", "n=v");
    row("host without case", page, "n=v", "http://A.EXAMPLE.JP/cgi-bin/x.cgi", "n=v");
    row("folder above", page, "n=v", "http://a.example.jp/", "");
    row("path of a root page", "http://a.example.jp/bar", "n=v", "http://a.example.jp/foo/x", "n=v");
    row("no path at all", "http://a.example.jp", "n=v", "http://a.example.jp", "n=v");
    row("path is a plain prefix", page, "n=v; path=/foo", "http://a.example.jp/foobar/", "n=v");
    row("request is cut at its last slash", page, "n=v; path=/foo", "http://a.example.jp/foobar", "");
    row("path without case", page, "n=v; path=/CGI-bin/", page, "n=v");
    row("path that is none", page, "n=v; path=x", page, "n=v");
    row("other host", page, "n=v", "http://b.example.jp/cgi-bin/x.cgi", "");
    row("subdomain of a host cookie", page, "n=v", "http://b.a.example.jp/cgi-bin/x.cgi", "");
    row("domain with dot", page, "n=v; domain=.example.jp", "http://b.example.jp/cgi-bin/x.cgi", "n=v");
    row("domain without dot", page, "n=v; Domain=Example.jp", "http://example.jp/cgi-bin/x.cgi", "n=v");
    row("only a suffix of the text", page, "n=v; domain=example.jp", "http://badexample.jp/cgi-bin/x.cgi", "");
    row("own host as domain", "http://localhost/x", "n=v; domain=localhost", "http://localhost/x", "n=v");
    row("secure over http", page, "n=v; secure", page, "");
    row("secure over https", page, "n=v; Secure", "https://a.example.jp/cgi-bin/", "n=v");
    row("httponly from a server", page, "n=v; HttpOnly", page, "n=v");
    row("empty value", page, "n=; path=/", page, "n");
    row("no equals sign", page, "n", page, "n");
    row("equals sign in the value", page, "n=a=b=", page, "n=a=b=");
    row("blanks around", page, " n = v ; path = / ", page, "n=v");
    row("max-age counts for nothing", page, "n=v; max-age=0", page, "n=v");
    row("empty end", page, "n=v; expires=", page, "n=v");
    row("unreadable end", page, "n=v; expires=tomorrow", page, "n=v");
    row("file address", page, "n=v", "file:///cgi-bin/x.cgi", "");
}

void tst_NetCookieStore::Reach()
{
    QFETCH(QByteArray, setAt);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, askedAt);
    QFETCH(QByteArray, wanted);
    CCookieStore store(FileName());
    QVERIFY(store.SetFromHeader(At(setAt.constData()), line));
    QCOMPARE(store.Get(At(askedAt.constData())), wanted);
}

void tst_NetCookieStore::Refusals_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("data");

    const QByteArray page = "http://a.co.jp/x";
    QTest::newRow("equals sign in the name") << page << QByteArray("a=b") << QByteArray("v");
    QTest::newRow("semicolon in the name") << page << QByteArray("a;b") << QByteArray("v");
    QTest::newRow("line end in the name") << page << QByteArray("a\r\nb") << QByteArray("v");
    QTest::newRow("no name") << page << QByteArray() << QByteArray("v");
    QTest::newRow("foreign domain") << page << QByteArray("n") << QByteArray("v; domain=b.co.jp");
    QTest::newRow("domain of strangers") << page << QByteArray("n") << QByteArray("v; domain=co.jp");
    QTest::newRow("top level domain") << page << QByteArray("n") << QByteArray("v; domain=.jp");
    QTest::newRow("part of an address") << QByteArray("http://10.0.0.1/") << QByteArray("n")
                                        << QByteArray("v; domain=0.0.1");
    QTest::newRow("httponly by the program") << page << QByteArray("n") << QByteArray("v; httponly");
    QTest::newRow("too long") << page << QByteArray("n") << QByteArray(CCookieStore::MaxCookieBytes, 'v');
    QTest::newRow("no web address") << QByteArray("file:///x") << QByteArray("n") << QByteArray("v");
    QTest::newRow("no host") << QByteArray("http:///x") << QByteArray("n") << QByteArray("v");
}

void tst_NetCookieStore::Refusals()
{
    QFETCH(QByteArray, address);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, data);
    CCookieStore store(FileName());
    QVERIFY(!store.Set(At(address.constData()), name, data + Future));
    QCOMPARE(store.Get(At(address.constData())), QByteArray());
    QCOMPARE(FileText(), QByteArray("(no file)"));
}

void tst_NetCookieStore::Dates_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("wanted"); // empty: unreadable

    QTest::newRow("dashes") << QByteArray("Wed, 01-Jan-2003 00:00:00 GMT") << u"2003-01-01T00:00:00Z"_s;
    QTest::newRow("blanks") << QByteArray("Wed, 15 Jan 2003 23:59:58 GMT") << u"2003-01-15T23:59:58Z"_s;
    QTest::newRow("as C writes it") << QByteArray("Wed Jan  1 07:05:09 2003") << u"2003-01-01T07:05:09Z"_s;
    QTest::newRow("two digits, new") << QByteArray("Tue, 29-feb-00 1:2:3 GMT") << u"2000-02-29T01:02:03Z"_s;
    QTest::newRow("two digits, old") << QByteArray("Sunday, 06-Nov-94 08:49:37 GMT") << u"1994-11-06T08:49:37Z"_s;
    QTest::newRow("no such day") << QByteArray("29-Feb-2003 00:00:00") << QString();
    QTest::newRow("hour 24") << QByteArray("01-Jan-2003 24:00:00") << QString();
    QTest::newRow("no time") << QByteArray("01-Jan-2003") << QString();
    QTest::newRow("no month") << QByteArray("01 01 2003 00:00:00") << QString();
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("colons only") << QByteArray(":::: ::") << QString();
    QTest::newRow("digits without end") << QByteArray(5000, '9') << QString();
}

void tst_NetCookieStore::Dates()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, wanted);
    QCOMPARE(mdlCookieText::ReadDate(text).toString(Qt::ISODate), wanted);
}

void tst_NetCookieStore::NameIsABoardAddress()
{
    CCookieStore store(FileName());
    const QUrl url = At(Board.constData());
    const QUrl other = At("http://localhost:8932/cgi-bin/keyaki.cgi2");
    QVERIFY(store.Set(url, Board + '2', QByteArray("x,,,,20,,,7,30") + Future));
    QVERIFY(store.Set(url, Board, QByteArray("a=b,,,,20,,,250,30") + Future));
    QVERIFY(store.Set(url, "visit", QByteArray(Board + "5") + Future));

    // The name is found as a whole, not where it begins another name or stands in a value.
    QCOMPARE(store.Value(url, Board), std::optional(QByteArray("a=b,,,,20,,,250,30")));
    QCOMPARE(store.Value(other, Board + '2'), std::optional(QByteArray("x,,,,20,,,7,30")));
    QCOMPARE(store.Value(url, "http://localhost"), std::nullopt);
    QCOMPARE(store.Get(url), Board + "2=x,,,,20,,,7,30; " + Board + "=a=b,,,,20,,,250,30; visit=" + Board + "5");

    // As the board itself answers it.
    QVERIFY(store.SetFromHeader(url, Board + "=,,,,30,,,251,50,9" + Future));
    QCOMPARE(store.Value(url, Board), std::optional(QByteArray(",,,,30,,,251,50,9")));
}

void tst_NetCookieStore::LongerPathsComeFirst()
{
    CCookieStore store(FileName());
    const QUrl url = At("http://h.jp/a/b/c");
    QVERIFY(store.SetFromHeader(url, "n=root; path=/"));
    QVERIFY(store.SetFromHeader(url, "n=deep; path=/a/b/"));
    QVERIFY(store.SetFromHeader(url, "m=mid; path=/a"));
    QCOMPARE(store.Get(url), QByteArray("n=deep; m=mid; n=root"));
    QCOMPARE(store.Value(url, "n"), std::optional(QByteArray("deep")));
}

void tst_NetCookieStore::PastEndDeletes()
{
    CCookieStore store(FileName());
    const QUrl url = At("http://h.jp/");
    QVERIFY(store.Set(url, "n", QByteArray("v") + Future));
    QVERIFY(store.Set(url, "n", "; expires=Wed, 01-Jan-2003 00:00:00 GMT"));
    QCOMPARE(store.Get(url), QByteArray());
    QCOMPARE(FileText(), QByteArray("# Tavora cookies 1\n"));
    // Deleting what is not there is no failure, and no reason to write.
    QVERIFY(store.SetFromHeader(url, "m=v; expires=Wed, 01-Jan-2003 00:00:00 GMT"));
    QCOMPARE(store.Get(url), QByteArray());
}

void tst_NetCookieStore::OwnCookiesGetNoEnd()
{
    CCookieStore store(FileName());
    const QUrl url = At("http://h.jp/b.cgi");
    QVERIFY(store.Set(url, "own", QByteArray("v") + Future));
    QVERIFY(store.SetFromHeader(url, QByteArray("theirs=v") + Future));
    QVERIFY(store.Set(url, "session", "v"));
    // 2088-01-01 is 3723753600 seconds after 1970.
    QCOMPARE(FileText(), QByteArray("# Tavora cookies 1\n"
                                    "h.jp\t0\t/\t0\t0\t-\town\tv\n"
                                    "h.jp\t0\t/\t0\t0\t3723753600\ttheirs\tv\n"));
}

void tst_NetCookieStore::BytesSurviveTheFile()
{
    // 表 and ソ end in a backslash byte; a lone lead byte, a tab and a blank at the end are kept as well.
    const QByteArray value = "\x95\x5c\x83\x5c,\xb1,\t,a b,\x81 ";
    const QUrl url = At(Board.constData());
    {
        CCookieStore store(FileName());
        QVERIFY(store.Set(url, Board, value + Future));
    }
    CCookieStore store(FileName());
    QVERIFY(store.Load());
    QCOMPARE(store.Value(url, Board), std::optional(value));
}

void tst_NetCookieStore::LineBreaksAreDropped()
{
    CCookieStore store(FileName());
    const QUrl url = At("http://h.jp/");
    QVERIFY(store.Set(url, "n", QByteArray("a\r\nX-Evil: 1\0b", 14) + Future));
    QCOMPARE(store.Get(url), QByteArray("n=aX-Evil: 1b"));
}

void tst_NetCookieStore::ReadsAFileOfAnotherRun()
{
    WriteFile("# Tavora cookies 1\r\n"
              "h.jp\t0\t/\t0\t0\t-\tgood\tv1\n"
              "h.jp\t0\t/\t0\t0\t946684800\told\tended in 2000\n"
              "h.jp\t0\t/\t0\t0\t3723753600\tlater\tv2\n"
              "h.jp\t0\t/\t0\t0\t-\tgood2\n"          // a field is missing
              "h.jp\t2\t/\t0\t0\t-\tgood3\tv\n"       // no flag
              "h.jp\t0\t/\t0\t0\tsoon\tgood4\tv\n"    // no time
              "h.jp\t0\tx\t0\t0\t-\tgood5\tv\n"       // no path
              "H JP\t0\t/\t0\t0\t-\tgood6\tv\n"       // no host
              "h.jp\t0\t/\t0\t0\t-\ta=b\tv\n"         // no name
              "h.jp\t0\t/\t0\t0\t-\tgood7\tv; n2=v\n" // would become two cookies
              "h.jp\t0\t/\t0\t0\t-\tbig\t" +
              QByteArray(100'000, 'x') + "\n" + QByteArray(100'000, '\0') +
              "\n\n\t\t\t\t\t\t\t\t\t\n"
              "h.jp\t0\t/\t0\t0\t-\tlast\tno line end");
    CCookieStore store(FileName());
    QVERIFY(store.Load());
    QCOMPARE(store.Get(At("http://h.jp/")), QByteArray("good=v1; later=v2; last=no line end"));
}

void tst_NetCookieStore::FileIsTheOwnersOnly()
{
#ifdef Q_OS_UNIX
    const auto groupAndOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    WriteFile("");
    QVERIFY(QFile::setPermissions(FileName(), QFile::ReadOwner | QFile::WriteOwner | groupAndOthers));
    CCookieStore store(FileName());
    QVERIFY(store.Load());
    QCOMPARE(QFile::permissions(FileName()) & groupAndOthers, QFile::Permissions());
    QVERIFY(QFile::remove(FileName()));
    QVERIFY(store.Set(At("http://h.jp/"), "n", QByteArray("secret") + Future));
    QCOMPARE(QFile::permissions(FileName()) & groupAndOthers, QFile::Permissions());
#endif
}

void tst_NetCookieStore::UnreadableFileIsKept()
{
    QVERIFY(QDir().mkpath(FileName())); // something is there that cannot be read
    CCookieStore store(FileName());
    QVERIFY(!store.Load());
    QVERIFY(!store.Set(At("http://h.jp/"), "n", QByteArray("v") + Future));
    QCOMPARE(store.Get(At("http://h.jp/")), QByteArray("n=v")); // still good for this run
    QVERIFY(QFileInfo(FileName()).isDir());
}

void tst_NetCookieStore::UnwritableFolderKeepsTheOldFile()
{
    CCookieStore store(m_folder->filePath(u"no such folder/c"_s));
    QVERIFY(store.Load()); // a missing file is an empty store
    QVERIFY(!store.Set(At("http://h.jp/"), "n", QByteArray("v") + Future));
    QCOMPARE(store.Get(At("http://h.jp/")), QByteArray("n=v"));
}

void tst_NetCookieStore::FullDiskKeepsTheOldFile()
{
    const QUrl url = At("http://h.jp/");
    CCookieStore store(FileName());
    QVERIFY(store.Set(url, "n", QByteArray("password") + Future));
    bool isSaved = true;
    {
        const CFileSizeLimit fullDisk(8);
        isSaved = store.Set(url, "n", QByteArray("new") + Future);
    }
    QVERIFY(!isSaved);
    CCookieStore next(FileName());
    QVERIFY(next.Load());
    QCOMPARE(next.Value(url, "n"), std::optional(QByteArray("password")));
}

void tst_NetCookieStore::ServerCannotPushOutOwnCookies()
{
    CCookieStore store(FileName());
    const QUrl url = At("http://h.jp/");
    QVERIFY(store.Set(url, "own", QByteArray("v") + Future));
    for (int i = 0; i < 3 * CCookieStore::MaxPerDomain; ++i)
        QVERIFY(store.SetFromHeader(url, "n" + QByteArray::number(i) + "=v"));
    QCOMPARE(store.Get(url).count('='), CCookieStore::MaxPerDomain);
    QCOMPARE(store.Value(url, "own"), std::optional(QByteArray("v")));
    QCOMPARE(store.Value(url, "n100"), std::nullopt);
    QCOMPARE(store.Value(url, "n149"), std::optional(QByteArray("v")));
}

void tst_NetCookieStore::LaterEndAloneIsWrittenAtTheEnd()
{
    const QUrl url = At("http://h.jp/");
    {
        CCookieStore store(FileName());
        QVERIFY(store.SetFromHeader(url, "n=v; expires=Fri, 01-Jan-2088 00:00:00 GMT"));
        QVERIFY(QFile::remove(FileName()));
        QVERIFY(store.SetFromHeader(url, "n=v; expires=Fri, 01-Jan-2088 00:00:10 GMT"));
        QCOMPARE(FileText(), QByteArray("(no file)")); // every page of a receive moves it a little
    }
    QCOMPARE(FileText(), QByteArray("# Tavora cookies 1\nh.jp\t0\t/\t0\t0\t3723753610\tn\tv\n"));
}

QTEST_GUILESS_MAIN(tst_NetCookieStore)
#include "tst_NetCookieStore.moc"
