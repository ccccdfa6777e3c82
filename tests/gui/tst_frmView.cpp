// tests/gui/tst_frmView.cpp
// The main window, driven by keys and the mouse, over a real database and a real board server.

#include "boardd/CBoardServer.h"
#include "controls/uSeparator.h"
#include "load/frmLoadDlg.h"
#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/CToolbar.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QMenuBar>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

// "name name | name": the visible entries of a menu with a bar for each separator.
QString Shape(const QMenu& Menu)
{
    QStringList parts;
    for (const QAction* action : Menu.actions()) {
        if (action->isVisible())
            parts.append(action->isSeparator() ? u"|"_s : action->objectName());
    }
    return parts.join(u' ');
}

QString KeyAddress(const CBoardServer& Server) { return Server.Url(u"/cgi-bin/keyaki.cgi"_s).toString(); }

void Press(QWidget* Target, Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    QTest::keyClick(Target, Key, Modifiers);
}

} // namespace

class tst_frmView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What the platform plugin without a screen cannot do is not our fault.
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void NewDatabase();
    void ReceiveAndRead();
    void BrokenRecordsAreKept();
    void FullErrorLogIsToldOnce();
    void ReopenedWindowIsTheSame();
    void MinimisedWindowComesBackOpen();
    void EscGoesBackThenMinimises();
    void FindHistoryIsKept();
    void KeysMoveAndMarkRead();
    void ComposingKeepsItsKeys();
    void SelectionReachesTheListAndComesBack();
    void MarkMenu();
    void UnreadPositionEditor();
    void RawTableHidesTheMessageMenu();
    void CloseDuringARun();
    void QuitClosesABoxFirst();
    void NoBoardsEndsTheProgram();
    void LayoutFits();
    void LayoutFitsAtTwiceTheSize();
    void LongBodyIsShownAtOnce();
};

void tst_frmView::NewDatabase()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    QCOMPARE(f.Window->windowTitle(), f.Viewer().BoardProperty().Name + u" - Tavora Ver.0.50"_s);
    QCOMPARE(Shape(*f.Find<QMenu>(u"ToolbarBBSListMenu"_s)),
             u"#003 #016 #004 #017 #005 #006 #007 | #008 #013 #014 #018 #009 #010 #011 #012 | #015"_s);
    QCOMPARE(
        Shape(*f.Find<QMenu>(u"mnuBBSMove"_s)),
        u"mnuBBSMoveSub1 mnuBBSMoveSub2 mnuBBSMoveSub3 mnuBBSMoveSub4 mnuBBSMoveSub5 mnuBBSMoveSub6 mnuBBSMoveSub7 | "
        "mnuBBSMoveSub9 mnuBBSMoveSub10 mnuBBSMoveSub11 mnuBBSMoveSub12 mnuBBSMoveSub13 mnuBBSMoveSub14 "
        "mnuBBSMoveSub15 mnuBBSMoveSub16 | mnuBBSMoveSub18"_s);
    QVERIFY(f.Action(u"mnuBBSMoveSub9"_s)->text().startsWith(u"&8. "_s));
    QVERIFY(f.Action(u"mnuTrayNewSub18"_s)->text().startsWith(u"&0. "_s));
    QVERIFY(!f.Action(u"mnuBBSViewSub1"_s)->isEnabled());
    QVERIFY(!f.Action(u"mnuBBSReply"_s)->isEnabled());
    QVERIFY(f.Action(u"mnuBBSLoad"_s)->isEnabled());
    QCOMPARE(f.Find<QLabel>(u"StatusBarCount"_s)->text(), u"0/0"_s);
    QVERIFY(f.Find<CListView>(u"lsvMsgList0"_s)->hasFocus());
    QVERIFY(f.Find<CListView>(u"lsvMsgList1"_s)->isHidden());
    for (const QString& name : {u"sep"_s, u"rtbView"_s, u"cmbFindText"_s, u"uspnNoReadPoint"_s, u"uclMailto"_s,
                                u"uclHomepage"_s, u"StatusBarTimer"_s, u"ToolbarBBSList"_s, u"Toolbar"_s})
        QVERIFY2(f.Find<QWidget>(name), qPrintable(name));
    f.Action(u"mnuBBSMoveSub2"_s)->trigger();
    QCOMPARE(f.Viewer().CurrentBoard(), 16);
    QVERIFY(f.Window->windowTitle().startsWith(f.Viewer().BoardProperty().Name));
}

