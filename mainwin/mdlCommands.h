// mainwin/mdlCommands.h
// The command surface of the main window as tables: menus, toolbar, status bar panels and keys.

#ifndef MAINWIN_MDLCOMMANDS_H
#define MAINWIN_MDLCOMMANDS_H

#include <QStringView>

#include <span>

namespace mdlCommands
{

/// What a menu item, a button or a key does. Most take one number (MenuItem::Argument); its meaning stands beside them.
enum class Command {
    None,            ///< nothing: the item stands disabled
    Execute,         ///< number of the dispatcher of the drivers
    SelectBoard,     ///< BBS_ID
    TraySelectBoard, ///< BBS_ID
    NewPost,         ///< BBS_ID
    BoardListButton, ///< back to the board list, or the newest messages
    ViewMode,        ///< 0 newest, 1 previous, 2 next, 3 unread, 4 all
    Thread,
    SetNoRead,
    Browse, ///< 0 board page, 1 display settings page, 2 usage page
    PrevMessage,
    NextMessage,
    PrevUnread,
    NextUnread,
    HistoryBack,
    HistoryForward,
    InReplyTo,
    Mark, ///< mark number, 0 releases
    MarkRead,
    MarkNoRead,
    SelectAll,
    ReverseSelection,
    CopyRows, ///< the selected rows of the list
    CopyText, ///< the selected text of the message pane
    CompactDatabase,
    Timer,
    Community,
    About,
    ShowWindow,
    TrayExecute, ///< number of the dispatcher, after the window has been shown
    Escape,
    PopupBoards,
    PopupMarks,
    Query,      ///< the query dialog with the last query
    TextLarger, ///< the letters of the message pane
    TextSmaller,
    TextUsual,
    MenuBar,         ///< opens the first menu
    ContextMenu,     ///< the pop-up of the control that has the focus
    TextFind,        ///< the query dialog, looking for the selected text of the pane
    PrevUnreadByKey, ///< as PrevUnread; the text selection of the pane is emptied as well
    Find,            ///< the find dialog
    FindNext,
    FindPrev,
    Relate,        ///< the thread of the selected message
    RelateText,    ///< the thread of the message that the selected text of the pane names
    TwoSidedReply, ///< 0 left, 1 right
    Mail,
    HomePage,
    OpenUrl,        ///< the selected text of the pane as an address
    WebSearch,      ///< entry of the web-search menu, from 1
    CopyWithHeader, ///< the selected text of the pane as a quotation
    Delete,
    Help,
    Options,         ///< the settings dialogs
    BoardProperties, ///< of the board in view
};

/// When an item is enabled. Judged by mdlEnabling from the state of the window.
enum class Rule {
    Always,
    Never,
    Idle,         ///< while no run is under way
    Open,         ///< while no long work and no compaction has the lists or the database for itself
    ViewMode,     ///< idle, and the mode (Argument) has messages to bring
    Messages,     ///< the list in front holds messages
    Selection,    ///< ... and at least one is selected
    SomeUnread,   ///< ... of which one is unread, or several are selected
    SomeRead,     ///< ... of which one is read, or several are selected
    SingleReply,  ///< exactly one message is selected, and it answers another
    Single,       ///< exactly one message is selected
    Deletable,    ///< a message is selected and nothing is being received or imported
    WithMail,     ///< the selected message has a mail address
    WithHomePage, ///< ... or a home page
};

/// How an entry of a menu table is built.
enum class Kind {
    Item,
    Separator,
    Menu,   ///< a menu with the deeper entries that follow
    Array,  ///< hidden placeholder "<Name>0" after which entries made at run time are put
    Member, ///< fixed member of an array: its name is Name + Index
};

/// One line of a menu table. Level 0 is a top-level menu; an entry belongs to the nearest menu above it with a lower
/// level.
struct MenuItem
{
    int Level;
    Kind Type;
    QStringView Name;
    QStringView Caption;
    QStringView KeyText = {};  ///< shown at the right of the item; the key itself is in Keys()
    QStringView Shortcut = {}; ///< the item's own shortcut in Qt's portable notation
    Command Handler = Command::None;
    int Argument = 0;
    Rule When = Rule::Always;
    int Index = -1; ///< number of a Member
};

/// One button of the toolbar. An empty Key is a separator.
struct ToolButton
{
    QStringView Key;
    QStringView Caption;
    QStringView ToolTip;
    Command Handler = Command::None;
    int Argument = 0;
    Rule When = Rule::Always;
};

/// One panel of the status bar.
struct Panel
{
    QStringView Key;
    QStringView ToolTip;
    int Columns; ///< width in digits of the status bar's font; 0 takes the rest of the bar
};

/// Which modifier keys a key of the key table wants.
enum class Modifiers { None, Shift, Ctrl, CtrlShift, Alt, NoneOrCtrl, Any };

/// One line of the key table.
struct Key
{
    int Code; ///< Qt::Key
    Modifiers With;
    Command Handler;
    QStringView Item;        ///< when not empty, the key acts only while this menu item is enabled
    bool Everywhere = false; ///< acts in the find box and the unread position editor as well
    bool Repeats = false;    ///< acts again and again while it is held down
};

/// The menu bar, top to bottom and left to right.
std::span<const MenuItem> MenuBar();

/// The three menus that are only ever popped up: mnuPopup (list), mnuText (message text) and mnuTray.
std::span<const MenuItem> PopupMenus();

std::span<const ToolButton> Toolbar();

std::span<const Panel> Panels();

/// The keys that the window takes before its controls.
std::span<const Key> Keys();

/// The line of the key table for a pressed key, nullptr when there is none. KeypadModifier is ignored.
const Key* FindKey(int Code, Qt::KeyboardModifiers Pressed);

} // namespace mdlCommands

#endif
