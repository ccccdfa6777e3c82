// tests/mainwin/tst_CommandTables.cpp
// The command surface: every name and caption is there, keys are unique, menus come out as the tables say.

#include "mainwin/CMenuSet.h"
#include "mainwin/CToolbar.h"
#include "mainwin/mdlCommands.h"

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

// "caption, key text, shortcut" of a menu bar item by its name, as users of earlier versions know them.
constexpr struct
{
    const char16_t* Name;
    const char16_t* Caption;
    const char16_t* KeyText;
    const char16_t* Shortcut;
} Wanted[] = {
    {u"mnuFile", u"ファイル(&F)", u"", u""},
    {u"mnuFileImport", u"インポート(&I)", u"", u""},
    {u"mnuFileImportFile", u"ファイルから(&F)...", u"", u""},
    {u"mnuFileImportInternet", u"掲示板過去ログ保存庫から(&I)...", u"", u""},
    {u"mnuImportBar", u"-", u"", u""},
    {u"mnuFileImportKakolog", u"掲示板過去ログ保存庫へ(&K)...", u"", u""},
    {u"mnuFileExport", u"エクスポート(&E)...", u"", u""},
    {u"mnuFileBar1", u"-", u"", u""},
    {u"mnuFileExit", u"終了(&X)", u"Alt+F4", u""},
    {u"mnuBBS", u"掲示板(&B)", u"", u""},
    {u"mnuBBSMove", u"掲示板移動(&B)", u"F4 , Ctrl+L", u""},
    {u"mnuBBSMoveSub0", u"だみー", u"", u""},
    {u"mnuBBSBar1", u"-", u"", u""},
    {u"mnuBBSLoad", u"受信(&L)", u"", u"F5"},
    {u"mnuBBSAllLoad", u"全件受信(&O)", u"", u""},
    {u"mnuBBSVisitLoad", u"巡回受信(&I)", u"", u"Shift+F5"},
    {u"mnuBBSAllVisitLoad", u"全掲示板から巡回受信(&A)", u"", u""},
    {u"mnuBBSBar2", u"-", u"", u""},
    {u"mnuBBSNew", u"新規投稿(&N)...", u"", u"Ctrl+N"},
    {u"mnuBBSReply", u"返信(&R)...", u"", u"Ctrl+R"},
    {u"mnuBBSBar3", u"-", u"", u""},
    {u"mnuBBSView", u"表示(&V)", u"", u""},
    {u"mnuBBSViewSub0", u"最新の100件(&T)", u"", u"F6"},
    {u"mnuBBSViewSub1", u"前の100件(&P)", u"", u"F7"},
    {u"mnuBBSViewSub2", u"次の100件(&N)", u"", u"F8"},
    {u"mnuBBSViewSub3", u"未読のみ(&R)", u"", u""},
    {u"mnuBBSViewSub4", u"全て表示(&A)", u"", u""},
    {u"mnuBBSBar4", u"-", u"", u""},
    {u"mnuBBSThread", u"スレッド表示(&T)", u"", u"Ctrl+T"},
    {u"mnuBBSBar5", u"-", u"", u""},
    {u"mnuBBSSetNoRead", u"未読位置変更(&C)", u"", u""},
    {u"mnuBBSProperty", u"プロパティ(&P)...", u"Alt+F8", u""},
    {u"mnuBBSBar6", u"-", u"", u""},
    {u"mnuBBSBrowse", u"この掲示板へ移動(&M)...", u"", u""},
    {u"mnuBBSShowCookiePage", u"表示カスタマイズをする(&S)...", u"", u""},
    {u"mnuBBSKiyaku", u"この掲示板のつかいかたを見る(&K)...", u"", u""},
    {u"mnuMsg", u"メッセージ(&M)", u"", u""},
    {u"mnuMove", u"移動(&M)", u"", u""},
    {u"mnuMovePrevMsg", u"前へ(&P)", u"↑, k", u""},
    {u"mnuMoveNextMsg", u"次へ(&N)", u"↓, j", u""},
    {u"mnuMoveBar2", u"-", u"", u""},
    {u"mnuMovePrevNoRead", u"前の未読へ(&B)", u"Shift+Space", u""},
    {u"mnuMoveNextNoRead", u"次の未読へ(&F)", u"Space", u""},
    {u"mnuMoveBar3", u"-", u"", u""},
    {u"mnuMovePrevArchive", u"履歴：前へ(&<)", u"Alt+←", u""},
    {u"mnuMoveNextArchive", u"履歴：次へ(&>)", u"Alt+→", u""},
    {u"mnuMoveBar4", u"-", u"", u""},
    {u"mnuMoveInReplyTo", u"レス元へ(&R)", u"BS", u""},
    {u"mnuMsgBar1", u"-", u"", u""},
    {u"mnuMsgFind", u"検索(&F)", u"", u"Ctrl+F"},
    {u"mnuMsgFindPrev", u"前を検索(&P)", u"", u"Shift+F3"},
    {u"mnuMsgFindNext", u"次を検索(&N)", u"", u"F3"},
    {u"mnuMsgBar2", u"-", u"", u""},
    {u"mnuMsgQuery", u"クエリー検索(&Q)...", u"", u"Ctrl+Q"},
    {u"mnuMsgRelate", u"関連検索(&K)", u"", u"Ctrl+K"},
    {u"mnuMsgBar3", u"-", u"", u""},
    {u"mnuMsgMail", u"メールを送る(&S)...", u"", u""},
    {u"mnuMsgHomePage", u"ホームページへ行く(&H)...", u"", u""},
    {u"mnuMsgBar4", u"-", u"", u""},
    {u"mnuMsgMark", u"マーク(&L)", u"Ctrl+M , M", u""},
    {u"mnuMsgMarkSub0", u"だみー", u"", u""},
    {u"mnuMsgMarkBar1", u"-", u"", u""},
    {u"mnuMsgMarkRelease", u"マーク解除(&R)", u"", u""},
    {u"mnuMsgBar5", u"-", u"", u""},
    {u"mnuMsgNoRead", u"未読にする(&E)", u"Shift+Ctrl+B", u""},
    {u"mnuMsgRead", u"既読にする(&U)", u"Ctrl+B", u""},
    {u"mnuMsgBar6", u"-", u"", u""},
    {u"mnuMsgDelete", u"削除(&D)", u"Del", u""},
    {u"mnuMsgBar7", u"-", u"", u""},
    {u"mnuMsgAllSelect", u"全て選択(&A)", u"Ctrl+A", u""},
    {u"mnuMsgReverseSelect", u"選択範囲反転(&V)", u"", u""},
    {u"mnuTool", u"ツール(&T)", u"", u""},
    {u"mnuToolCompDB", u"最適化(&C)", u"", u""},
    {u"mnuToolBar1", u"-", u"", u""},
    {u"mnuToolTimer", u"タイマー(&T)", u"", u""},
    {u"mnuToolBar2", u"-", u"", u""},
    {u"mnuToolOption", u"オプション(&O)...", u"", u""},
    {u"mnuHelp", u"ヘルプ(&H)", u"", u""},
    {u"mnuHelpHelp", u"ヘルプ(&H)...", u"", u"F1"},
    {u"mnuHelpHiroba", u"入門者ひろばへ(&V)...", u"", u""},
    {u"mnuHelpBar", u"-", u"", u""},
    {u"mnuHelpVerinfo", u"バージョン情報(&A)...", u"", u""},
};

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