void tst_frmView::ReceiveAndRead()
{
    CBoardServer server({});
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CWindowFixture f(KeyAddress(server));
    QVERIFY(f.Start());
    QStringList duringRun;
    connect(&f.Window->Board(), &CBBS::AddMessage, this, [&] {
        if (duringRun.isEmpty())
            duringRun << f.Window->windowTitle() << QVariant(f.Action(u"mnuBBSLoad"_s)->isEnabled()).toString();
    });
    Press(f.Window.get(), Qt::Key_F5); // returns when the run is over
    auto* dialog = f.Window->findChild<frmLoadDlg*>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->ButtonMode(), qint16(frmLoadDlg::OkMode));
    QCOMPARE(duringRun.value(0).left(6), u"受信中 - "_s);
    QCOMPARE(duringRun.value(1), u"false"_s);
    QVERIFY(!f.Window->windowTitle().contains(u"受信中"_s));
    QVERIFY(f.Action(u"mnuBBSLoad"_s)->isEnabled());
    const int stored = f.Rows(u"SELECT COUNT(*) FROM Message WHERE BBS_ID = 3"_s).toInt();
    QVERIFY(stored > 0);
    QVERIFY(f.List().Count() > 0);
    QVERIFY(f.Find<QLabel>(u"StatusBarStatus"_s)->text().endsWith(u"件受信しました。"_s));
    QVERIFY(f.Action(u"#003"_s)->text().endsWith(u" (%1)"_s.arg(stored)));
    dialog->close();

    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    const QRect cell = list->visualRect(list->model()->index(1, 2));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(f.List().Focus(), 1);
    const CMessage shown = f.List().Item(1).Message;
    QCOMPARE(f.Find<CMessagePane>(u"rtbView"_s)->toPlainText().section(u'\n', 0, 0),
             shown.Body.section(u"\r\n"_s, 0, 0));
    const QString before = f.Rows(u"SELECT ID FROM Message WHERE BBS_ID = 3 ORDER BY ID"_s);
    f.End();
    QCOMPARE(f.ClosedCount, 1);
    QVERIFY(f.Start());
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE BBS_ID = 3 ORDER BY ID"_s), before);
    QCOMPARE(f.List().Count(), qMin(stored, 100));
}

void tst_frmView::BrokenRecordsAreKept()
{
    CBoardServerOptions options;
    options.Fault = FaultKind::BadRecord;
    CBoardServer server(options);
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CWindowFixture f(KeyAddress(server));
    QVERIFY(f.Start());
    Press(f.Window.get(), Qt::Key_F5);
    QFile bad(f.Folder.filePath(u"keyaki.bad"_s));
    QVERIFY(bad.open(QIODevice::ReadOnly));
    QVERIFY(bad.readAll().endsWith("\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n"));
    QVERIFY(f.List().Count() > 0);
}

// The script has one answer: a second box would fail the test.
void tst_frmView::FullErrorLogIsToldOnce()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    f.App->Option().ErrorLogFilePath = f.Folder.filePath(u"no/such/folder/"_s);
    f.Desk.Expect(u"エラーログに書き込めませんでした。"_s);
    Q_EMIT f.Window->Board().LogError(3, u"ソ表"_s, u"エラー"_s);
    Q_EMIT f.Window->Board().LogError(3, u"ソ表"_s, u"エラー"_s);
    QVERIFY(f.Desk.Verify());
    QVERIFY(f.Desk.Boxes[0].Text.startsWith(u"Error("_s));
    f.App->Option().ErrorLogFilePath = f.App->AppPath();
    Q_EMIT f.Window->Board().LogError(3, u"ソ表"_s, u"エラー"_s);
    QFile bad(f.Folder.filePath(u"keyaki.bad"_s));
    QVERIFY(bad.open(QIODevice::ReadOnly));
    QCOMPARE(bad.readAll(), QByteArray("\x83\x5c\x95\x5c\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n"));
}

