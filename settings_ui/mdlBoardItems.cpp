// settings_ui/mdlBoardItems.cpp
// Boards as items of a list: the text is the name, the item's data the number.

#include "settings_ui/mdlBoardItems.h"

#include <QListWidget>

namespace mdlBoardItems
{

qint32 NumberOf(const QListWidgetItem& Item) { return Item.data(Qt::UserRole).toInt(); }

QListWidgetItem* Insert(QListWidget& List, int Row, qint32 BBS_ID, const QString& Name)
{
    auto* item = new QListWidgetItem(Name);
    item->setData(Qt::UserRole, BBS_ID);
    List.insertItem(Row, item);
    return item;
}

QListWidgetItem* InsertByNumber(QListWidget& List, qint32 BBS_ID, const QString& Name)
{
    int row = 0;
    for (; row < List.count(); ++row) {
        const qint32 other = NumberOf(*List.item(row));
        if (other == Separator || other > BBS_ID)
            break;
    }
    return Insert(List, row, BBS_ID, Name);
}

int RowOf(const QListWidget& List, qint32 BBS_ID)
{
    for (int row = 0; row < List.count(); ++row) {
        if (NumberOf(*List.item(row)) == BBS_ID)
            return row;
    }
    return -1;
}

QString Numbers(const QListWidget& List)
{
    QStringList numbers;
    for (int row = 0; row < List.count(); ++row) {
        if (const qint32 number = NumberOf(*List.item(row)); number != Separator)
            numbers << QString::number(number);
    }
    return numbers.join(u',');
}

} // namespace mdlBoardItems
