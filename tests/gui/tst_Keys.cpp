// tests/gui/tst_Keys.cpp
// Every key of the main window, pressed where the focus may be: which of them act there, and what they do.

#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr Qt::KeyboardModifiers Plain = Qt::NoModifier;
const QString Keyaki = u"http://localhost:8932/cgi-bin/keyaki.cgi"_s;

/// Messages 1 to 5, of which 4 has the focus and 5 is read.
struct CKeyFixture : CWindowFixture
{
    CKeyFixture() { Add(1, 5); }

    bool Start()
    {
        if (!CWindowFixture::Start())
            return false;
        App->Option().ReadTiming = 0;
        QTest::keyClick(Find<QWidget>(u"lsvMsgList0"_s), Qt::Key_Down);
        return true;
    }

    QWidget* Focus(const QString& Name)
    {
        if (Name == u"uspnNoReadPoint")
            Action(u"mnuBBSSetNoRead"_s)->trigger();
        QWidget* target = Find<QWidget>(Name);
        target->setFocus();
        return QApplication::focusWidget();
    }

    /// What is to be seen: focused message, open menu, what was opened or copied; only what differs from the start.
    QString Effect() const
    {
        QStringList effect;
        if (const int id = List().Item(List().Focus()).Message.ID; id != 4)
            effect << QString::number(id);
        if (const QWidget* popup = QApplication::activePopupWidget())
            effect << popup->objectName();
        if (!Desk.Opened.isEmpty())
            effect << Desk.Opened.join(u' ').remove(Keyaki);
        if (!Find<QComboBox>(u"cmbFindText"_s)->currentText().isEmpty())
            effect << u"typed"_s;
        if (Window->isMinimized())
            effect << u"minimised"_s;
        if (List().SortColumn() < 0)
            effect << u"threads"_s;
        return effect.join(u' ');
    }
};

void CloseMenus()
{
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
}

void OpenMenuByKey(QWidget* Target)
{
    QTest::keyClick(Target, Qt::Key_F10, Qt::ShiftModifier);
    QCoreApplication::sendPostedEvents(Target, QEvent::ContextMenu);
}

} // namespace

class tst_Keys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void cleanup() { CloseMenus(); }
    void Everywhere_data();
    void Everywhere();
    void HeldKeys_data();
    void HeldKeys();
    void RawTable();
    void MenuBarKeepsItsKeys();
    void PreviousUnreadEmptiesTheSelection();
    void CopyKey();
    void TextMenu();
    void ListMenu();
};

void tst_Keys::Everywhere_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("with");
    QTest::addColumn<QStringList>("wanted"); // the effect with the focus in list, pane, find box, position editor
    const auto row = [](const char* Name, int Key, Qt::KeyboardModifiers With, const QStringList& Effects) {
        QTest::newRow(Name) << Key << int(With) << Effects;
    };
    const auto command = [&row](const char* Name, int Key, Qt::KeyboardModifiers With, const QString& Effect,
                                const QString& FindBox = {}) {
        row(Name, Key, With, {Effect, Effect, FindBox, QString()});
    };
    const auto shortcut = [&row](const char* Name, int Key, Qt::KeyboardModifiers With, const QString& Effect) {
        row(Name, Key, With, {Effect, Effect, Effect, Effect});
    };
    command("J", Qt::Key_J, Plain, u"3"_s, u"typed"_s);
    command("K", Qt::Key_K, Plain, u"5"_s, u"typed"_s);
    command("Space", Qt::Key_Space, Plain, u"3"_s, u"typed"_s);
    command("Backspace", Qt::Key_Backspace, Plain, u"3"_s);
    command("M", Qt::Key_M, Plain, u"mnuMsgMark"_s, u"typed"_s);
    command("Ctrl+M", Qt::Key_M, Qt::ControlModifier, u"mnuMsgMark"_s);
    command("F4", Qt::Key_F4, Plain, u"mnuBBSMove"_s);
    command("Ctrl+L", Qt::Key_L, Qt::ControlModifier, u"mnuBBSMove"_s);
    command("Alt+Left", Qt::Key_Left, Qt::AltModifier, u"5"_s);
    row("Esc", Qt::Key_Escape, Plain, {u"minimised"_s, u"minimised"_s, u"minimised"_s, QString()});
    shortcut("F10", Qt::Key_F10, Plain, u"mnuFile"_s);
    row("Shift+F10", Qt::Key_F10, Qt::ShiftModifier, {u"mnuPopup"_s, QString(), u"qt_edit_menu"_s, u"qt_edit_menu"_s});
    shortcut("Ctrl+N", Qt::Key_N, Qt::ControlModifier, u"?dousa=sinki"_s);
    shortcut("Ctrl+R", Qt::Key_R, Qt::ControlModifier, u"?dousa=res&resno=4"_s);
    shortcut("Ctrl+T", Qt::Key_T, Qt::ControlModifier, u"threads"_s);
    row("Home", Qt::Key_Home, Plain, {u"5"_s, QString(), QString(), QString()});
    row("Down", Qt::Key_Down, Plain, {u"3"_s, QString(), QString(), QString()});
    row("Shift+J", Qt::Key_J, Qt::ShiftModifier, {QString(), QString(), u"typed"_s, QString()});
}

