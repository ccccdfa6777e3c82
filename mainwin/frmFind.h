// mainwin/frmFind.h
// The find dialog: what is looked for, how, and in which direction.

#ifndef MAINWIN_FRMFIND_H
#define MAINWIN_FRMFIND_H

#include "platform/desktop/CComposing.h"

#include <QDialog>

class Application;
class CMRUCombo;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

/// Stays open beside the main window until it is closed; finds nothing by itself. The ways of searching are settings,
/// which each find writes.
class frmFind : public QDialog
{
    Q_OBJECT

public:
    frmFind(Application& App, QWidget* Owner);
    ~frmFind() override;

    /// Opens the dialog with Text in its box and History, most recent first, in its list. One that is open already
    /// comes to the front and takes Text, unless that is empty.
    void ShowDialog(const QString& Text, const QStringList& History);

    /// Shows the settings anew, when they were changed elsewhere: the next find would change them back.
    void TakeSettings();

    /// While it is not allowed, the buttons are disabled.
    void SetFindAllowed(bool IsAllowed);

    /// Moves the dialog aside when it covers Place (in screen coordinates).
    void KeepClearOf(const QRect& Place);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// The settings are written; Text is not empty.
    void FindRequested(const QString& Text, bool Forward);

private:
    void BuildControls();
    QPushButton* MakeButton(const QString& Name, const QString& Caption, const QKeySequence& Key);
    void BuildLayout();
    void Prepare(const QStringList& History);
    void PlaceOver(const QWidget& Owner);
    void UpdateEnabled();
    void Find(bool Forward);

    Application& m_app;
    QLabel* m_lblFindText = nullptr;
    QComboBox* m_cmbFindText = nullptr;
    QCheckBox* m_chkUseRegExp = nullptr;
    QCheckBox* m_chkIgnoreCase = nullptr; // checked: case counts
    QPushButton* m_cmdFindNext = nullptr;
    QPushButton* m_cmdFindPrev = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    CMRUCombo* m_history = nullptr;
    bool m_isAllowed = true;
    bool m_isPlaced = false;
    CComposing m_composing; // in the box
};

#endif
