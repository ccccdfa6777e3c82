// tests/load/tst_frmLoadDlg.cpp
// The receive dialog: its lines, log, tabs, pages, place and its one button.

#include "load/CBoardPageView.h"
#include "load/CInfoLabel.h"
#include "load/frmLoadDlg.h"
#include "platform/text/Codepage932.h"
#include "tests/board/CBoardFixture.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/CLoopServer.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr int TwipsPerPixel = 15;

struct CDialogFixture : CBoardFixture
{
    CLoopServer Server;
    frmLoadDlg Dialog{App, Board};
    QString Url = Server.Url(u"/keyaki.cgi"_s).toString();
    QString CacheFile = Folder.filePath(u"keyaki.html"_s);

    CDialogFixture() { SetBoardUrl(QUrl(Url)); }

    template <class T> T* Find(const QString& Name) const { return Dialog.findChild<T*>(Name); }
    QString Log() const { return Find<QPlainTextEdit>(u"txtLog"_s)->toPlainText(); }
    QTabWidget* Tabs() const { return Find<QTabWidget>(u"TabStrip"_s); }
    QPushButton* Button() const { return Find<QPushButton>(u"cmdOK"_s); }
    CBoardPageView* Page(qint32 BBS_ID = 3) const
    {
        return Find<CBoardPageView>(u"WebBrowser"_s + QString::number(BBS_ID));
    }
    QString Line(int Number) const { return Dialog.Infomation().section(u"\r\n"_s, Number - 1, Number - 1); }

    void Serve(const QString& Html, const QByteArray& Status = "200 OK")
    {
        Server.Add(CLoopServer::Page(text::To932(Html), Status, "Content-Type: text/html\r\n"));
    }
    /// Opens the dialog with board BBS_ID's tab.
    void Open(qint32 BBS_ID = 3, bool IsMore = false)
    {
        Dialog.ShowDialog(u"受信"_s, nullptr);
        Dialog.InitNewBBS(Property(BBS_ID), IsMore);
    }
    void WriteCache(const QByteArray& Content, int AgeHours)
    {
        mdlFiles::Write(CacheFile, Content);
        QFile file(CacheFile);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * AgeHours), QFileDevice::FileModificationTime));
    }
    QByteArray Cached() const { return mdlFiles::Read(CacheFile); }
    void SetPlace(const QString& Key, const QString& Value)
    {
        App.SettingsIni().SetNowSection(u"LoadDialogPosition"_s);
        App.SettingsIni().SetData(Key, Value);
    }
    QString Place(const QString& Key)
    {
        App.SettingsIni().SetNowSection(u"LoadDialogPosition"_s);
        return App.SettingsIni().Data(Key);
    }
};

QByteArray Png()
{
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}
} // namespace

class tst_frmLoadDlg : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void OpensForARun();
    void InfoLines_data();
    void InfoLines();
    void LongLinesAreShortened();
    void EachBoardHasATab();
    void ANewRunBeginsEmpty();
    void ThePageIsFetchedAndKept();
    void TheCacheIsUsedForADay();
    void WhatIsNotKept_data();
    void WhatIsNotKept();
    void AMissingFolderIsTold();
    void AFullDiskIsTold();
    void OnlyOwnImagesAreFetched();
    void LinksOpenOutside_data();
    void LinksOpenOutside();
    void HostilePages_data();
    void HostilePages();
    void EscapeCancelsARun();
    void TheWindowMayCloseDuringTheQuestion();
    void EnterEndsAFinishedRun();
    void PlaceIsKept();
    void PlaceIsForgottenWhenNotWanted();
};

void tst_frmLoadDlg::OpensForARun()
{
    CDialogFixture fixture;
    QVERIFY(!fixture.Dialog.IsLoad());
    fixture.Dialog.ShowDialog(u"受信"_s, nullptr);
    QVERIFY(fixture.Dialog.IsLoad());
    QVERIFY(fixture.Dialog.isVisible());
    QVERIFY(!fixture.Dialog.isModal());
    QCOMPARE(fixture.Dialog.windowTitle(), u"受信中... - Tavora Ver.0.50"_s);
    QCOMPARE(fixture.Tabs()->tabText(0), u"受信ログ"_s);
    QCOMPARE(fixture.Tabs()->tabBar()->tabData(0).toString(), u"LOG"_s);
    QCOMPARE(fixture.Button()->text(), u"キャンセル"_s);
    QVERIFY(fixture.Dialog.ButtonEnabled());
    fixture.Dialog.SetButtonEnabled(false);
    QVERIFY(!fixture.Button()->isEnabled());
}

