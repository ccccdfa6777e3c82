// tests/board/tst_CBBSProperty.cpp
// A board's row, the visitor's settings in its cookie, and the names made from both.

#include "platform/text/Codepage932.h"
#include "tests/board/CBoardFixture.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString Address = u"http://localhost/cgi-bin/x.cgi"_s;

QString SettingsOf(const CBBSProperty& Board)
{
    return QStringList{Board.PostName(),
                       Board.Mail(),
                       Board.HomePage(),
                       Board.Password(),
                       QString::number(Board.ViewCount()),
                       QString::number(Board.ViewOrder()),
                       QString::number(Board.NoReadView()),
                       QString::number(Board.NoReadPoint()),
                       QString::number(Board.DownloadCount())}
        .join(u'|');
}

/// A board that is in no database: kind -1, 0 or 1.
CBBSProperty Unsaved(Application& App, int Hitokoto)
{
    CBBSProperty board(App);
    board.URL = Address;
    board.Hitokoto = Hitokoto;
    return board;
}
} // namespace

class tst_CBBSProperty : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Reading_data();
    void Reading();
    void Writing_data();
    void Writing();
    void TextsCannotDamageOtherFields_data();
    void TextsCannotDamageOtherFields();
    void NoTextDamagesAnything();
    void SetsTellWhetherTheyWereKept();
    void OnlyTheExactCookieCounts();
    void SettingsOutliveTheProgram();
    void WithoutAnAddressNothingIsKept();
    void TheRowComesAndGoes();
    void RefusedRowStays();
    void UnreadMessagesAreCounted();
    void ANewAddressTakesTheSettingsAlong();
    void TheSecondSideFindsTheNewerSettings();
    void PageAddresses();
    void FileNames();
    void TheIconIsFoundInAnyCase();
};

void tst_CBBSProperty::Reading_data()
{
    mdlTable::AddRows<int, QByteArray, QString>("board-property.json", "Reading", {"kind", "cookie", "wanted"});
    QTest::newRow("code page 932") << -1 << text::To932(u"能登ソ①,,,,,,,,") << u"能登ソ①||||20|0|0|0|30"_s;
}

void tst_CBBSProperty::Reading()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, cookie);
    CBoardFixture board;
    if (!cookie.isEmpty())
        QVERIFY(board.App.Cookies().Set(QUrl(Address), Address.toLatin1(), cookie));
    QTEST(SettingsOf(Unsaved(board.App, kind)), "wanted");
}

void tst_CBBSProperty::Writing_data()
{
    mdlTable::AddRows<int, QByteArray, QByteArray, QByteArray>("board-property.json", "Writing",
                                                               {"kind", "before", "named", "positioned"});
}

void tst_CBBSProperty::Writing()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, before);
    CBoardFixture fixture;
    if (!before.isEmpty())
        QVERIFY(fixture.App.Cookies().Set(QUrl(Address), Address.toLatin1(), before));
    CBBSProperty board = Unsaved(fixture.App, kind);
    board.SetPostName(u"sora"_s);
    QTEST(fixture.Cookie(Address), "named");
    board.SetNoReadPoint(250);
    QTEST(fixture.Cookie(Address), "positioned");
}

void tst_CBBSProperty::TextsCannotDamageOtherFields_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::newRow("comma") << u"a,b"_s << u"a，b"_s;
    QTest::newRow("semicolon") << u"a;b"_s << u"a；b"_s;
    QTest::newRow("percent") << u"100%"_s << u"100％"_s;
    QTest::newRow("line break and nul") << u"a\r\nSet-Cookie: x=1"_s + QChar(u'\0') << u"aSet-Cookie: x=1"_s;
    QTest::newRow("second byte like a comma's neighbours") << u"ソ―表＝"_s << u"ソ―表＝"_s;
    QTest::newRow("not in the code page") << u"a😀b"_s << u"a??b"_s;
    QTest::newRow("of another input method") << u"〜−"_s << u"～－"_s;
}

void tst_CBBSProperty::TextsCannotDamageOtherFields()
{
    QFETCH(QString, typed);
    CBoardFixture fixture;
    CBBSProperty board = Unsaved(fixture.App, -1);
    board.SetPassword(u"secret"_s);
    board.SetNoReadPoint(77);
    board.SetPostName(typed);
    QTEST(board.PostName(), "kept");
    QCOMPARE(CBBSProperty::StoredText(typed), board.PostName());
    QCOMPARE(board.Password(), u"secret"_s);
    QCOMPARE(board.NoReadPoint(), 77);
}

