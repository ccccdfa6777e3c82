// settings_ui/frmProperty.h
// The dialog with tabs that shows either the program's options or the properties of one board.

#ifndef SETTINGS_UI_FRMPROPERTY_H
#define SETTINGS_UI_FRMPROPERTY_H

#include <QDialog>

class Application;
class CBBSProperty;

/// Made for one showing: call ShowOption or ShowProperty once.
class frmProperty : public QDialog
{
    Q_OBJECT

public:
    explicit frmProperty(Application& App, QWidget* Owner = nullptr);
    ~frmProperty() override;

    /// Shows the options. Board is the board in view: the display order must keep it. InitialTab is the tab to begin
    /// with, from 1, and afterwards the tab that was in front last. True when closed with OK: settings, web searches
    /// and the boards' visit flags and places are then changed; otherwise nothing is.
    bool ShowOption(CBBSProperty& Board, qint16& InitialTab);

    /// Shows the properties of Board in the same way. True when closed with OK: the edited values are in Board, and the
    /// caller stores them.
    bool ShowProperty(CBBSProperty& Board, qint16& InitialTab);
};

#endif