void tst_frmLoadDlg::InfoLines_data()
{
    mdlTable::AddRows<QString, int, QString, bool, QString, QString>(
        "load-dialog.json", "InfoLines", {"before", "line", "message", "addLog", "after", "log"});
}

void tst_frmLoadDlg::InfoLines()
{
    QFETCH(QString, before);
    QFETCH(int, line);
    QFETCH(QString, message);
    QFETCH(bool, addLog);
    CDialogFixture fixture;
    fixture.Dialog.SetInfomation(before);
    fixture.Dialog.UpdateInfo(message, qint16(line), addLog);
    QTEST(fixture.Dialog.Infomation(), "after");
    QTEST(fixture.Log(), "log");
    QCOMPARE(fixture.Find<QLabel>(u"lblInfo"_s)->text(), QString(fixture.Dialog.Infomation()).remove(u'\r'));
}

void tst_frmLoadDlg::LongLinesAreShortened()
{
    CDialogFixture fixture;
    fixture.Dialog.ShowDialog(u"受信"_s, nullptr);
    const int width = fixture.Dialog.width();
    fixture.Dialog.UpdateInfo(u"短い"_s, 1, false);
    fixture.Dialog.UpdateInfo(u"http://example.com/"_s + QString(5000, u'x'), 2, false);
    QCoreApplication::processEvents();
    auto* label = fixture.Find<CInfoLabel>(u"lblInfo"_s);
    QCOMPARE(label->ShownLine(1), u"短い"_s);
    QVERIFY(label->ShownLine(2).contains(u'…'));
    QVERIFY(label->fontMetrics().horizontalAdvance(label->ShownLine(2)) <= label->width());
    QCOMPARE(fixture.Dialog.width(), width);
}

void tst_frmLoadDlg::EachBoardHasATab()
{
    CDialogFixture fixture;
    fixture.Run(u"UPDATE BBS SET ShortName = 'A&B', BBS_Name = 'A&B掲示板' WHERE BBS_ID = 3"_s);
    fixture.Open(3, true);
    fixture.Dialog.UpdateInfo(u"古い要約"_s, frmLoadDlg::SummaryLine, false);
    fixture.Dialog.InitNewBBS(fixture.Property(14), false);
    QTabWidget* tabs = fixture.Tabs();
    QCOMPARE(tabs->count(), 3);
    QCOMPARE(tabs->tabText(1), u"A&&B"_s);
    QCOMPARE(tabs->tabToolTip(1), u"A&B掲示板"_s);
    QCOMPARE(tabs->tabBar()->tabData(2).toString(), u"#014"_s);
    QCOMPARE(tabs->currentWidget(), fixture.Page(14));
    QCOMPARE(fixture.Line(1), u"やなぎ掲示板（右）から受信中..."_s);
    QCOMPARE(fixture.Line(3), QString());
    QCOMPARE(fixture.Log(), u"A&B掲示板から受信中...\nやなぎ掲示板（右）から受信中...\n"_s);
    QVERIFY(!fixture.Dialog.IsNextBBS());
    QVERIFY(fixture.Button()->hasFocus() || !fixture.Dialog.isActiveWindow());
}

void tst_frmLoadDlg::ANewRunBeginsEmpty()
{
    CDialogFixture fixture;
    fixture.Open();
    fixture.Dialog.SetButtonMode(frmLoadDlg::OkMode);
    fixture.Dialog.close();
    fixture.Dialog.ShowDialog(u"インポート"_s, nullptr);
    QCOMPARE(fixture.Tabs()->count(), 1);
    QCOMPARE(fixture.Tabs()->tabText(0), u"インポートログ"_s);
    QCOMPARE(fixture.Log(), QString());
    QCOMPARE(fixture.Dialog.Infomation(), QString());
}

