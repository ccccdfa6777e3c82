// settings_ui/CCheckDelegate.cpp
// Draws the rows of a list whose items have check boxes.

#include "settings_ui/CCheckDelegate.h"

#include <QPainter>
#include <QStyle>

void CCheckDelegate::paint(QPainter* Painter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const
{
    QStyledItemDelegate::paint(Painter, Option, Index);
    QStyleOptionViewItem row = Option;
    initStyleOption(&row, Index);
    const QRect box = row.widget->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &row, row.widget);
    Painter->save();
    Painter->setPen(row.palette.color(QPalette::PlaceholderText));
    Painter->drawRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5));
    Painter->restore();
}