void tst_Keys::Everywhere()
{
    QFETCH(int, key);
    QFETCH(int, with);
    QStringList found;
    for (const QString& name : {u"lsvMsgList0"_s, u"rtbView"_s, u"cmbFindText"_s, u"uspnNoReadPoint"_s}) {
        CKeyFixture f;
        QVERIFY(f.Start());
        QWidget* focus = f.Focus(name);
        QVERIFY2(focus, qPrintable(name));
        bool isOver = false;
        QTimer::singleShot(20, f.Window.get(), [&] { // some menus wait for their end
            found << f.Effect();
            CloseMenus();
            isOver = true;
        });
        QTest::keyClick(focus, Qt::Key(key), Qt::KeyboardModifiers(with));
        QTRY_VERIFY(isOver);
    }
    QTEST(found, "wanted");
}

void tst_Keys::HeldKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("with");
    QTest::addColumn<QString>("wanted"); // after the press and three repetitions
    QTest::newRow("J") << int(Qt::Key_J) << int(Plain) << u"1"_s;
    QTest::newRow("Space") << int(Qt::Key_Space) << int(Plain) << u"3"_s;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << int(Plain) << u"3"_s;
}

void tst_Keys::HeldKeys()
{
    QFETCH(int, key);
    QFETCH(int, with);
    CKeyFixture f;
    QVERIFY(f.Start());
    QWidget* list = f.Focus(u"lsvMsgList0"_s);
    for (int time = 0; time < 4; ++time) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::KeyboardModifiers(with), {}, time > 0);
        QCoreApplication::sendEvent(list, &press);
    }
    QTEST(f.Effect(), "wanted");
}

// Esc held down leaves the result list; it does not go on to minimise the window.
void tst_Keys::RawTable()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    f.Viewer().LoadList(u"SELECT BBS_Name FROM BBS"_s, CViewer::ResultList);
    QWidget* list = f.Focus(u"lsvMsgList1"_s);
    for (const Qt::Key key : {Qt::Key_J, Qt::Key_Space, Qt::Key_M, Qt::Key_Backspace, Qt::Key_Delete})
        QTest::keyClick(list, key);
    QTest::keyClick(list, Qt::Key_R, Qt::ControlModifier);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(f.Desk.Opened, QStringList());
    QTest::keyClick(list, Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(f.Desk.Opened, QStringList(Keyaki + u"?dousa=sinki"_s));
    for (const bool repeats : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Plain, {}, repeats);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &press);
    }
    QCOMPARE(f.Viewer().CurrentList(), int(CViewer::BoardList));
    QVERIFY(!f.Window->isMinimized());
    QVERIFY(f.Find<QWidget>(u"lsvMsgList0"_s)->hasFocus());
}

void tst_Keys::MenuBarKeepsItsKeys()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    QWidget* bar = f.Window->menuBar();
    for (const int leaves : {Qt::Key_Escape, Qt::Key_F6}) {
        QWidget* pane = f.Focus(u"rtbView"_s);
        QTest::keyClick(pane, Qt::Key_Alt, Qt::AltModifier);
        QVERIFY(bar->hasFocus());
        QTest::keyClick(bar, Qt::Key_J);
        QCOMPARE(f.Effect(), QString());
        QTest::keyClick(bar, Qt::Key(leaves));
        QVERIFY(pane->hasFocus());
    }
    bar->setFocus(Qt::MenuBarFocusReason);
    bar->clearFocus(); // nobody has it now
    QTRY_VERIFY(f.Find<QWidget>(u"lsvMsgList0"_s)->hasFocus());
}

