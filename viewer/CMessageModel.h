// viewer/CMessageModel.h
// A message list as an item model for a view.

#ifndef VIEWER_CMESSAGEMODEL_H
#define VIEWER_CMESSAGEMODEL_H

#include <QAbstractTableModel>

#include <vector>

class CMessageList;
struct Settings;

/// Mirrors one CMessageList. Selection is not mirrored: the view takes it from the list.
class CMessageModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        BoldRole = Qt::UserRole + 1, ///< bool: an unread message, unless the user wants none in bold
        ColorRole, ///< quint32: text colour of a marked message (red + 256 x green + 65536 x blue, or 0x80000000 + a
                   ///< system colour); invalid where the view's own colour is due
        BoardRole  ///< qint32: BBS_ID for the icon of column 0; invalid in other columns and for a raw table
    };

    /// Longest text of a body cell; a list row shows one line.
    static constexpr int BodyLength = 200;
    /// Longest text of any other cell, in UTF-16 units, more than any screen has room for: in a thread of thousands of
    /// answers to answers the indentation alone would take seconds to draw.
    static constexpr int TextLength = 1000;

    /// Both must outlive the model.
    CMessageModel(const CMessageList& List, const Settings& Option, QObject* Parent = nullptr);

    int rowCount(const QModelIndex& Parent = {}) const override;
    int columnCount(const QModelIndex& Parent = {}) const override;
    QVariant data(const QModelIndex& Index, int Role = Qt::DisplayRole) const override;
    QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& Index) const override;

private:
    void OnReordered(const std::vector<int>& NewRows);
    QString DisplayText(int Row, int Column) const;
    QVariant ToolTip(int Row, int Column) const;

    const CMessageList& m_list;
    const Settings& m_option;
};

#endif // VIEWER_CMESSAGEMODEL_H
