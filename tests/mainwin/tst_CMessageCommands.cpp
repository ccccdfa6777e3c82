// tests/mainwin/tst_CMessageCommands.cpp
// What is handed to the browser, the mail program and the clipboard.

#include "mainwin/CMessageCommands.h"
#include "tests/viewer/CViewerFixture.h"
#include "tests/support/Table.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using Page = CMessageCommands::Page;

namespace
{

const QString Keyaki = u"http://localhost:8932/cgi-bin/keyaki.cgi"_s;
const QString Yanagi = u"http://localhost:8932/cgi-bin/yanagi.cgi"_s;

/// Board 3 is on view with message 123; Selected is what the pane has selected.
struct CCommandFixture : CViewerFixture
{
    QString Selected;
    CMessageCommands Commands{App, Board, Viewer, [this] { return Selected; }};

    explicit CCommandFixture(const QString& Assignments = {})
    {
        Add(3, 123, 123);
        if (!Assignments.isEmpty())
            Run(u"UPDATE Message SET "_s + Assignments);
        Viewer.SelectBoard(3);
        Click(0, 0);
    }
};

} // namespace

class tst_CMessageCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void Header_data();
    void Header();
    void HeaderWithoutAMessage();
    void Addresses_data();
    void Addresses();
    void WebSearch_data();
    void WebSearch();
    void WebSearchMenu();
    void BoardPages_data();
    void BoardPages();
    void MissingAddressesAreTold();
    void TwoSidedReplies();
    void NothingSelectedOpensNothing();
    void Help();
};

void tst_CMessageCommands::Header_data()
{
    mdlTable::AddRows<QString, QString, QString, QString>("message-commands.json", "Header",
                                                          {"format", "subject", "selected", "wanted"});
    const QString two = u"abc\r\ndef"_s;
    QTest::newRow("default") << mdlSettings::DefaultReplyHeader() << u"質問"_s << two
                             << u"けやき#123 質問 より引用\r\n> abc\r\n> def"_s;
}

void tst_CMessageCommands::Header()
{
    QFETCH(QString, format);
    QFETCH(QString, subject);
    QFETCH(QString, selected);
    CCommandFixture f(u"Subject = '"_s + subject + u'\'');
    f.App.Option().ReplyHeader = format;
    f.Selected = selected;
    f.Commands.CopyWithHeader();
    QTEST(f.Desk.ClipboardText, "wanted");
}

void tst_CMessageCommands::HeaderWithoutAMessage()
{
    CCommandFixture f;
    f.App.Option().ReplyHeader = u"%s#%I %S%N %D"_s;
    f.List(0).ClearSelection();
    f.Commands.CopyWithHeader();
    QCOMPARE(f.Desk.ClipboardText, u"けやき#  1899/12/30 00:00"_s);
}

void tst_CMessageCommands::Addresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("wanted"); // of the selected text, of the mail, of the home page
    QTest::newRow("plain") << u"http://example.com/"_s
                           << u"http://example.com/ mailto:http://example.com/ http://example.com/"_s;
    QTest::newRow("mail with its scheme")
        << u"MailTo:a@example.com"_s << u"MailTo:a@example.com MailTo:a@example.com MailTo:a@example.com"_s;
}

void tst_CMessageCommands::Addresses()
{
    QFETCH(QString, text);
    CCommandFixture f(u"Mail = '%1', HomePage = '%1'"_s.arg(text));
    f.Selected = u" \r\n"_s + text.left(5) + u"\r\n"_s + text.mid(5) + u"\r\n　"_s;
    f.Commands.OpenSelection();
    f.Commands.Mail();
    f.Commands.HomePage();
    QTEST(f.Desk.Opened.join(u' '), "wanted");
}

void tst_CMessageCommands::WebSearch_data()
{
    mdlTable::AddRows<QString, QString, QString>("message-commands.json", "WebSearch",
                                                 {"address", "selected", "wanted"});
}

void tst_CMessageCommands::WebSearch()
{
    QFETCH(QString, address);
    QFETCH(QString, selected);
    CCommandFixture f;
    f.App.SettingsIni().SetNowSection(u"WebSearch"_s);
    f.App.SettingsIni().SetData(u"検索(&G)..."_s, address);
    f.Commands.ReadWebSearches();
    f.Selected = selected;
    f.Commands.Search(1);
    f.Commands.Search(0);
    f.Commands.Search(2);
    QTEST(f.Desk.Opened.join(u' '), "wanted");
}

