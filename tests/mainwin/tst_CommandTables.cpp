// tests/mainwin/tst_CommandTables.cpp
// The command surface: every name and caption is there, keys are unique, menus come out as the tables say.

#include "mainwin/CMenuSet.h"
#include "mainwin/CToolbar.h"
#include "mainwin/mdlCommands.h"
#include "tests/support/Table.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;
using mdlCommands::Command;
using mdlCommands::Kind;
using mdlCommands::MenuItem;
using mdlCommands::Rule;

namespace
{

struct CWindow
{
    QMainWindow Window;
    CMenuSet Menus{Window};

    // Names of a menu's entries in their order.
    QStringList NamesIn(const QString& Menu) const
    {
        QStringList names;
        for (const QAction* action : Menus.Menu(Menu)->actions())
            names.append(action->objectName());
        return names;
    }
};

} // namespace

class tst_CommandTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void MenuBarIsWhole_data();
    void MenuBarIsWhole();
    void MenusHoldTheirEntriesInOrder_data();
    void MenusHoldTheirEntriesInOrder();
    void NamesAreUnique();
    void ShortcutsAndKeysAreUnique();
    void ItemsWithoutACommandStayDisabled();
    void BusyStates_data();
    void BusyStates();
    void ShortcutsOutliveTheirHiddenMenu();
    void Keys_data();
    void Keys();
    void ArrayEntriesComeAndGo();
    void ToolbarButtons();
};

// Captions and keys as users of earlier versions know them.
void tst_CommandTables::MenuBarIsWhole_data()
{
    mdlTable::AddRows<QString, QString, QString, QString>("menu-bar.json", "MenuBar",
                                                          {"name", "caption", "keyText", "shortcut"});
}

void tst_CommandTables::MenuBarIsWhole()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, keyText);
    CWindow w;
    const QAction* action = w.Menus.Action(name);
    QVERIFY(action);
    const bool isBar = caption == u"-";
    QCOMPARE(action->isSeparator(), isBar);
    QCOMPARE(action->text(), isBar ? QString() : keyText.isEmpty() ? caption : caption + u'\t' + keyText);
    QTEST(action->shortcut().toString(QKeySequence::PortableText), "shortcut");
    QCOMPARE(qsizetype(std::size(mdlCommands::MenuBar())), mdlTable::Rows("menu-bar.json", "MenuBar").size());
}

void tst_CommandTables::MenusHoldTheirEntriesInOrder_data()
{
    mdlTable::AddRows<QString, QString>("menu-bar.json", "MenusHoldTheirEntriesInOrder", {"menu", "wanted"});
}

void tst_CommandTables::MenusHoldTheirEntriesInOrder()
{
    QFETCH(QString, menu);
    QFETCH(QString, wanted);
    QCOMPARE(CWindow().NamesIn(menu).join(u' '), wanted);
}

void tst_CommandTables::NamesAreUnique()
{
    CWindow w;
    QSet<QString> seen;
    for (const auto table : {mdlCommands::MenuBar(), mdlCommands::PopupMenus()}) {
        for (const MenuItem& item : table) {
            const QString name = item.Name.toString() + QString::number(item.Index);
            QVERIFY2(!seen.contains(name), qPrintable(name));
            seen.insert(name);
        }
    }
    QStringList top;
    for (const QAction* action : w.Window.menuBar()->actions())
        top.append(action->objectName());
    QCOMPARE(top.join(u' '), u"mnuFile mnuBBS mnuMsg mnuTool mnuHelp"_s);
}

void tst_CommandTables::ShortcutsAndKeysAreUnique()
{
    CWindow w;
    QSet<QKeySequence> seen;
    for (const QAction* action : w.Window.findChildren<QAction*>()) {
        if (action->shortcut().isEmpty())
            continue;
        QVERIFY2(!seen.contains(action->shortcut()), qPrintable(action->objectName()));
        seen.insert(action->shortcut());
        // A key of the key table would take it away from the menu.
        const QKeyCombination key = action->shortcut()[0];
        QVERIFY2(!mdlCommands::FindKey(key.key(), key.keyboardModifiers()), qPrintable(action->objectName()));
    }
    QCOMPARE(seen.size(), 14);
}

void tst_CommandTables::ItemsWithoutACommandStayDisabled()
{
    CWindow w;
    mdlEnabling::WindowFacts everything;
    everything.SelectedCount = 1;
    everything.IsReply = true;
    everything.ModeHasMessages.fill(true);
    w.Menus.UpdateEnabled(everything);
    for (const auto table : {mdlCommands::MenuBar(), mdlCommands::PopupMenus()}) {
        for (const MenuItem& item : table) {
            if (item.Type != Kind::Item && item.Type != Kind::Member)
                continue;
            const QString name =
                item.Name.toString() + (item.Type == Kind::Member ? QString::number(item.Index) : QString());
            if (item.Handler == Command::None)
                QVERIFY2(!w.Menus.Action(name)->isEnabled(), qPrintable(name));
        }
    }
    QVERIFY(w.Menus.Action(u"mnuBBSLoad"_s)->isEnabled());
}

