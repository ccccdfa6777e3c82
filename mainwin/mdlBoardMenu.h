// mainwin/mdlBoardMenu.h
// The entries of the board menus, planned from the boards and their places, without a menu.

#ifndef MAINWIN_MDLBOARDMENU_H
#define MAINWIN_MDLBOARDMENU_H

#include <QString>

#include <vector>

namespace mdlBoardMenu
{

/// A shown board as the menus need it. ListOrder is its place, 0 and up.
struct Board
{
    qint32 BBS_ID = 0;
    qint32 ListOrder = 0;
    QString Name;
};

/// One entry: a board, or a separator (BBS_ID 0 and Caption "-").
struct Entry
{
    qint32 BBS_ID = 0;
    QString Caption;
    bool IsSeparator() const { return BBS_ID == 0; }
    bool operator==(const Entry&) const = default;
};

/// Most separators that one run of free places draws. A stray place such as 30000 must not make a menu of that length.
constexpr int MaxSeparators = 10;

/// The entries for Boards, which stand in ascending order of ListOrder.
///
/// A board's place in the menu is its ListOrder: each free place before it becomes a separator. The first nine boards
/// get the access keys 1 to 9, all later ones 0. An "&" in a name is doubled so that it shows.
std::vector<Entry> Plan(const std::vector<Board>& Boards);

/// Caption, followed by the number of unread messages in parentheses when there are any.
QString WithCount(const QString& Caption, int UnreadCount);

} // namespace mdlBoardMenu

#endif