void tst_frmLoadDlg::ThePageIsFetchedAndKept()
{
    CDialogFixture fixture;
    fixture.Property().SetPostName(u"そら"_s);
    fixture.Serve(u"<html><body>表ソ①の掲示板<script>alert(1)</script></body></html>"_s);
    fixture.Open();
    QTRY_COMPARE(fixture.Line(4), u"けやき掲示板をキャッシュに保存しました。"_s);
    QCOMPARE(fixture.Page()->toPlainText().trimmed(), u"表ソ①の掲示板"_s);
    QCOMPARE(fixture.Cached(), text::To932(u"<html><body>表ソ①の掲示板<script>alert(1)</script></body></html>"));
    QCOMPARE(fixture.Server.Requests(), QByteArrayList{"GET /keyaki.cgi"});
    QVERIFY(fixture.Server.RequestHeader(0, "Cookie").contains(text::To932(u"そら")));
    QVERIFY(fixture.Log().contains(u"けやき掲示板をキャッシュに保存しました。\n"_s));
}

void tst_frmLoadDlg::TheCacheIsUsedForADay()
{
    for (const int age : {23, 25, -5}) { // hours; a file from the future is as good as one of now
        const bool isUsed = age < 24;
        CDialogFixture fixture;
        fixture.WriteCache(text::To932(u"<p>古い表</p>"), age);
        fixture.Serve(u"<p>新しい表</p>"_s);
        fixture.Open();
        QTRY_COMPARE(fixture.Page()->toPlainText(), isUsed ? u"古い表"_s : u"新しい表"_s);
        QCOMPARE(fixture.Server.Requests().size(), isUsed ? 0 : 1);
        QCOMPARE(fixture.Cached(), text::To932(isUsed ? u"<p>古い表</p>" : u"<p>新しい表</p>"));
        QCOMPARE(fixture.Line(4).isEmpty(), isUsed);
    }
}

void tst_frmLoadDlg::WhatIsNotKept_data()
{
    QTest::addColumn<int>("board");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<bool>("redirect");
    QTest::newRow("one side of two") << 13 << QByteArray("200 OK") << false;
    QTest::newRow("not found") << 3 << QByteArray("404 Not Found") << false;
    QTest::newRow("from elsewhere") << 3 << QByteArray("200 OK") << true;
}

void tst_frmLoadDlg::WhatIsNotKept()
{
    QFETCH(int, board);
    QFETCH(QByteArray, status);
    QFETCH(bool, redirect);
    CDialogFixture fixture;
    fixture.SetBoardUrl(QUrl(fixture.Url), 13);
    if (redirect)
        fixture.Server.Add(CLoopServer::Redirect("/other.html"));
    fixture.Serve(u"<p>page</p>"_s, status);
    fixture.Open(board);
    QTRY_COMPARE(fixture.Page(board)->toPlainText(), u"page"_s);
    QVERIFY(!QFile::exists(fixture.CacheFile));
    QVERIFY(!QFile::exists(fixture.Folder.filePath(u"lyanagi.html"_s)));
    QCOMPARE(fixture.Line(4), QString());
}

void tst_frmLoadDlg::AMissingFolderIsTold()
{
    CDialogFixture fixture;
    fixture.App.Option().CacheFilePath = fixture.Folder.filePath(u"nowhere/"_s);
    fixture.Serve(u"<p>page</p>"_s);
    fixture.Open();
    QTRY_COMPARE(fixture.Line(4), u"けやき掲示板をキャッシュに保存できませんでした。"_s);
    QVERIFY(fixture.Log().endsWith(u"けやき掲示板をキャッシュに保存できませんでした。\n"_s));
}

void tst_frmLoadDlg::AFullDiskIsTold()
{
    CDialogFixture fixture;
    fixture.Serve(u"<p>page</p>"_s);
    const CFileSizeLimit fullDisk(4);
    fixture.Open();
    QTRY_COMPARE(fixture.Line(4), u"けやき掲示板をキャッシュに保存できませんでした。"_s);
    QVERIFY(!QFile::exists(fixture.CacheFile));
}