// What can be chosen while nothing runs, a message being selected, and cannot be chosen during a run.
void tst_CommandTables::BusyStates_data()
{
    QTest::addColumn<int>("busy");
    QTest::addColumn<QString>("wanted");
    const QString boards = u"ToolbarBack ToolbarForword ToolbarLoad ToolbarOption ToolbarSQL ToolbarVisitLoad "
                           "mnuBBSAllLoad mnuBBSAllVisitLoad mnuBBSLoad mnuBBSProperty mnuBBSSetNoRead mnuBBSViewSub0 "
                           "mnuBBSViewSub1 mnuBBSViewSub2 mnuBBSViewSub3 mnuBBSViewSub4 mnuBBSVisitLoad mnuFileImport "
                           "mnuFileImportFile mnuMsgDelete mnuMsgQuery mnuPopupDelete mnuTextFind mnuToolCompDB "
                           "mnuToolOption mnuTrayLoad mnuTrayVisitLoad"_s;
    QTest::newRow("receiving") << int(BusyState::Receive) << boards;
    QTest::newRow("importing") << int(BusyState::Import) << boards;
}

void tst_CommandTables::BusyStates()
{
    QFETCH(int, busy);
    CWindow w;
    CToolbar toolbar(&w.Window);
    mdlEnabling::WindowFacts facts;
    facts.SelectedCount = 1;
    facts.IsReply = facts.HasMail = facts.HasHomePage = true;
    facts.ModeHasMessages.fill(true);
    const auto enabled = [&] {
        w.Menus.UpdateEnabled(facts);
        toolbar.UpdateEnabled(facts);
        QStringList names;
        for (const QAction* action : w.Window.findChildren<QAction*>()) {
            if (action->isEnabled() && !action->objectName().isEmpty())
                names << action->objectName();
        }
        return QSet<QString>(names.begin(), names.end());
    };
    QSet<QString> idle = enabled();
    facts.Busy = BusyState(busy);
    QStringList lost = idle.subtract(enabled()).values();
    lost.sort();
    QTEST(lost.join(u' '), "wanted");
    for (const BusyState closed : {BusyState::Query, BusyState::Work, BusyState::Compact}) {
        facts.Busy = closed;
        const QSet<QString> left = enabled();
        for (const QString& name : lost + QStringList{u"mnuBBSNew"_s, u"mnuBBSReply"_s, u"mnuMsgMail"_s,
                                                      u"mnuMsgRead"_s, u"ToolbarNew"_s, u"ToolbarThread"_s})
            QVERIFY2(!left.contains(name), qPrintable(name));
        QVERIFY(left.contains(u"mnuFileExit"_s));
    }
}

// The message menu is hidden over a raw table; its query and find commands go on working by key.
void tst_CommandTables::ShortcutsOutliveTheirHiddenMenu()
{
    CWindow w;
    mdlEnabling::WindowFacts raw;
    raw.List = 1;
    raw.IsRaw = true;
    w.Menus.UpdateEnabled(raw);
    QVERIFY(!w.Menus.Action(u"mnuMsg"_s)->isVisible());
    QVERIFY(w.Window.actions().contains(w.Menus.Action(u"mnuMsgFindNext"_s)));
    QVERIFY(w.Window.actions().contains(w.Menus.Action(u"mnuMsgQuery"_s)));
    w.Menus.UpdateEnabled({});
    QVERIFY(w.Menus.Action(u"mnuMsg"_s)->isVisible());
}