void tst_frmView::ReopenedWindowIsTheSame()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    const QRect place(40, 30, 620, 470);
    f.Window->setGeometry(place);
    auto* pane = f.Find<QWidget>(u"rtbView"_s);
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    list->header()->resizeSection(2, 233);
    f.Find<uSeparator>(u"sep"_s)->SetOffset(150 * 15);
    QTRY_COMPARE(list->height(), 150);
    const QRect paneBefore = pane->geometry();
    f.End();
    f.Window.reset();
    QVERIFY(f.Start());
    QCOMPARE(f.Window->geometry(), place);
    QTRY_COMPARE(f.Find<QWidget>(u"rtbView"_s)->geometry(), paneBefore);
    QCOMPARE(f.Find<CListView>(u"lsvMsgList0"_s)->header()->sectionSize(2), 233);
    CIniFile& ini = f.App->SettingsIni();
    ini.SetNowSection(u"Position"_s);
    QCOMPARE(ini.Data(u"Left"_s) + u' ' + ini.Data(u"Width"_s) + u' ' + ini.Data(u"ListItem3"_s), u"600 9300 3495"_s);
}

void tst_frmView::MinimisedWindowComesBackOpen()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    const QRect place(50, 60, 600, 450);
    f.Window->setGeometry(place);
    f.Window->showMinimized();
    f.End();
    QVERIFY(f.Start());
    QVERIFY(!f.Window->isMinimized());
    QCOMPARE(f.Window->geometry(), place);
}

void tst_frmView::EscGoesBackThenMinimises()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    f.Viewer().LoadList(u"SELECT * FROM Message"_s, CViewer::ResultList);
    QVERIFY(f.Find<CListView>(u"lsvMsgList1"_s)->isVisible());
    QVERIFY(f.Window->windowTitle().startsWith(u"検索結果 - "_s));
    f.Find<QComboBox>(u"cmbFindText"_s)->setFocus();
    Press(f.Find<QComboBox>(u"cmbFindText"_s), Qt::Key_Escape);
    QCOMPARE(f.Viewer().CurrentList(), 0);
    QVERIFY(!f.Window->isMinimized());
    auto* editor = f.Find<QWidget>(u"uspnNoReadPoint"_s);
    f.Viewer().ShowList(CViewer::ResultList);
    f.Action(u"mnuBBSSetNoRead"_s)->trigger();
    Press(editor, Qt::Key_Escape);
    QCOMPARE(f.Viewer().CurrentList(), 0);
    QVERIFY(editor->isHidden());
    f.Action(u"mnuBBSSetNoRead"_s)->trigger();
    QVERIFY(editor->isVisible());
    Press(editor, Qt::Key_Escape);
    QVERIFY(editor->isHidden());
    QVERIFY(!f.Window->isMinimized());
    Press(f.Find<CListView>(u"lsvMsgList0"_s), Qt::Key_Escape);
    QVERIFY(f.Window->isMinimized());
}

void tst_frmView::FindHistoryIsKept()
{
    CWindowFixture f;
    QFile ini(f.Folder.filePath(u"Tavora.ini"_s));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[FindText]\r\n1=second word\r\n2=first word\r\n");
    ini.close();
    QVERIFY(f.Start());
    auto* box = f.Find<QComboBox>(u"cmbFindText"_s);
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), u"second word"_s);
    QCOMPARE(box->currentText(), QString());
    f.End();
    QVERIFY(ini.open(QIODevice::ReadOnly));
    QVERIFY(ini.readAll().contains("[FindText]\r\n1=second word\r\n2=first word\r\n"));
}