void tst_frmLoadDlg::OnlyOwnImagesAreFetched()
{
    CDialogFixture fixture;
    const QString secret = fixture.Folder.filePath(u"secret.png"_s);
    mdlFiles::Write(secret, Png());
    const quint16 port = fixture.Server.Port();
    fixture.Serve(
        u"<html><head><link rel=stylesheet href=/s.css><base href='http://localhost:%1/'></head><body>"
        "<img src='/own.png'><img src='/away.png'><img src='http://localhost:%1/host.png'>"
        "<img src='file://%2'><img src='%2'><img src=':/qt-project.org/x.png'><iframe src='/f.html'></iframe><img src='/last.png'></body></html>"_s
            .arg(port)
            .arg(secret));
    fixture.Server.Add(CLoopServer::Page(Png(), "200 OK", "Content-Type: image/png\r\n"));
    fixture.Server.Add(CLoopServer::Redirect("http://localhost:" + QByteArray::number(port) + "/stolen.png"));
    fixture.Open();
    QTRY_VERIFY(fixture.Server.Requests().contains("GET /last.png"));
    QByteArrayList requests = fixture.Server.Requests();
    requests.removeAll("GET " + secret.toUtf8()); // "/tmp/…" is a path on the board's host as well
    QCOMPARE(requests, QByteArrayList({"GET /keyaki.cgi", "GET /own.png", "GET /away.png", "GET /last.png"}));
    const auto shown = [&](const QString& Name) {
        return fixture.Page()->document()->resource(QTextDocument::ImageResource, QUrl(Name)).value<QImage>().size();
    };
    QCOMPARE(shown(fixture.Server.Url(u"/own.png"_s).toString()), QSize(30, 20));
    QCOMPARE(shown(u"file://"_s + secret), QSize(1, 1));
}

void tst_frmLoadDlg::LinksOpenOutside_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("query") << u"?dousa=sinki"_s << u"/keyaki.cgi?dousa=sinki"_s;
    QTest::newRow("other host") << u"http://example.com/a?b=c"_s << u"http://example.com/a?b=c"_s;
    QTest::newRow("file") << u"file:///etc/passwd"_s << u"file:///etc/passwd"_s; // the desktop refuses it
    QTest::newRow("place in the page") << u"#here"_s << QString();
}

void tst_frmLoadDlg::LinksOpenOutside()
{
    QFETCH(QString, link);
    QFETCH(QString, wanted);
    CDialogFixture fixture;
    fixture.Serve(u"<a name=here></a><p>page"_s);
    fixture.Open();
    QTRY_COMPARE(fixture.Page()->toPlainText(), u"page"_s);
    Q_EMIT fixture.Page()->anchorClicked(QUrl(link));
    const QStringList opened = wanted.isEmpty() ? QStringList()
                                                : QStringList{wanted.startsWith(u'/') ? fixture.Server.Url(wanted).toString() : wanted};
    QCOMPARE(fixture.Desk.Opened, opened);
    QCOMPARE(fixture.Page()->toPlainText(), u"page"_s);
}

