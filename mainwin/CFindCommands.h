// mainwin/CFindCommands.h
// The find commands of the main window, its find box with the history, and the find dialog.

#ifndef MAINWIN_CFINDCOMMANDS_H
#define MAINWIN_CFINDCOMMANDS_H

#include "platform/desktop/CComposing.h"
#include "viewer/CFinder.h"

#include <QObject>

class Application;
class CMRUCombo;
class CMessagePane;
class QComboBox;
class QWidget;
class frmFind;

/// Owned by the main window. Whatever finds is asked for by FindAsked, so that the window can run it as it runs its
/// commands.
class CFindCommands : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it. Window owns the dialog.
    CFindCommands(Application& App, const CFinder& Finder, QComboBox& Box, CMessagePane& Pane, QWidget& Window);

    /// Fills the box's history from the settings file, or stores it there.
    void LoadHistory();
    void SaveHistory();

    /// Opens the find dialog with the selected text of the pane, or with the box's.
    void OpenDialog();
    void CloseDialog();
    /// The settings of the search were changed elsewhere.
    void AdoptSettings();
    /// Finds the box's text; with an empty box it goes there and remembers the direction for Enter.
    void FindNext();
    void FindPrev();
    /// One find step, with what the user is told when it finds nothing. May show a box.
    void FindMessage(const QString& Text, bool Forward);

    /// Whether the window lets the user find now.
    void SetFindAllowed(bool IsAllowed);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// Enter in the box, or a button of the dialog.
    void FindAsked(const QString& Text, bool Forward);
    /// A row that is no message has been found: its list is to have the focus.
    void RowFound();
    /// For the status bar.
    void Told(const QString& Text);

private:
    void FindBoxText(bool Forward);
    bool OnBoxKey(int Key);

    Application& m_app;
    CFinder m_finder;
    QComboBox& m_box;
    CMessagePane& m_pane;
    QWidget& m_window;
    CMRUCombo* m_history;
    frmFind* m_dialog = nullptr; // made when it is first asked for
    bool m_isForward = true;     // what Enter in the box does
    bool m_isAllowed = true;
    CComposing m_composing; // in the box
};

#endif