void tst_CommandTables::Keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("command");
    const auto row = [](const char* Name, int Key, int Modifiers, Command Wanted) {
        QTest::newRow(Name) << Key << Modifiers << int(Wanted);
    };
    row("Esc with anything", Qt::Key_Escape, int(Qt::ControlModifier | Qt::ShiftModifier), Command::Escape);
    row("Shift+F10", Qt::Key_F10, Qt::ShiftModifier, Command::ContextMenu);
    row("Ctrl+F10", Qt::Key_F10, Qt::ControlModifier, Command::None);
    row("F4", Qt::Key_F4, Qt::NoModifier, Command::PopupBoards);
    row("Alt+F4 closes the window", Qt::Key_F4, Qt::AltModifier, Command::None);
    row("Ctrl+L", Qt::Key_L, Qt::ControlModifier, Command::PopupBoards);
    row("plain L", Qt::Key_L, Qt::NoModifier, Command::None);
    row("Backspace", Qt::Key_Backspace, Qt::ShiftModifier, Command::InReplyTo);
    row("Ctrl+B", Qt::Key_B, Qt::ControlModifier, Command::MarkRead);
    row("Ctrl+Shift+B", Qt::Key_B, int(Qt::ControlModifier | Qt::ShiftModifier), Command::MarkNoRead);
    row("M", Qt::Key_M, Qt::NoModifier, Command::PopupMarks);
    row("Ctrl+M", Qt::Key_M, Qt::ControlModifier, Command::PopupMarks);
    row("Shift+M", Qt::Key_M, Qt::ShiftModifier, Command::None);
    row("K", Qt::Key_K, Qt::NoModifier, Command::PrevMessage);
    row("J", Qt::Key_J, Qt::NoModifier, Command::NextMessage);
    row("Alt+Left", Qt::Key_Left, Qt::AltModifier, Command::HistoryBack);
    row("Alt+Right on the keypad", Qt::Key_Right, int(Qt::AltModifier | Qt::KeypadModifier), Command::HistoryForward);
    row("Left belongs to the list", Qt::Key_Left, Qt::NoModifier, Command::None);
    row("Space", Qt::Key_Space, Qt::NoModifier, Command::NextUnread);
    row("Shift+Space", Qt::Key_Space, Qt::ShiftModifier, Command::PrevUnreadByKey);
    row("Ctrl+Space", Qt::Key_Space, Qt::ControlModifier, Command::None);
}

void tst_CommandTables::Keys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, command);
    const mdlCommands::Key* found = mdlCommands::FindKey(key, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(found ? int(found->Handler) : int(Command::None), command);
}

void tst_CommandTables::ArrayEntriesComeAndGo()
{
    CWindow w;
    std::vector<CMenuSet::Entry> marks;
    marks.push_back({1, u"重要"_s, Command::Mark, 1, false, true, Rule::Selection});
    marks.push_back({3, u"保留"_s, Command::Mark, 3, false, true, Rule::Selection});
    w.Menus.SetArray(u"mnuMsgMarkSub"_s, marks);
    QCOMPARE(w.NamesIn(u"mnuMsgMark"_s).join(u' '),
             u"mnuMsgMarkSub0 mnuMsgMarkSub1 mnuMsgMarkSub3 mnuMsgMarkBar1 mnuMsgMarkRelease"_s);
    QVERIFY(!w.Menus.Action(u"mnuMsgMarkSub0"_s)->isVisible());
    QVERIFY(!w.Menus.Action(u"mnuMsgMarkSub2"_s));

    Command triggered = Command::None;
    int argument = 0;
    connect(&w.Menus, &CMenuSet::Triggered, this, [&](Command Handler, int Argument) {
        triggered = Handler;
        argument = Argument;
        w.Menus.SetArray(u"mnuMsgMarkSub"_s, {}); // the chosen entry goes while it is being handled
    });
    w.Menus.Action(u"mnuMsgMarkSub3"_s)->trigger();
    QCOMPARE(triggered, Command::Mark);
    QCOMPARE(argument, 3);
    QCOMPARE(w.NamesIn(u"mnuMsgMark"_s).join(u' '), u"mnuMsgMarkSub0 mnuMsgMarkBar1 mnuMsgMarkRelease"_s);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    w.Menus.UpdateEnabled({});
}

void tst_CommandTables::ToolbarButtons()
{
    QWidget window;
    CToolbar toolbar(&window);
    QStringList names;
    for (QAction* action : toolbar.actions()) {
        if (action->isSeparator()) {
            names.append(u"-"_s);
            continue;
        }
        QWidget* widget = toolbar.widgetForAction(action);
        QCOMPARE(widget->objectName(), action->objectName());
        QVERIFY2(qobject_cast<QToolButton*>(widget) == nullptr || !action->icon().isNull(),
                 qPrintable(action->objectName()));
        names.append(widget->objectName().mid(7));
    }
    QCOMPARE(names.join(u' '),
             u"BBSList Back Forword - Load VisitLoad - New Reply - FindText FindNext FindPrev - Thread "
             "- SQL - Timer Option"_s);
    QVERIFY(toolbar.findChild<QWidget*>(u"cmbFindText"_s));
    QCOMPARE(toolbar.Button(u"VisitLoad")->toolTip(), u"巡回受信(Shift+F5)"_s);
}

QTEST_MAIN(tst_CommandTables)
#include "tst_CommandTables.moc"
