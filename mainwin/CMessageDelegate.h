// mainwin/CMessageDelegate.h
// Paints the cells of a message list: unread in bold, the mark's colour, the board's picture.

#ifndef MAINWIN_CMESSAGEDELEGATE_H
#define MAINWIN_CMESSAGEDELEGATE_H

#include <QIcon>
#include <QStyledItemDelegate>

#include <functional>

class CMessageDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// Side of a board's picture in pixels at 100 %.
    static constexpr int IconSide = 16;

    CMessageDelegate(std::function<QIcon(qint32)> BoardIcon, QObject* Parent);

    QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* Option, const QModelIndex& Index) const override;

private:
    std::function<QIcon(qint32)> m_boardIcon;
};

#endif