void tst_frmLoadDlg::HostilePages_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("shown");
    QTest::newRow("nested tables") << u"<table><tr><td>"_s.repeated(30) << u"ページの構造が複雑すぎます。"_s;
    QTest::newRow("nested lists") << u"<ul>"_s.repeated(5000) << u"ページの構造が複雑すぎます。"_s;
    QTest::newRow("too large") << QString(200'000, u'表') << u"ページが大きすぎます。"_s;
    QTest::newRow("a word without an end") << QString(100'000, u'x') << u"ページの構造が複雑すぎます。"_s;
    QTest::newRow("much text without a blank") << QString(100'000, u'表') << QString(100'000, u'表');
    QTest::newRow("elements left open") << u"<p>a<br><li>"_s.repeated(3000) << u"ページの構造が複雑すぎます。"_s;
    QTest::newRow("many tables side by side") << u"<table><tr><td>a</td></tr></table>"_s.repeated(200) << u"a"_s;
    QTest::newRow("many open paragraphs") << u"<p>a<br>"_s.repeated(1500) << u"a"_s;
}

void tst_frmLoadDlg::HostilePages()
{
    QFETCH(QString, html);
    QFETCH(QString, shown);
    CDialogFixture fixture;
    fixture.Serve(html);
    fixture.Open();
    QTRY_VERIFY(fixture.Page()->toPlainText().contains(shown));
}

void tst_frmLoadDlg::EscapeCancelsARun()
{
    CDialogFixture fixture;
    fixture.Open();
    QTest::keyClick(&fixture.Dialog, Qt::Key_Escape);
    QVERIFY(fixture.Board.IsCancel());
    QVERIFY(!fixture.Dialog.IsLoad());
    QVERIFY(!fixture.Dialog.isVisible());
}

/// The desktop's session ends while the user is still thinking about the question.
void tst_frmLoadDlg::TheWindowMayCloseDuringTheQuestion()
{
    struct CImpatientDesktop : CScriptedDesktop
    {
        frmLoadDlg* Dialog = nullptr;
        Answer MessageBox(const QString&, const QString&, Icon, Buttons, Answer) override
        {
            Dialog->SetIsNextBBS(false);
            Dialog->close();
            return Answer::Yes;
        }
    };
    CImpatientDesktop desktop;
    const QTemporaryDir folder;
    Application app(desktop, folder.path(), u"Tavora"_s);
    CBBS board(app);
    frmLoadDlg dialog(app, board);
    desktop.Dialog = &dialog;
    dialog.ShowDialog(u"受信"_s, nullptr);
    dialog.SetIsNextBBS(true);
    dialog.close();
    QVERIFY(!dialog.IsLoad());
    QVERIFY(!dialog.IsNextBBS());
}

void tst_frmLoadDlg::EnterEndsAFinishedRun()
{
    CDialogFixture fixture;
    fixture.Open();
    fixture.Dialog.SetButtonMode(frmLoadDlg::OkMode);
    QCOMPARE(fixture.Button()->text(), u"OK"_s);
    QVERIFY(fixture.Button()->isDefault());
    QTest::keyClick(&fixture.Dialog, Qt::Key_Return);
    QVERIFY(!fixture.Dialog.IsLoad());
    QVERIFY(!fixture.Board.IsCancel());
}

void tst_frmLoadDlg::PlaceIsKept()
{
    CDialogFixture fixture;
    fixture.App.SettingsIni().Load(fixture.App.IniFileName()); // where it is going to be saved
    fixture.SetPlace(u"Left"_s, u"750"_s);
    fixture.SetPlace(u"Top"_s, u"900"_s);
    fixture.SetPlace(u"Width"_s, u"7500"_s);
    fixture.SetPlace(u"Height"_s, u"6000"_s);
    fixture.Dialog.ShowDialog(u"受信"_s, nullptr);
    QCOMPARE(fixture.Dialog.geometry(), QRect(50, 60, 500, 400));
    fixture.Dialog.setGeometry(70, 80, 520, 420);
    fixture.Dialog.close();
    CIniFile saved;
    saved.Load(fixture.App.IniFileName());
    saved.SetNowSection(u"LoadDialogPosition"_s);
    QCOMPARE(saved.Data(u"Left"_s).toInt(), 70 * TwipsPerPixel);
    QCOMPARE(saved.Data(u"Top"_s).toInt(), 80 * TwipsPerPixel);
    QCOMPARE(saved.Data(u"Width"_s).toInt(), 520 * TwipsPerPixel);
    QCOMPARE(saved.Data(u"Height"_s).toInt(), 420 * TwipsPerPixel);
}

void tst_frmLoadDlg::PlaceIsForgottenWhenNotWanted()
{
    CDialogFixture fixture;
    fixture.SetPlace(u"Left"_s, u"750"_s);
    fixture.App.Option().SaveLoadDialogPosition = false;
    QWidget owner;
    owner.setGeometry(100, 50, 600, 500);
    fixture.Dialog.ShowDialog(u"受信"_s, &owner);
    QVERIFY((fixture.Dialog.geometry().center() - owner.geometry().center()).manhattanLength() <= 2);
    fixture.Dialog.SetButtonMode(frmLoadDlg::OkMode);
    fixture.Dialog.close();
    QCOMPARE(fixture.Place(u"Left"_s), QString());
    QVERIFY(!QFile::exists(fixture.App.IniFileName()));
}

QTEST_MAIN(tst_frmLoadDlg)
#include "tst_frmLoadDlg.moc"
