// mainwin/CMenuSet.h
// The menus of the main window, built from their tables: menu bar, pop-ups, arrays made at run time.

#ifndef MAINWIN_CMENUSET_H
#define MAINWIN_CMENUSET_H

#include "mainwin/mdlEnabling.h"

#include <QHash>
#include <QObject>

#include <vector>

class CMenuBar;
class QAction;
class QMainWindow;
class QMenu;

/// Owns nothing: menus and actions are children of the window. Every one carries its name as objectName (an entry of an
/// array its name followed by its index), menus and the actions that open them alike.
class CMenuSet : public QObject
{
    Q_OBJECT

public:
    /// An entry of an array. Index numbers it within the array (1 and up; 0 is the hidden placeholder).
    struct Entry
    {
        int Index = 0;
        QString Caption; ///< ignored for a separator
        mdlCommands::Command Handler = mdlCommands::Command::None;
        int Argument = 0;
        bool IsSeparator = false;
        bool IsCheckable = false;
        mdlCommands::Rule When = mdlCommands::Rule::Always;
    };

    /// Fills the menu bar of Window and makes the pop-up menus. Actions with a shortcut are added to the window itself,
    /// so that they work while their menu is hidden.
    explicit CMenuSet(QMainWindow& Window);

    /// The action of an item, a menu or an array entry ("mnuBBSViewSub3"); nullptr for an unknown name.
    QAction* Action(const QString& Name) const;
    /// nullptr for an unknown name.
    QMenu* Menu(const QString& Name) const;

    /// Replaces the run-time entries of an array. The placeholder stays, hidden.
    void SetArray(const QString& Name, const std::vector<Entry>& Entries);

    /// Gives an item of a pop-up menu the caption of its twin in the menu bar.
    void TakeText(const QString& Name, const QString& Twin);

    /// Sets the enabled state of every item.
    void UpdateEnabled(const mdlEnabling::WindowFacts& Facts);

Q_SIGNALS:
    void Triggered(mdlCommands::Command Handler, int Argument);

private:
    struct Known
    {
        mdlCommands::Rule When = mdlCommands::Rule::Always;
        int Argument = 0;
    };

    void Build(std::span<const mdlCommands::MenuItem> Table, bool IsMenuBar);
    QMenu* AddMenu(const mdlCommands::MenuItem& Item, QMenu* Parent, bool IsMenuBar);
    void AddItem(const mdlCommands::MenuItem& Item, QMenu& Parent);
    void AddShortcut(QAction& Action, QStringView Shortcut);
    QAction* MakeEntry(const QString& Array, const Entry& Source, QMenu& Parent);
    void Connect(QAction& Action, mdlCommands::Command Handler, int Argument);
    void Remember(QAction& Action, const QString& Name, Known Rule);

    QMainWindow& m_window;
    CMenuBar* m_bar;
    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
    QHash<QAction*, Known> m_rules;
    QHash<QString, QMenu*> m_arrayMenus;
    QHash<QString, QList<QAction*>> m_arrays;
};

#endif