void tst_CommandTables::MenuBarIsWhole()
{
    CWindow w;
    QStringList found;
    for (const MenuItem& item : mdlCommands::MenuBar())
        found.append(item.Name.toString());
    for (const auto& wanted : Wanted) {
        const QString name = QString::fromUtf16(wanted.Name);
        const QAction* action = w.Menus.Action(name);
        QVERIFY2(action, qPrintable(name));
        const QString keyText = QString::fromUtf16(wanted.KeyText);
        const QString caption = QString::fromUtf16(wanted.Caption);
        const bool isBar = caption == u"-";
        QCOMPARE(action->isSeparator(), isBar);
        QCOMPARE(action->text(), isBar ? QString() : keyText.isEmpty() ? caption : caption + u'\t' + keyText);
        QCOMPARE(action->shortcut().toString(QKeySequence::PortableText), QString::fromUtf16(wanted.Shortcut));
    }
    QCOMPARE(std::size(mdlCommands::MenuBar()), std::size(Wanted));
}

void tst_CommandTables::MenusHoldTheirEntriesInOrder_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("file") << u"mnuFile"_s << u"mnuFileImport mnuFileExport mnuFileBar1 mnuFileExit"_s;
    QTest::newRow("import") << u"mnuFileImport"_s
                            << u"mnuFileImportFile mnuFileImportInternet mnuImportBar mnuFileImportKakolog"_s;
    QTest::newRow("view modes") << u"mnuBBSView"_s
                                << u"mnuBBSViewSub0 mnuBBSViewSub1 mnuBBSViewSub2 mnuBBSViewSub3 mnuBBSViewSub4"_s;
    QTest::newRow("move") << u"mnuMove"_s
                          << u"mnuMovePrevMsg mnuMoveNextMsg mnuMoveBar2 mnuMovePrevNoRead mnuMoveNextNoRead "
                             "mnuMoveBar3 mnuMovePrevArchive mnuMoveNextArchive mnuMoveBar4 mnuMoveInReplyTo"_s;
    QTest::newRow("mark") << u"mnuMsgMark"_s << u"mnuMsgMarkSub0 mnuMsgMarkBar1 mnuMsgMarkRelease"_s;
    QTest::newRow("list pop-up")
        << u"mnuPopup"_s
        << u"mnuPopupReply mnuPopupReplyHitokoto0 mnuPopupReplyHitokoto1 mnuPopupBar1 mnuPopupMail mnuPopupHomepage "
           "mnuPopupBar2 mnuPopupMark mnuPopupBar3 mnuPopupNoRead mnuPopupRead mnuPopupBar4 mnuPopupDelete "
           "mnuPopupBar5 mnuPopupAllSelect mnuPopupReverseSelect mnuPopupBar6 mnuPopupInReplyTo mnuPopupRelate"_s;
    QTest::newRow("text pop-up") << u"mnuText"_s
                                 << u"mnuTextFind mnuTextRelate mnuTextBar1 mnuTextURL mnuTextBar2 mnuTextWebSearch0 "
                                    "mnuTextBar3 mnuTextMSDN mnuTextBar4 mnuTextCopy mnuTextCopyHeader"_s;
    QTest::newRow("tray pop-up") << u"mnuTray"_s
                                 << u"mnuTrayShow mnuTrayBBS mnuTrayBar1 mnuTrayLoad mnuTrayVisitLoad mnuTrayBar2 "
                                    "mnuTrayNew mnuTrayBar3 mnuTrayExit"_s;
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
    const QString boards = u"ToolbarBack ToolbarForword ToolbarLoad ToolbarSQL ToolbarVisitLoad mnuBBSAllLoad "
                           "mnuBBSAllVisitLoad mnuBBSLoad mnuBBSSetNoRead mnuBBSViewSub0 mnuBBSViewSub1 "
                           "mnuBBSViewSub2 mnuBBSViewSub3 mnuBBSViewSub4 mnuBBSVisitLoad mnuFileImport mnuMsgDelete "
                           "mnuMsgQuery mnuPopupDelete mnuTextFind mnuToolCompDB mnuTrayLoad "
                           "mnuTrayVisitLoad"_s;
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