void tst_frmView::KeysMoveAndMarkRead()
{
    CWindowFixture f;
    f.Add(1, 4); // shown as 4 3 2 1
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 4);
    Press(list, Qt::Key_J);
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 3);
    Press(list, Qt::Key_K);
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 4);
    Press(list, Qt::Key_Space); // short text: on to the next unread, 4 is read at once
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 3);
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Read = True"_s), u"4"_s);
    QCOMPARE(f.Find<QLabel>(u"StatusBarCount"_s)->text(), u"3/4"_s);
    QVERIFY(f.Action(u"#003"_s)->text().endsWith(u" (3)"_s));
    Press(list, Qt::Key_Backspace); // 3 answers 2
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 2);
    Press(list, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(f.List().Item(f.List().Focus()).Message.ID, 3);
    Press(list, Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Read = False ORDER BY ID"_s), u"1 2 3"_s);
    Press(list, Qt::Key_Down);
    QCOMPARE(f.Find<CMessagePane>(u"rtbView"_s)->toPlainText(), u"本文2\n"_s);
}

// Keys that an input method still works on are not commands.
void tst_frmView::ComposingKeepsItsKeys()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    const int focus = f.List().Focus();
    QInputMethodEvent composing(u"か"_s, {});
    QCoreApplication::sendEvent(list, &composing);
    Press(list, Qt::Key_Space);
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Read = True"_s), QString());
    QCOMPARE(f.List().Focus(), focus);
    QInputMethodEvent done;
    QCoreApplication::sendEvent(list, &done);
    Press(list, Qt::Key_Space);
    QCOMPARE(f.List().Focus(), focus + 1);
}

void tst_frmView::SelectionReachesTheListAndComesBack()
{
    CWindowFixture f;
    f.Add(1, 60);
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    Press(list, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(f.List().SelectedCount(), 60);
    QVERIFY(list->selectionModel()->isSelected(list->model()->index(0, 3)));
    f.Action(u"mnuMsgReverseSelect"_s)->trigger();
    QCOMPARE(f.List().SelectedCount(), 0);
    Press(list, Qt::Key_Home);
    Press(list, Qt::Key_End, Qt::ShiftModifier);
    QCOMPARE(f.List().SelectedCount(), 60);
    Press(list, Qt::Key_Up, Qt::ShiftModifier); // the last row leaves the selection that Shift spans
    QCOMPARE(f.List().SelectedCount(), 59);
    list->scrollToTop();
    const auto click = [list](int Row, Qt::KeyboardModifiers Modifiers) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Modifiers,
                          list->visualRect(list->model()->index(Row, 2)).center());
    };
    click(1, Qt::NoModifier);
    click(3, Qt::ControlModifier);
    QCOMPARE(f.List().SelectedRows(), (std::vector<int>{1, 3}));
    QVERIFY(f.Action(u"mnuMsgRead"_s)->isEnabled());
    f.Viewer().ColumnClicked(0, 1); // ascending by number: rows 1 and 3 are 59 and 57 from the top no more
    QCOMPARE(f.List().SelectedRows(), (std::vector<int>{56, 58}));
    list->scrollToBottom();
    QVERIFY(list->selectionModel()->isSelected(list->model()->index(58, 0)));
    QVERIFY(!list->selectionModel()->isSelected(list->model()->index(57, 0)));
}

