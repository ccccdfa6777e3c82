// mainwin/mdlBoardMenu.cpp
// The entries of the board menus, planned from the boards and their places, without a menu.

#include "mainwin/mdlBoardMenu.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace mdlBoardMenu
{

namespace
{

QString CaptionOf(int Number, const QString& Name)
{
    QString shown = Name;
    shown.replace(u'&', u"&&"_s);
    return u"&%1. "_s.arg(Number < 10 ? Number : 0) + shown;
}

} // namespace

std::vector<Entry> Plan(const std::vector<Board>& Boards)
{
    std::vector<Entry> entries;
    qint64 place = 0; // the place that the next entry would take, counting separators that were not drawn
    int number = 0;
    for (const Board& board : Boards) {
        const qint64 gap = std::max<qint64>(0, board.ListOrder - place);
        entries.insert(entries.end(), std::size_t(std::min<qint64>(gap, MaxSeparators)), Entry{0, u"-"_s});
        entries.push_back({board.BBS_ID, CaptionOf(++number, board.Name)});
        place += gap + 1;
    }
    return entries;
}

QString WithCount(const QString& Caption, int UnreadCount)
{
    return UnreadCount > 0 ? Caption + u" ("_s + QString::number(UnreadCount) + u')' : Caption;
}

} // namespace mdlBoardMenu
