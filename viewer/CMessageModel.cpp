// viewer/CMessageModel.cpp
// The cells of a message list as views ask for them.

#include "viewer/CMessageModel.h"

#include "app/Settings.h"
#include "viewer/CMessageList.h"
#include "viewer/mdlColumns.h"

using namespace Qt::StringLiterals;

namespace
{

/// The beginning of a body with its line ends as blanks.
QString OneLine(const QString& Body)
{
    QString line = Body.left(CMessageModel::BodyLength);
    if (line.size() < Body.size() && line.back().isHighSurrogate())
        line.chop(1);
    line.replace(u"\r\n"_s, u" "_s);
    for (QChar& c : line) {
        if (c == u'\r' || c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return line;
}

/// A tip is drawn as rich text when it looks like it; what people write must not become tags or pictures.
QString PlainTip(const QString& Text)
{
    return Text.contains(u'<') ? u"<qt>"_s + Text.toHtmlEscaped() + u"</qt>"_s : Text;
}

} // namespace

CMessageModel::CMessageModel(const CMessageList& List, const Settings& Option, QObject* Parent)
    : QAbstractTableModel(Parent)
    , m_list(List)
    , m_option(Option)
{
    connect(&List, &CMessageList::AboutToReset, this, [this] { beginResetModel(); });
    connect(&List, &CMessageList::WasReset, this, [this] { endResetModel(); });
    connect(&List, &CMessageList::AboutToInsert, this, [this](int Row) { beginInsertRows({}, Row, Row); });
    connect(&List, &CMessageList::Inserted, this, [this] { endInsertRows(); });
    connect(&List, &CMessageList::AboutToRemove, this,
            [this](int First, int Last) { beginRemoveRows({}, First, Last); });
    connect(&List, &CMessageList::Removed, this, [this] { endRemoveRows(); });
    connect(&List, &CMessageList::AboutToReorder, this,
            [this] { Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint); });
    connect(&List, &CMessageList::Reordered, this, &CMessageModel::OnReordered);
    connect(&List, &CMessageList::RowsChanged, this,
            [this](int First, int Last) { Q_EMIT dataChanged(index(First, 0), index(Last, columnCount() - 1)); });
    connect(&List, &CMessageList::HeadersChanged, this,
            [this] { Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1); });
}

int CMessageModel::rowCount(const QModelIndex& Parent) const { return Parent.isValid() ? 0 : m_list.Count(); }

int CMessageModel::columnCount(const QModelIndex& Parent) const { return Parent.isValid() ? 0 : m_list.ColumnCount(); }

QString CMessageModel::DisplayText(int Row, int Column) const
{
    if (!m_list.IsRaw() && Column != mdlColumns::Body)
        return m_list.Text(Row, Column).left(TextLength);
    return OneLine(m_list.Text(Row, Column));
}

QVariant CMessageModel::ToolTip(int Row, int Column) const
{
    const CMessageItem& item = m_list.Item(Row);
    if (!item.IsMessage())
        return {};
    if (Column == mdlColumns::Subject)
        return PlainTip(item.Message.Subject);
    if (Column == mdlColumns::Name)
        return PlainTip(item.Message.PostName);
    return {};
}

QVariant CMessageModel::data(const QModelIndex& Index, int Role) const
{
    if (!checkIndex(Index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = Index.row();
    const int column = Index.column();
    const CMessageItem& item = m_list.Item(row);
    switch (Role) {
    case Qt::DisplayRole:
        return DisplayText(row, column);
    case Qt::ToolTipRole:
        return ToolTip(row, column);
    case BoldRole:
        return item.IsMessage() && !item.Message.Read && m_option.NoReadBold;
    case ColorRole:
        if (column == mdlColumns::Read || item.ForeColor == CMessageItem::NormalColor)
            return {};
        return item.ForeColor;
    case BoardRole:
        return column == 0 && item.IsMessage() ? QVariant(item.Message.BBS_ID) : QVariant();
    default:
        return {};
    }
}

QVariant CMessageModel::headerData(int Section, Qt::Orientation Orientation, int Role) const
{
    if (Orientation != Qt::Horizontal || Role != Qt::DisplayRole || Section < 0 || Section >= m_list.ColumnCount())
        return {};
    return m_list.Header(Section);
}

Qt::ItemFlags CMessageModel::flags(const QModelIndex& Index) const
{
    return Index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void CMessageModel::OnReordered(const std::vector<int>& NewRows)
{
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& index : before)
        after.append(this->index(NewRows[static_cast<std::size_t>(index.row())], index.column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