void tst_frmView::MarkMenu()
{
    CWindowFixture f;
    f.Add(1, 2);
    QVERIFY(f.Start());
    auto* list = f.Find<CListView>(u"lsvMsgList0"_s);
    Press(list, Qt::Key_M);
    auto* menu = f.Find<QMenu>(u"mnuMsgMark"_s);
    QVERIFY(menu->isVisible());
    QCOMPARE(Shape(*menu), u"mnuMsgMarkSub1 mnuMsgMarkSub2 mnuMsgMarkSub3 mnuMsgMarkSub4 | mnuMsgMarkRelease"_s);
    menu->close();
    f.Action(u"mnuMsgMarkSub3"_s)->trigger();
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Mark = 3"_s), u"2"_s);
    Press(list, Qt::Key_M);
    QVERIFY(f.Action(u"mnuMsgMarkSub3"_s)->isChecked());
    QVERIFY(!f.Action(u"mnuMsgMarkSub1"_s)->isChecked());
    menu->close();
    f.Action(u"mnuMsgMarkRelease"_s)->trigger();
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Mark = 0 ORDER BY ID"_s), u"1 2"_s);
}

void tst_frmView::UnreadPositionEditor()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    auto* panel = f.Find<QWidget>(u"StatusBarNoReadPoint"_s);
    QTest::mouseClick(panel, Qt::LeftButton);
    auto* editor = f.Find<QWidget>(u"uspnNoReadPoint"_s);
    QTRY_VERIFY(editor->hasFocus());
    QCOMPARE(editor->geometry(), panel->geometry());
    QTest::keyClicks(editor, u"1234"_s);
    Press(editor, Qt::Key_Return);
    QVERIFY(editor->isHidden());
    QCOMPARE(f.Viewer().BoardProperty().NoReadPoint(), 1234);
    QCOMPARE(f.Find<QLabel>(u"StatusBarNoReadPoint"_s)->text(), u"未読位置:1234"_s);
    QVERIFY(f.Find<CListView>(u"lsvMsgList0"_s)->hasFocus());
}

void tst_frmView::RawTableHidesTheMessageMenu()
{
    CWindowFixture f;
    f.Add(1, 2);
    QVERIFY(f.Start());
    f.Viewer().LoadList(u"SELECT BBS_Name, MaxCount FROM BBS"_s, CViewer::ResultList);
    QVERIFY(!f.Action(u"mnuMsg"_s)->isVisible());
    auto* list = f.Find<CListView>(u"lsvMsgList1"_s);
    QCOMPARE(list->header()->sectionSize(1), 100); // 1500 twips
    list->header()->resizeSection(1, 140);
    f.Viewer().ColumnClicked(1, 1);
    QCOMPARE(list->header()->sectionSize(1), 140);
    Press(list, Qt::Key_M);
    QVERIFY(!QApplication::activePopupWidget());
    f.Viewer().LoadList(u"SELECT * FROM Message"_s, CViewer::ResultList);
    QVERIFY(f.Action(u"mnuMsg"_s)->isVisible());
    QCOMPARE(list->header()->sectionSize(2), f.Find<CListView>(u"lsvMsgList0"_s)->header()->sectionSize(2));
}

void tst_frmView::CloseDuringARun()
{
    CBoardServerOptions options;
    options.Messages = 500;
    options.DelayMs = 100;
    CBoardServer server(options);
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CWindowFixture f(KeyAddress(server));
    QVERIFY(f.Start());
    bool closed = false;
    connect(&f.Window->Board(), &CBBS::AddMessage, this, [&] {
        if (!std::exchange(closed, true)) {
            f.Window->close();
            QVERIFY(f.Window->isHidden());
            QCOMPARE(f.ClosedCount, 0); // the driver is still on the stack
        }
    });
    Press(f.Window.get(), Qt::Key_F5);
    QTRY_COMPARE(f.ClosedCount, 1);
    QVERIFY(!f.App->LogDB());
    f.End();
    QCOMPARE(f.ClosedCount, 1);
    QVERIFY(f.Start());
    const int stored = f.Rows(u"SELECT COUNT(*) FROM Message"_s).toInt();
    QVERIFY(stored < 500);
    QVERIFY(f.Viewer().BoardProperty().NoReadPoint() <= f.Rows(u"SELECT MAX(ID) FROM Message"_s).toInt());
}

