// settings_ui/CCheckDelegate.h
// Draws the rows of a list whose items have check boxes.

#ifndef SETTINGS_UI_CCHECKDELEGATE_H
#define SETTINGS_UI_CCHECKDELEGATE_H

#include <QStyledItemDelegate>

/// Draws a rim of its own around each box: in a dark palette the style's rim cannot be told from the list, and an empty
/// box could not be seen.
class CCheckDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* Painter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
};

#endif