void tst_Keys::PreviousUnreadEmptiesTheSelection()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    f.Run(u"UPDATE Message SET Read = True WHERE ID = 5"_s);
    f.Viewer().ShowViewMode(0);
    auto* pane = f.Find<CMessagePane>(u"rtbView"_s);
    f.Focus(u"rtbView"_s);
    pane->selectAll();
    QTest::keyClick(pane, Qt::Key_Space, Qt::ShiftModifier); // there is none: the message stays
    QCOMPARE(pane->SelectedText(), QString());
}

void tst_Keys::CopyKey()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    f.Viewer().LoadList(u"SELECT TOP 2 BBS_ID, 'a' & Chr(13) & Chr(10) & 'b' & Chr(9) & 'c' FROM BBS ORDER BY BBS_ID"_s,
                        CViewer::ResultList);
    QWidget* list = f.Focus(u"lsvMsgList1"_s);
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(f.Desk.ClipboardText, u"3\ta b c\r\n4\ta b c\r\n"_s);
    f.List(CViewer::ResultList).ClearSelection();
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QVERIFY(f.Desk.ClipboardText.startsWith(u"3\t"_s));
}

void tst_Keys::TextMenu()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    QWidget* pane = f.Focus(u"rtbView"_s);
    QTest::keyClick(pane, Qt::Key_A, Qt::ControlModifier);
    OpenMenuByKey(pane);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu && menu->objectName() == u"mnuText");
    QVERIFY(QRect(pane->mapToGlobal(QPoint()), pane->size()).contains(menu->pos()));
    QVERIFY(f.Action(u"mnuTextBar2"_s)->isVisible());
    QCOMPARE(f.Action(u"mnuTextWebSearch1"_s)->text(), u"Googleで検索(&G)..."_s);
    QVERIFY(!f.Action(u"mnuTextMSDN"_s)->isEnabled());
    CloseMenus();
    f.Action(u"mnuTextWebSearch1"_s)->trigger();
    QCOMPARE(f.Desk.Opened.value(0), u"http://www.example.com/search?q=%96%7B%95%B64%0D%0A&num=100"_s);
    f.Action(u"mnuTextCopyHeader"_s)->trigger();
    QCOMPARE(f.Desk.ClipboardText, u"けやき#4 題名4 より引用\r\n> 本文4\r\n> "_s);
    f.App->SettingsIni().SetNowSection(u"WebSearch"_s);
    f.App->SettingsIni().Clear();
    OpenMenuByKey(pane);
    QVERIFY(!f.Action(u"mnuTextBar2"_s)->isVisible());
    QCOMPARE(menu->actions().size(), 11); // no entry of the first opening is left
}

void tst_Keys::ListMenu()
{
    CKeyFixture f;
    QVERIFY(f.Start());
    f.Run(u"UPDATE Message SET Mail = '', HomePage = '' WHERE ID = 3"_s);
    f.Viewer().ShowViewMode(0);
    QWidget* list = f.Focus(u"lsvMsgList0"_s);
    for (const int row : {2, 1}) {
        f.Viewer().ShowMessage(CViewer::BoardList, row, false);
        OpenMenuByKey(list);
        QVERIFY(QApplication::activePopupWidget());
        for (const QString& name : {u"mnuMsgMail"_s, u"mnuMsgHomePage"_s, u"mnuPopupMail"_s, u"mnuPopupHomepage"_s})
            QVERIFY2(f.Action(name)->isEnabled() == (row == 1), qPrintable(name));
        QCOMPARE(f.Action(u"mnuPopupMail"_s)->text(), f.Action(u"mnuMsgMail"_s)->text());
        CloseMenus();
    }
    f.Action(u"mnuPopupMail"_s)->trigger();
    f.Action(u"mnuPopupHomepage"_s)->trigger();
    f.Action(u"mnuPopupReplyHitokoto1"_s)->trigger();
    QCOMPARE(f.Desk.Opened.join(u' '), u"mailto:a4@example.com http://www.example.com/4 "
                                       "http://localhost:8932/cgi-bin/yanagi.cgi?dousa=sinki&l_or_r=1"_s);
}

QTEST_MAIN(tst_Keys)
#include "tst_Keys.moc"
