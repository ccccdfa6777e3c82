// mainwin/mdlCommands.cpp
// The command surface of the main window as tables: menus, toolbar, status bar panels and keys.

#include "mainwin/mdlCommands.h"

#include <algorithm>
#include <array>

namespace mdlCommands
{

namespace
{

// Captions of array placeholders; they are never shown.
constexpr QStringView Dummy = u"だみー";

constexpr MenuItem Top(QStringView Name, QStringView Caption) { return {0, Kind::Menu, Name, Caption}; }

constexpr MenuItem Bar(int Level, QStringView Name) { return {Level, Kind::Separator, Name, u"-"}; }

constexpr MenuItem Run(int Level, QStringView Name, QStringView Caption, int Number, QStringView Shortcut = {},
                       Rule When = Rule::Idle)
{
    return {Level, Kind::Item, Name, Caption, {}, Shortcut, Command::Execute, Number, When};
}

constexpr MenuItem Item(int Level, QStringView Name, QStringView Caption, Command Handler, Rule When = Rule::Always,
                        QStringView KeyText = {}, QStringView Shortcut = {}, int Argument = 0)
{
    return {Level, Kind::Item, Name, Caption, KeyText, Shortcut, Handler, Argument, When};
}

// An item that has no operation stands in the menu, disabled.
constexpr MenuItem Inert(int Level, QStringView Name, QStringView Caption, QStringView KeyText = {},
                         QStringView Shortcut = {})
{
    return {Level, Kind::Item, Name, Caption, KeyText, Shortcut, Command::None, 0, Rule::Never};
}

constexpr MenuItem Sub(int Level, QStringView Name, QStringView Caption, QStringView KeyText = {},
                       Rule When = Rule::Always)
{
    return {Level, Kind::Menu, Name, Caption, KeyText, {}, Command::None, 0, When};
}

constexpr MenuItem Array(int Level, QStringView Name) { return {Level, Kind::Array, Name, Dummy}; }

constexpr MenuItem Mode(int Index, QStringView Caption, QStringView Shortcut = {})
{
    return {2, Kind::Member, u"mnuBBSViewSub", Caption, {}, Shortcut, Command::ViewMode, Index, Rule::ViewMode, Index};
}

constexpr MenuItem Side(int Index, QStringView Caption)
{
    return {
        1,    Kind::Member, u"mnuPopupReplyHitokoto", Caption, {}, {}, Command::TwoSidedReply, Index, Rule::Selection,
        Index};
}

constexpr std::array FileMenu = {
    Top(u"mnuFile", u"ファイル(&F)"),
    Sub(1, u"mnuFileImport", u"インポート(&I)", {}, Rule::Idle),
    Run(2, u"mnuFileImportFile", u"ファイルから(&F)...", 1),
    Inert(2, u"mnuFileImportInternet", u"掲示板過去ログ保存庫から(&I)..."),
    Bar(2, u"mnuImportBar"),
    Run(2, u"mnuFileImportKakolog", u"掲示板過去ログ保存庫へ(&K)...", 3, {}, Rule::Always),
    Inert(1, u"mnuFileExport", u"エクスポート(&E)..."),
    Bar(1, u"mnuFileBar1"),
    Item(1, u"mnuFileExit", u"終了(&X)", Command::Execute, Rule::Always, u"Alt+F4", {}, 5),
};

constexpr std::array BoardMenu = {
    Top(u"mnuBBS", u"掲示板(&B)"),
    Sub(1, u"mnuBBSMove", u"掲示板移動(&B)", u"F4 , Ctrl+L"),
    Array(2, u"mnuBBSMoveSub"),
    Bar(1, u"mnuBBSBar1"),
    Run(1, u"mnuBBSLoad", u"受信(&L)", 7, u"F5"),
    Run(1, u"mnuBBSAllLoad", u"全件受信(&O)", 8),
    Run(1, u"mnuBBSVisitLoad", u"巡回受信(&I)", 9, u"Shift+F5"),
    Run(1, u"mnuBBSAllVisitLoad", u"全掲示板から巡回受信(&A)", 10),
    Bar(1, u"mnuBBSBar2"),
    Run(1, u"mnuBBSNew", u"新規投稿(&N)...", 11, u"Ctrl+N", Rule::Open),
    Run(1, u"mnuBBSReply", u"返信(&R)...", 12, u"Ctrl+R", Rule::Selection),
    Bar(1, u"mnuBBSBar3"),
    Sub(1, u"mnuBBSView", u"表示(&V)"),
    Mode(0, u"最新の100件(&T)", u"F6"),
    Mode(1, u"前の100件(&P)", u"F7"),
    Mode(2, u"次の100件(&N)", u"F8"),
    Mode(3, u"未読のみ(&R)"),
    Mode(4, u"全て表示(&A)"),
    Bar(1, u"mnuBBSBar4"),
    Item(1, u"mnuBBSThread", u"スレッド表示(&T)", Command::Thread, Rule::Messages, {}, u"Ctrl+T"),
    Bar(1, u"mnuBBSBar5"),
    Item(1, u"mnuBBSSetNoRead", u"未読位置変更(&C)", Command::SetNoRead, Rule::Idle),
    Item(1, u"mnuBBSProperty", u"プロパティ(&P)...", Command::BoardProperties, Rule::Idle, u"Alt+F8"),
    Bar(1, u"mnuBBSBar6"),
    Item(1, u"mnuBBSBrowse", u"この掲示板へ移動(&M)...", Command::Browse, Rule::Always, {}, {}, 0),
    Item(1, u"mnuBBSShowCookiePage", u"表示カスタマイズをする(&S)...", Command::Browse, Rule::Always, {}, {}, 1),
    Item(1, u"mnuBBSKiyaku", u"この掲示板のつかいかたを見る(&K)...", Command::Browse, Rule::Always, {}, {}, 2),
};

constexpr std::array MoveMenu = {
    Top(u"mnuMsg", u"メッセージ(&M)"),
    Sub(1, u"mnuMove", u"移動(&M)"),
    Item(2, u"mnuMovePrevMsg", u"前へ(&P)", Command::PrevMessage, Rule::Messages, u"↑, k"),
    Item(2, u"mnuMoveNextMsg", u"次へ(&N)", Command::NextMessage, Rule::Messages, u"↓, j"),
    Bar(2, u"mnuMoveBar2"),
    Item(2, u"mnuMovePrevNoRead", u"前の未読へ(&B)", Command::PrevUnread, Rule::Messages, u"Shift+Space"),
    Item(2, u"mnuMoveNextNoRead", u"次の未読へ(&F)", Command::NextUnread, Rule::Messages, u"Space"),
    Bar(2, u"mnuMoveBar3"),
    Item(2, u"mnuMovePrevArchive", u"履歴：前へ(&<)", Command::HistoryBack, Rule::Messages, u"Alt+←"),
    Item(2, u"mnuMoveNextArchive", u"履歴：次へ(&>)", Command::HistoryForward, Rule::Messages, u"Alt+→"),
    Bar(2, u"mnuMoveBar4"),
    Item(2, u"mnuMoveInReplyTo", u"レス元へ(&R)", Command::InReplyTo, Rule::SingleReply, u"BS"),
};

constexpr std::array MessageMenu = {
    Bar(1, u"mnuMsgBar1"),
    Item(1, u"mnuMsgFind", u"検索(&F)", Command::Find, Rule::Open, {}, u"Ctrl+F"),
    Item(1, u"mnuMsgFindPrev", u"前を検索(&P)", Command::FindPrev, Rule::Open, {}, u"Shift+F3"),
    Item(1, u"mnuMsgFindNext", u"次を検索(&N)", Command::FindNext, Rule::Open, {}, u"F3"),
    Bar(1, u"mnuMsgBar2"),
    Item(1, u"mnuMsgQuery", u"クエリー検索(&Q)...", Command::Query, Rule::Idle, {}, u"Ctrl+Q"),
    Item(1, u"mnuMsgRelate", u"関連検索(&K)", Command::Relate, Rule::Single, {}, u"Ctrl+K"),
    Bar(1, u"mnuMsgBar3"),
    Item(1, u"mnuMsgMail", u"メールを送る(&S)...", Command::Mail, Rule::WithMail),
    Item(1, u"mnuMsgHomePage", u"ホームページへ行く(&H)...", Command::HomePage, Rule::WithHomePage),
    Bar(1, u"mnuMsgBar4"),
    Sub(1, u"mnuMsgMark", u"マーク(&L)", u"Ctrl+M , M"),
    Array(2, u"mnuMsgMarkSub"),
    Bar(2, u"mnuMsgMarkBar1"),
    Item(2, u"mnuMsgMarkRelease", u"マーク解除(&R)", Command::Mark, Rule::Selection),
    Bar(1, u"mnuMsgBar5"),
    Item(1, u"mnuMsgNoRead", u"未読にする(&E)", Command::MarkNoRead, Rule::SomeRead, u"Shift+Ctrl+B"),
    Item(1, u"mnuMsgRead", u"既読にする(&U)", Command::MarkRead, Rule::SomeUnread, u"Ctrl+B"),
    Bar(1, u"mnuMsgBar6"),
    Item(1, u"mnuMsgDelete", u"削除(&D)", Command::Delete, Rule::Deletable, u"Del"),
    Bar(1, u"mnuMsgBar7"),
    Item(1, u"mnuMsgAllSelect", u"全て選択(&A)", Command::SelectAll, Rule::Messages, u"Ctrl+A"),
    Item(1, u"mnuMsgReverseSelect", u"選択範囲反転(&V)", Command::ReverseSelection, Rule::Messages),
};

constexpr std::array ToolMenu = {
    Top(u"mnuTool", u"ツール(&T)"),
    Item(1, u"mnuToolCompDB", u"最適化(&C)", Command::CompactDatabase, Rule::Idle),
    Bar(1, u"mnuToolBar1"),
    Inert(1, u"mnuToolTimer", u"タイマー(&T)"),
    Bar(1, u"mnuToolBar2"),
    Item(1, u"mnuToolOption", u"オプション(&O)...", Command::Options, Rule::Idle),
    Top(u"mnuHelp", u"ヘルプ(&H)"),
    Item(1, u"mnuHelpHelp", u"ヘルプ(&H)...", Command::Help, Rule::Always, {}, u"F1"),
    Item(1, u"mnuHelpHiroba", u"入門者ひろばへ(&V)...", Command::Community),
    Bar(1, u"mnuHelpBar"),
    Item(1, u"mnuHelpVerinfo", u"バージョン情報(&A)...", Command::About),
};

constexpr std::array ListPopup = {
    Top(u"mnuPopup", u"ポップアップ"),
    Run(1, u"mnuPopupReply", u"返信(&R)...", 12, {}, Rule::Selection),
    Side(0, u"左ひとことで返信(&1)..."),
    Side(1, u"右ひとことで返信(&2)..."),
    Bar(1, u"mnuPopupBar1"),
    Item(1, u"mnuPopupMail", u"メールを送る(&M)...", Command::Mail, Rule::WithMail),
    Item(1, u"mnuPopupHomepage", u"ホームページへ行く(&H)...", Command::HomePage, Rule::WithHomePage),
    Bar(1, u"mnuPopupBar2"),
    Sub(1, u"mnuPopupMark", u"マーク(&L)"),
    Array(2, u"mnuPopupMarkSub"),
    Bar(2, u"mnuPopupMarkBar1"),
    Item(2, u"mnuPopupMarkRelease", u"マーク解除(&R)", Command::Mark, Rule::Selection),
    Bar(1, u"mnuPopupBar3"),
    Item(1, u"mnuPopupNoRead", u"未読にする(&E)", Command::MarkNoRead, Rule::SomeRead),
    Item(1, u"mnuPopupRead", u"既読にする(&U)", Command::MarkRead, Rule::SomeUnread),
    Bar(1, u"mnuPopupBar4"),
    Item(1, u"mnuPopupDelete", u"削除(&D)", Command::Delete, Rule::Deletable),
    Bar(1, u"mnuPopupBar5"),
    Item(1, u"mnuPopupAllSelect", u"全て選択(&A)", Command::SelectAll, Rule::Messages),
    Item(1, u"mnuPopupReverseSelect", u"選択範囲反転(&V)", Command::ReverseSelection, Rule::Messages),
    Bar(1, u"mnuPopupBar6"),
    Item(1, u"mnuPopupInReplyTo", u"レス元へ移動(&I)", Command::InReplyTo, Rule::SingleReply),
    Item(1, u"mnuPopupRelate", u"関連検索(&K)", Command::Relate, Rule::Single),
};

constexpr std::array TextAndTrayPopups = {
    Top(u"mnuText", u"テキスト"),
    Item(1, u"mnuTextFind", u"検索(&F)...", Command::TextFind, Rule::Idle),
    Item(1, u"mnuTextRelate", u"関連検索(&K)", Command::RelateText, Rule::Open),
    Bar(1, u"mnuTextBar1"),
    Item(1, u"mnuTextURL", u"このURLへ(&U)...", Command::OpenUrl),
    Bar(1, u"mnuTextBar2"),
    Array(1, u"mnuTextWebSearch"),
    Bar(1, u"mnuTextBar3"),
    Inert(1, u"mnuTextMSDN", u"MSDNで検索(&M)..."),
    Bar(1, u"mnuTextBar4"),
    Item(1, u"mnuTextCopy", u"コピー(&C)", Command::CopyText),
    Item(1, u"mnuTextCopyHeader", u"ヘッダ付コピー(&H)", Command::CopyWithHeader, Rule::Open),
    Top(u"mnuTray", u"タスクトレイ"),
    Item(1, u"mnuTrayShow", u"表示(&V)", Command::ShowWindow),
    Sub(1, u"mnuTrayBBS", u"指定した掲示板を表示(&B)"),
    Array(2, u"mnuTrayBBSSub"),
    Bar(1, u"mnuTrayBar1"),
    Item(1, u"mnuTrayLoad", u"受信(&L)", Command::TrayExecute, Rule::Idle, {}, {}, 7),
    Item(1, u"mnuTrayVisitLoad", u"巡回受信(&I)", Command::TrayExecute, Rule::Idle, {}, {}, 9),
    Bar(1, u"mnuTrayBar2"),
    Sub(1, u"mnuTrayNew", u"新規投稿(&N)"),
    Array(2, u"mnuTrayNewSub"),
    Bar(1, u"mnuTrayBar3"),
    Run(1, u"mnuTrayExit", u"終了(&X)", 5, {}, Rule::Always),
};

template<std::size_t... Sizes> constexpr auto Join(const std::array<MenuItem, Sizes>&... Parts)
{
    std::array<MenuItem, (Sizes + ...)> all{};
    auto out = all.begin();
    ((out = std::copy(Parts.begin(), Parts.end(), out)), ...);
    return all;
}

constexpr auto MenuBarTable = Join(FileMenu, BoardMenu, MoveMenu, MessageMenu, ToolMenu);
constexpr auto PopupTable = Join(ListPopup, TextAndTrayPopups);

constexpr ToolButton ToolbarTable[] = {
    {u"BBSList", u"掲示板一覧", u"掲示板一覧", Command::BoardListButton, 0, Rule::Open},
    {u"Back", u"前のn件", u"前のn件(F7)", Command::ViewMode, 1, Rule::ViewMode},
    {u"Forword", u"次のn件", u"次のn件(F8)", Command::ViewMode, 2, Rule::ViewMode},
    {{}, {}, {}},
    {u"Load", u"受信", u"受信(F5)", Command::Execute, 7, Rule::Idle},
    {u"VisitLoad", u"巡回受信", u"巡回受信(Shift+F5)", Command::Execute, 9, Rule::Idle},
    {{}, {}, {}},
    {u"New", u"新規投稿", u"新規投稿(Ctrl+N)", Command::Execute, 11, Rule::Open},
    {u"Reply", u"返信", u"返信(Ctrl+R)", Command::Execute, 12, Rule::Selection},
    {{}, {}, {}},
    {u"FindText", u"検索文字", u"検索文字"},
    {u"FindNext", u"次を検索", u"次を検索(F3)", Command::FindNext, 0, Rule::Open},
    {u"FindPrev", u"前を検索", u"前を検索(Shift+F3)", Command::FindPrev, 0, Rule::Open},
    {{}, {}, {}},
    {u"Thread", u"スレッド表示", u"スレッド表示(Ctrl+T)", Command::Thread, 0, Rule::Messages},
    {{}, {}, {}},
    {u"SQL", u"クエリー検索", u"クエリー検索(Ctrl+Q)", Command::Query, 0, Rule::Idle},
    {{}, {}, {}},
    {u"Timer", u"タイマー", u"タイマー", Command::Timer},
    {u"Option", u"オプション", u"オプション...", Command::Options, 0, Rule::Idle},
};

constexpr Panel PanelTable[] = {
    {u"Mail", u"クリックするとメールを送ります。", 0},
    {u"HomePage", u"クリックするとこのホームページへジャンプします。", 0},
    {u"Status", {}, 0},
    {u"NoReadPoint", u"クリックすると未読位置を変更できます。", 18},
    {u"Count", u"未読 / 表示数", 14},
    {u"Timer", u"タイマーの残り時間", 4},
};

// Of the moving keys only those repeat that pass a message by without reading it: Space held down would leave a trail
// of messages marked as read that nobody has seen. Esc held down must not minimise the window after it has closed a
// list.
constexpr Key KeyTable[] = {
    {Qt::Key_Escape, Modifiers::Any, Command::Escape, {}, true},
    {Qt::Key_F10, Modifiers::None, Command::MenuBar, {}, true},
    {Qt::Key_F10, Modifiers::Shift, Command::ContextMenu, {}, true},
    {Qt::Key_F4, Modifiers::None, Command::PopupBoards, {}},
    {Qt::Key_L, Modifiers::Ctrl, Command::PopupBoards, {}},
    {Qt::Key_F8, Modifiers::Alt, Command::BoardProperties, {}},
    {Qt::Key_Backspace, Modifiers::Any, Command::InReplyTo, u"mnuMoveInReplyTo"},
    {Qt::Key_Delete, Modifiers::Any, Command::Delete, u"mnuMsgDelete"},
    {Qt::Key_B, Modifiers::Ctrl, Command::MarkRead, u"mnuMsgRead"},
    {Qt::Key_B, Modifiers::CtrlShift, Command::MarkNoRead, u"mnuMsgNoRead"},
    {Qt::Key_M, Modifiers::NoneOrCtrl, Command::PopupMarks, {}},
    {Qt::Key_K, Modifiers::None, Command::PrevMessage, u"mnuMovePrevMsg", false, true},
    {Qt::Key_J, Modifiers::None, Command::NextMessage, u"mnuMoveNextMsg", false, true},
    {Qt::Key_Left, Modifiers::Alt, Command::HistoryBack, u"mnuMovePrevArchive", false, true},
    {Qt::Key_Right, Modifiers::Alt, Command::HistoryForward, u"mnuMoveNextArchive", false, true},
    {Qt::Key_Space, Modifiers::None, Command::NextUnread, u"mnuMoveNextNoRead"},
    {Qt::Key_Space, Modifiers::Shift, Command::PrevUnreadByKey, u"mnuMovePrevNoRead"},
    // The plus sign lies on ";" on Japanese keyboards and on "=" on English ones, both with Shift.
    {Qt::Key_Plus, Modifiers::Ctrl, Command::TextLarger, {}, false, true},
    {Qt::Key_Plus, Modifiers::CtrlShift, Command::TextLarger, {}, false, true},
    {Qt::Key_Semicolon, Modifiers::Ctrl, Command::TextLarger, {}, false, true},
    {Qt::Key_Semicolon, Modifiers::CtrlShift, Command::TextLarger, {}, false, true},
    {Qt::Key_Equal, Modifiers::Ctrl, Command::TextLarger, {}, false, true},
    {Qt::Key_Minus, Modifiers::Ctrl, Command::TextSmaller, {}, false, true},
    {Qt::Key_0, Modifiers::Ctrl, Command::TextUsual, {}},
};

bool Matches(Modifiers Wanted, Qt::KeyboardModifiers Pressed)
{
    switch (Wanted) {
    case Modifiers::None:
        return Pressed == Qt::NoModifier;
    case Modifiers::Shift:
        return Pressed == Qt::ShiftModifier;
    case Modifiers::Ctrl:
        return Pressed == Qt::ControlModifier;
    case Modifiers::CtrlShift:
        return Pressed == (Qt::ControlModifier | Qt::ShiftModifier);
    case Modifiers::Alt:
        return Pressed == Qt::AltModifier;
    case Modifiers::NoneOrCtrl:
        return Pressed == Qt::NoModifier || Pressed == Qt::ControlModifier;
    case Modifiers::Any:
        return true;
    }
    return false;
}

} // namespace

std::span<const MenuItem> MenuBar() { return MenuBarTable; }

std::span<const MenuItem> PopupMenus() { return PopupTable; }

std::span<const ToolButton> Toolbar() { return ToolbarTable; }

std::span<const Panel> Panels() { return PanelTable; }

std::span<const Key> Keys() { return KeyTable; }

const Key* FindKey(int Code, Qt::KeyboardModifiers Pressed)
{
    Pressed &= ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    const auto found = std::find_if(std::begin(KeyTable), std::end(KeyTable),
                                    [&](const Key& Line) { return Line.Code == Code && Matches(Line.With, Pressed); });
    return found == std::end(KeyTable) ? nullptr : &*found;
}

} // namespace mdlCommands
