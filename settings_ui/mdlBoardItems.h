// settings_ui/mdlBoardItems.h
// Boards as items of a list: the text is the name, the item's data the number.

#ifndef SETTINGS_UI_MDLBOARDITEMS_H
#define SETTINGS_UI_MDLBOARDITEMS_H

#include <QString>

class QListWidget;
class QListWidgetItem;

namespace mdlBoardItems
{

/// Number of an item that is a line between boards and no board.
inline constexpr qint32 Separator = -1;

/// The board's number, or Separator.
qint32 NumberOf(const QListWidgetItem& Item);

/// Adds an item before Row; with the list's length as Row, at its end. The list owns it.
QListWidgetItem* Insert(QListWidget& List, int Row, qint32 BBS_ID, const QString& Name);
/// Adds an item where it belongs in a list that is ordered by numbers, with separators last.
QListWidgetItem* InsertByNumber(QListWidget& List, qint32 BBS_ID, const QString& Name);

/// The row of a board; -1 when it is not in the list.
int RowOf(const QListWidget& List, qint32 BBS_ID);
/// The numbers of all boards in the list, joined by ",": the inside of an IN condition. Empty when there is none.
QString Numbers(const QListWidget& List);

} // namespace mdlBoardItems

#endif