/// Texts of characters that mean something to cookies, headers and the cookie file, set in any order on boards that
/// share a host, two of them a cookie, with a field that the program does not know. Each changes its own field and no
/// other.
void tst_CBBSProperty::NoTextDamagesAnything()
{
    const QString awkward =
        u",;%= \t\r\n\"\\&+ソ表ー①ｶﾞ〜−é\u00a0\u200b\ufeff\u2028a0"_s + QChar(u'\0') + QChar(0xd83d);
    using Set = bool (CBBSProperty::*)(const QString&);
    const Set sets[] = {&CBBSProperty::SetPostName, &CBBSProperty::SetMail, &CBBSProperty::SetHomePage,
                        &CBBSProperty::SetPassword};
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    CBoardFixture fixture;
    const QList<qint32> boards{3, 4, 13, 14};
    QMap<QString, QStringList> wanted; // the fields of each cookie
    for (const qint32 id : boards) {
        const CBBSProperty board = fixture.Property(id);
        wanted[board.URL] = u"a,b,c,d,%1,1,0,%2,44,55,unknown"_s.arg(id).arg(id * 100).split(u',');
        fixture.App.Cookies().Set(QUrl(board.URL), board.URL.toLatin1(), wanted[board.URL].join(u',').toLatin1());
    }
    for (int step = 0; step < 200; ++step) {
        CBBSProperty board = fixture.Property(boards[random.bounded(4)]);
        const int field = random.bounded(4);
        QString typed;
        for (int left = random.bounded(12); left > 0; --left)
            typed += awkward[random.bounded(int(awkward.size()))];
        QVERIFY((board.*sets[field])(typed));
        wanted[board.URL][field] = CBBSProperty::StoredText(typed);
        QVERIFY(!wanted[board.URL][field].contains(QRegularExpression(u"[,;%\r\n\\x{0}]"_s)));
    }
    Application next(fixture.Desk, fixture.Folder.path(), u"Tavora"_s); // as the file has it
    for (auto cookie = wanted.cbegin(); cookie != wanted.cend(); ++cookie) {
        const auto value = next.Cookies().Value(QUrl(cookie.key()), cookie.key().toLatin1());
        QCOMPARE(text::From932(value.value_or(QByteArray())).split(u','), cookie.value());
    }
}