void tst_CMessageCommands::WebSearchMenu()
{
    CCommandFixture f;
    QVERIFY(f.Commands.ReadWebSearches().empty());
    CIniFile& ini = f.App.SettingsIni();
    ini.SetNowSection(u"WebSearch"_s);
    ini.SetData(u"b"_s, u"http://b/"_s);
    ini.SetData(u"a"_s, u"http://a/"_s);
    ini.SetNowSection(u"Option"_s); // whatever was read in between
    QCOMPARE(f.Commands.ReadWebSearches(),
             (std::vector<CMessageCommands::WebSearch>{{u"b"_s, u"http://b/"_s}, {u"a"_s, u"http://a/"_s}}));
}

void tst_CMessageCommands::BoardPages_data()
{
    QTest::addColumn<int>("board");
    QTest::addColumn<QString>("wanted"); // the page, its display settings, a new post
    QTest::newRow("ordinary") << 3 << Keyaki + u' ' + Keyaki + u"?dousa=showcookiepage "_s + Keyaki + u"?dousa=sinki"_s;
    QTest::newRow("left side") << 13
                               << Yanagi + u"?leftonly=1 "_s + Yanagi + u"?dousa=showcookiepage "_s + Yanagi +
                                      u"?dousa=sinki&l_or_r=0"_s;
}

void tst_CMessageCommands::BoardPages()
{
    QFETCH(int, board);
    CCommandFixture f;
    f.Viewer.SelectBoard(board);
    f.Commands.ShowPage(Page::Board);
    f.Commands.ShowPage(Page::DisplaySettings);
    f.Commands.NewPost(board);
    QTEST(f.Desk.Opened.join(u' '), "wanted");
}

void tst_CMessageCommands::MissingAddressesAreTold()
{
    CCommandFixture f;
    f.Run(u"UPDATE BBS SET URL = ' ', HowtouseURL = Null WHERE BBS_ID = 4"_s);
    f.Viewer.SelectBoard(4);
    for (const Page page : {Page::Board, Page::DisplaySettings, Page::Usage}) {
        f.Desk.Expect(page == Page::Usage ? u"つかいかたのページがありません。"_s
                                          : u"アドレスが設定されていません。"_s);
        f.Commands.ShowPage(page);
    }
    f.Desk.Expect(u"アドレスが設定されていません。"_s);
    f.Commands.NewPost(4);
    QVERIFY(f.Desk.Verify());
    QCOMPARE(f.Desk.Opened, QStringList());
}

void tst_CMessageCommands::TwoSidedReplies()
{
    CCommandFixture f;
    f.Commands.TwoSidedReply(0);
    f.Commands.TwoSidedReply(1);
    const QStringList both = {Yanagi + u"?dousa=sinki&l_or_r=0"_s, Yanagi + u"?dousa=sinki&l_or_r=1"_s};
    QCOMPARE(f.Desk.Opened, both);
    f.Run(u"DELETE FROM BBS WHERE Hitokoto = 0"_s);
    f.Desk.Expect(u"ひとことに返信できませんでした。"_s);
    f.Commands.TwoSidedReply(0);
    QVERIFY(f.Desk.Verify());
    QCOMPARE(f.Desk.Boxes.back().Caption, f.App.AppTitle());
    QCOMPARE(f.Desk.Boxes.back().Icon, Desktop::Icon::Information);
    QCOMPARE(f.Desk.Opened, both);
}

void tst_CMessageCommands::NothingSelectedOpensNothing()
{
    CCommandFixture f(u"Mail = 'a@example.com', HomePage = 'http://example.com/'"_s);
    const auto all = [&f] {
        f.Commands.Mail();
        f.Commands.HomePage();
        f.Commands.TwoSidedReply(0);
        f.Commands.Copy();
        return f.Desk.Opened.isEmpty() && f.Desk.ClipboardText.isNull();
    };
    f.List(0).ClearSelection();
    QVERIFY(all());
    f.Viewer.LoadList(u"SELECT BBS_Name FROM BBS"_s, CViewer::ResultList);
    f.Click(CViewer::ResultList, 0);
    QVERIFY(all());
}

void tst_CMessageCommands::Help()
{
    CCommandFixture f;
    f.Desk.Expect(u"ヘルプファイル(ReadMe.txt)が開けませんでした。"_s);
    f.Commands.ShowHelp();
    QVERIFY(f.Desk.Verify());
    QCOMPARE(f.Desk.Opened, QStringList());
    const QString path = f.App.AppPath() + u"ReadMe.txt"_s;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    f.Commands.ShowHelp();
    QCOMPARE(f.Desk.Opened, QStringList(path));
    f.Desk.OpenSucceeds = false;
    f.Desk.Expect(u"ReadMe.txt"_s);
    f.Commands.ShowHelp();
    QVERIFY(f.Desk.Verify());
}

QTEST_GUILESS_MAIN(tst_CMessageCommands)
#include "tst_CMessageCommands.moc"