void tst_frmView::QuitClosesABoxFirst()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    QTimer::singleShot(0, f.Window.get(), [&f] {
        QVERIFY(QApplication::activeModalWidget());
        f.Window->Quit();
        QCOMPARE(f.ClosedCount, 0); // the version window is still on the stack
    });
    f.Action(u"mnuHelpVerinfo"_s)->trigger();
    QTRY_COMPARE(f.ClosedCount, 1);
    QVERIFY(!f.App->LogDB());
}

void tst_frmView::NoBoardsEndsTheProgram()
{
    CWindowFixture f;
    auto db = dao::Database::Open(f.Folder.filePath(u"log.mdb"_s));
    db->Execute(u"UPDATE BBS SET ListOrder = -1"_s);
    db.reset();
    f.Desk.Expect(u"全部-1だと表示されないぞ。"_s);
    QVERIFY(!f.Start());
    QVERIFY(f.Window->isHidden());
    QVERIFY(!f.App->LogDB());
    QVERIFY(f.Desk.Verify());
    QCOMPARE(f.Desk.Boxes.back().Icon, Desktop::Icon::Critical);
}

void tst_frmView::LayoutFits()
{
    CWindowFixture f;
    f.Add(1, 1);
    QVERIFY(f.Start());
    for (const QSize size : {QSize(900, 640), QSize(360, 300)}) {
        f.Window->resize(size);
        auto* separator = f.Find<QWidget>(u"sep"_s);
        QTRY_COMPARE(separator->size(), f.Window->centralWidget()->size());
        auto* list = f.Find<QWidget>(u"lsvMsgList0"_s);
        auto* pane = f.Find<QWidget>(u"rtbView"_s);
        QTRY_COMPARE(list->width(), separator->width());
        QCOMPARE(pane->geometry().bottom(), separator->height() - 1);
        QVERIFY(!list->geometry().intersects(pane->geometry()));
        const QRect mail = f.Find<QWidget>(u"uclMailto"_s)->geometry();
        const QRect homePage = f.Find<QWidget>(u"uclHomepage"_s)->geometry();
        QVERIFY(mail.isEmpty() || f.Find<QWidget>(u"StatusBarMail"_s)->geometry().contains(mail));
        QVERIFY(homePage.isEmpty() || f.Find<QWidget>(u"StatusBarHomePage"_s)->geometry().contains(homePage));
        QVERIFY(f.Find<QWidget>(u"StatusBarTimer"_s)->geometry().right() < f.Window->width());
        QCOMPARE(f.Window->width(), size.width()); // nothing in it keeps the window from getting narrow
    }
    auto* button = f.Find<QToolButton>(u"ToolbarBBSList"_s);
    const QPixmap picture = button->icon().pixmap(QSize(20, 20), f.Window->devicePixelRatio());
    QCOMPARE(picture.width(), int(20 * f.Window->devicePixelRatio()));
}

void tst_frmView::LayoutFitsAtTwiceTheSize()
{
    QProcess twice;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_SCALE_FACTOR"_s, u"2"_s);
    twice.setProcessEnvironment(environment);
    twice.setProcessChannelMode(QProcess::MergedChannels);
    twice.start(QCoreApplication::applicationFilePath(), {u"LayoutFits"_s});
    QVERIFY(twice.waitForFinished(60000));
    QVERIFY2(twice.exitCode() == 0, twice.readAll().constData());
}

// A line of a megabyte without a break, as a broken log brings it.
void tst_frmView::LongBodyIsShownAtOnce()
{
    CMessagePane pane;
    pane.resize(400, 300);
    const QString line = QString(1000000, u'あ');
    pane.ShowLines({{line, ViewerHost::LineKind::Quote}, {u"a\nb"_s, ViewerHost::LineKind::Plain}});
    pane.show();
    pane.selectAll();
    QCOMPARE(pane.SelectedText(), line + u"\r\na\r\nb\r\n"_s);
    QVERIFY(pane.Page(true));
    QVERIFY(pane.Page(false));
    QVERIFY(!pane.Page(false));
}

QTEST_MAIN(tst_frmView)
#include "tst_frmView.moc"