void tst_CBBSProperty::SetsTellWhetherTheyWereKept()
{
    CBoardFixture fixture;
    CBBSProperty board = Unsaved(fixture.App, -1);
    QVERIFY(board.SetVisitor({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    QCOMPARE(fixture.Cookie(Address), QByteArray("a,b,c,d,20,,,0,30"));
    QCOMPARE(board.Visitor(), (CVisitor{u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    for (const QString& address : {QString(), u"ftp://localhost/x.cgi"_s, u"http://localhost/x=y"_s, u"nonsense"_s}) {
        board.URL = address;
        QVERIFY(!board.SetVisitor({}));
        QVERIFY(!board.SetViewCount(3));
    }
    board.URL = Address;
    QVERIFY(!board.SetMail(QString(5000, u'x'))); // more than a cookie holds
    QCOMPARE(board.Mail(), u"b"_s);
}

void tst_CBBSProperty::OnlyTheExactCookieCounts()
{
    CBoardFixture fixture;
    CCookieStore& cookies = fixture.App.Cookies();
    QVERIFY(cookies.Set(QUrl(Address), Address.toLatin1() + "2", "wrong,,,,,,,1,"));
    QVERIFY(cookies.Set(QUrl(Address), "visits", "http://localhost/cgi-bin/x.cgi"));
    QVERIFY(cookies.Set(QUrl(Address), Address.toLatin1(), "right,,,,,,,2,"));
    const CBBSProperty board = Unsaved(fixture.App, -1);
    QCOMPARE(board.PostName(), u"right"_s);
    QCOMPARE(board.NoReadPoint(), 2);
}

void tst_CBBSProperty::SettingsOutliveTheProgram()
{
    CBoardFixture fixture;
    Unsaved(fixture.App, -1).SetMail(u"sora@example.com"_s);
    Application next(fixture.Desk, fixture.Folder.path(), u"Tavora"_s);
    QCOMPARE(Unsaved(next, -1).Mail(), u"sora@example.com"_s);
}

void tst_CBBSProperty::WithoutAnAddressNothingIsKept()
{
    CBoardFixture fixture;
    CBBSProperty board(fixture.App);
    board.SetPostName(u"sora"_s);
    QCOMPARE(SettingsOf(board), u"||||20|0|0|0|30"_s);
}

void tst_CBBSProperty::TheRowComesAndGoes()
{
    CBoardFixture fixture;
    CBBSProperty board(fixture.App);
    QVERIFY(!board.SetProperty());
    QVERIFY(board.GetProperty(14));
    QCOMPARE(board.Name, u"やなぎ掲示板（右）"_s);
    QCOMPARE(board.Hitokoto, 1);
    QCOMPARE(board.MaxCount, 400);
    board.ShortName = u"右'"_s;
    board.VisitLoad = false;
    board.ListOrder = -1;
    QVERIFY(board.SetProperty());
    QCOMPARE(fixture.Rows(u"SELECT BBS_ID, ShortName, VisitLoad, ListOrder FROM BBS WHERE ListOrder < 0"_s), u"14,右',False,-1"_s);

    QVERIFY(!board.GetProperty(999));
    QCOMPARE(board.ShortName, u"右'"_s);
    QVERIFY(!board.SetProperty());
}

void tst_CBBSProperty::RefusedRowStays()
{
    CBoardFixture fixture;
    CBBSProperty board = fixture.Property();
    board.Name.clear();
    board.MaxCount = 1;
    QVERIFY_THROWS_EXCEPTION(dao::Error, board.SetProperty());
    QCOMPARE(fixture.Rows(u"SELECT BBS_Name, MaxCount FROM BBS WHERE BBS_ID = 3"_s), u"けやき掲示板,400"_s);
}

void tst_CBBSProperty::UnreadMessagesAreCounted()
{
    CBoardFixture fixture;
    for (const QString& row : {u"3,1,False"_s, u"3,2,True"_s, u"3,3,False"_s, u"4,4,False"_s})
        fixture.Run(u"INSERT INTO Message(BBS_ID, ID, Read) VALUES("_s + row + u')');
    QCOMPARE(fixture.Property(3).NoReadCount(), 2);
    QCOMPARE(fixture.Property(5).NoReadCount(), 0);
}

void tst_CBBSProperty::ANewAddressTakesTheSettingsAlong()
{
    CBoardFixture fixture;
    CBBSProperty board = fixture.Property();
    board.SetPostName(u"sora"_s);
    board.URL = u"http://elsewhere.example/b.cgi"_s;
    QCOMPARE(board.PostName(), u"sora"_s);
    board.SetNoReadPoint(9);
    QVERIFY(board.SetProperty());
    QCOMPARE(fixture.Cookie(u"http://elsewhere.example/b.cgi"_s), QByteArray("sora,,,,20,,,9,30"));
    QCOMPARE(fixture.Property().PostName(), u"sora"_s);

    CBBSProperty back = fixture.Property();
    back.URL = u"http://localhost:8932/cgi-bin/keyaki.cgi"_s;
    QVERIFY(back.SetProperty());
    QCOMPARE(fixture.Property().NoReadPoint(), 9);
}

void tst_CBBSProperty::TheSecondSideFindsTheNewerSettings()
{
    CBoardFixture fixture;
    const QString moved = u"http://elsewhere.example/y.cgi"_s;
    fixture.Property(13).SetNoReadPoint(100);
    CBBSProperty left = fixture.Property(13);
    left.URL = moved;
    QVERIFY(left.SetProperty());
    left.SetNoReadPoint(120);
    CBBSProperty right = fixture.Property(14);
    right.URL = moved;
    QVERIFY(right.SetProperty());
    right.SetNoReadPoint(60);
    QCOMPARE(fixture.Cookie(moved), QByteArray(",,,,30,,,120,50,60"));
}

void tst_CBBSProperty::PageAddresses()
{
    CBoardFixture fixture;
    const QStringList wanted{Address, Address + u"?leftonly=1"_s, Address + u"?rightonly=1"_s, QString()};
    for (const int kind : {-1, 0, 1, 2}) {
        QCOMPARE(Unsaved(fixture.App, kind).GetShowURL(), wanted[kind + 1]);
        QCOMPARE(Unsaved(fixture.App, kind).GetShowCookiePageURL(), Address + u"?dousa=showcookiepage"_s);
    }
}

void tst_CBBSProperty::FileNames()
{
    CBoardFixture fixture;
    fixture.App.Option().CacheFilePath = u"D:\\data"_s;
    fixture.App.Option().ErrorLogFilePath = u"/home/u/log/"_s;
    QCOMPARE(fixture.Property().GetCacheFileName(), u"D:\\data\\keyaki.html"_s);
    QCOMPARE(fixture.Property().GetErrorLogFileName(), u"/home/u/log/keyaki.bad"_s);
}

void tst_CBBSProperty::TheIconIsFoundInAnyCase()
{
    CBoardFixture fixture;
    QVERIFY(fixture.Property().GetIconFileName().isEmpty());
    QFile icon(fixture.Folder.filePath(u"Keyaki.BMP"_s));
    QVERIFY(icon.open(QIODevice::WriteOnly));
    QCOMPARE(fixture.Property().GetIconFileName(), icon.fileName());
    fixture.App.Option().IconFilePath = u"/no/such/folder"_s;
    QVERIFY(fixture.Property().GetIconFileName().isEmpty());
}

QTEST_GUILESS_MAIN(tst_CBBSProperty)
#include "tst_CBBSProperty.moc"
