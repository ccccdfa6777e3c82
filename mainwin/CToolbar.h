// mainwin/CToolbar.h
// The toolbar of the main window: its buttons from their table, the drop-down of boards and the find box.

#ifndef MAINWIN_CTOOLBAR_H
#define MAINWIN_CTOOLBAR_H

#include "mainwin/mdlEnabling.h"

#include <QHash>
#include <QToolBar>

class QComboBox;
class QMenu;

/// Named "Toolbar"; each button is named "Toolbar" + its key, and so is its action.
class CToolbar : public QToolBar
{
    Q_OBJECT

public:
    explicit CToolbar(QWidget* Parent);

    /// The action behind a button, by key; nullptr for an unknown key.
    QAction* Button(QStringView Key) const;
    /// The drop-down of the button BBSList.
    QMenu& BoardMenu() const { return *m_boardMenu; }
    /// The box in the place of the button FindText.
    QComboBox& FindBox() const { return *m_findBox; }

    void UpdateEnabled(const mdlEnabling::WindowFacts& Facts);

Q_SIGNALS:
    void Triggered(mdlCommands::Command Handler, int Argument);

protected:
    void changeEvent(QEvent* Event) override;

private:
    void ColorPlaceholder();
    void AddButton(const mdlCommands::ToolButton& Source);
    void AddFindBox(const mdlCommands::ToolButton& Source);
    void AddBoardMenu();

    QMenu* m_boardMenu = nullptr;
    QComboBox* m_findBox = nullptr;
    QHash<QStringView, QAction*> m_buttons;
};

#endif
