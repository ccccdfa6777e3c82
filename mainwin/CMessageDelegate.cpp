// mainwin/CMessageDelegate.cpp
// Paints the cells of a message list: unread in bold, the mark's colour, the board's picture.

#include "mainwin/CMessageDelegate.h"

#include "mainwin/mdlColors.h"
#include "viewer/CMessageModel.h"

CMessageDelegate::CMessageDelegate(std::function<QIcon(qint32)> BoardIcon, QObject* Parent)
    : QStyledItemDelegate(Parent)
    , m_boardIcon(std::move(BoardIcon))
{}

QSize CMessageDelegate::sizeHint(const QStyleOptionViewItem& Option, const QModelIndex&) const
{
    // The rows are all alike; asking the model for texts to measure would cost a body each.
    return {0, qMax(Option.fontMetrics.height(), IconSide) + 4};
}

void CMessageDelegate::initStyleOption(QStyleOptionViewItem* Option, const QModelIndex& Index) const
{
    QStyledItemDelegate::initStyleOption(Option, Index);
    Option->textElideMode = Qt::ElideRight;
    Option->font.setBold(Index.data(CMessageModel::BoldRole).toBool());
    Option->fontMetrics = QFontMetrics(Option->font);
    if (const QVariant color = Index.data(CMessageModel::ColorRole); color.isValid())
        Option->palette.setColor(QPalette::Text, mdlColors::MarkColor(color.toUInt(), Option->palette));
    if (const QVariant board = Index.data(CMessageModel::BoardRole); board.isValid()) {
        Option->icon = m_boardIcon(board.toInt());
        Option->decorationSize = {IconSide, IconSide};
        Option->features |= QStyleOptionViewItem::HasDecoration;
    }
}
