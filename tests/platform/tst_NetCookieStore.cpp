// tests/platform/tst_NetCookieStore.cpp
// Cookies named like a board's address, their reach and their file.

#include "platform/net/CCookieStore.h"
#include "tests/support/CFileSizeLimit.h"
#include "platform/net/CookieText.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

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
    QByteArray FileText() const { return mdlFiles::Read(FileName()); }
    void WriteFile(const QByteArray& Text) const { mdlFiles::Write(FileName(), Text); }

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
    mdlTable::AddRows<QByteArray, QByteArray, QByteArray, QByteArray>("cookies.json", "Reach",
                                                                      {"setAt", "line", "askedAt", "wanted"});
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
    mdlTable::AddRows<QByteArray, QByteArray, QByteArray>("cookies.json", "Refusals", {"address", "name", "data"});
    QTest::newRow("too long") << QByteArray("http://a.co.jp/x") << QByteArray("n")
                              << QByteArray(CCookieStore::MaxCookieBytes, 'v');
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
    // wanted: empty: unreadable
    mdlTable::AddRows<QByteArray, QString>("cookies.json", "Dates", {"text", "wanted"});
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
    QCOMPARE(QFileInfo(FileName() + u".bak"_s).size(), QFileInfo(FileName()).size());
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
    const int boards = CCookieStore::MaxPerDomain + 10; // a community may well have more of them than a server may set
    for (int i = 0; i < boards; ++i)
        QVERIFY(store.Set(url, "own" + QByteArray::number(i), QByteArray("v") + Future));
    for (int i = 0; i < 3 * CCookieStore::MaxPerDomain; ++i)
        QVERIFY(store.SetFromHeader(url, "n" + QByteArray::number(i) + "=v"));
    QCOMPARE(store.Get(url).count('='), boards + CCookieStore::MaxPerDomain);
    QCOMPARE(store.Value(url, "own0"), std::optional(QByteArray("v")));
    QCOMPARE(store.Value(url, "n99"), std::nullopt);
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
