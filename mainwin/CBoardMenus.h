// mainwin/CBoardMenus.h
// The four menus of boards, with the counts of unread messages behind the names, and the boards' pictures.

#ifndef MAINWIN_CBOARDMENUS_H
#define MAINWIN_CBOARDMENUS_H

#include "mainwin/mdlBoardMenu.h"
#include "mainwin/mdlCommands.h"

#include <QHash>
#include <QIcon>
#include <QObject>

#include <functional>

class Application;
class CMenuSet;
class QAction;
class QMenu;

/// Fills the drop-down of the toolbar and the arrays mnuBBSMoveSub, mnuTrayBBSSub and mnuTrayNewSub from the boards
/// that are shown, in their order. An entry of the drop-down is named "#" and the board's number in three digits.
class CBoardMenus : public QObject
{
    Q_OBJECT

public:
    CBoardMenus(Application& App, CMenuSet& Menus, QMenu& DropDown, QObject* Parent);

    /// Reads the boards anew. UnreadCount gives the number behind a board's name. False when no board is shown.
    /// Throws dao::Error; menus and pictures are then as they were.
    bool Rebuild(const std::function<int(qint32)>& UnreadCount);

    /// Whether the drop-down has an entry for the board.
    bool Contains(qint32 BBS_ID) const { return m_entries.contains(BBS_ID); }
    void SetCount(qint32 BBS_ID, int UnreadCount);

    /// The board's own picture, or the common one.
    QIcon Icon(qint32 BBS_ID) const;

Q_SIGNALS:
    void Triggered(mdlCommands::Command Handler, int Argument);

private:
    struct Shown
    {
        QString Caption;           ///< without the count
        QList<QAction*> Countable; ///< the entries that show the count
    };

    std::vector<mdlBoardMenu::Board> ReadBoards();
    void FillArray(const QString& Name, const std::vector<mdlBoardMenu::Entry>& Entries, mdlCommands::Command Handler);
    void FillDropDown(const std::vector<mdlBoardMenu::Entry>& Entries);
    void CollectEntries(const std::vector<mdlBoardMenu::Entry>& Entries);

    Application& m_app;
    CMenuSet& m_menus;
    QMenu& m_dropDown;
    QHash<qint32, Shown> m_entries;
    QHash<qint32, QIcon> m_icons;
    QIcon m_defaultIcon;
};

#endif
