// settings_ui/frmProperty.h
// The dialog with tabs that shows either the program's options or the properties of one board.

#ifndef SETTINGS_UI_FRMPROPERTY_H
#define SETTINGS_UI_FRMPROPERTY_H

#include "platform/dao/Error.h"
#include "platform/desktop/CComposing.h"

#include <QDialog>

#include <vector>

class Application;
class CBBSProperty;
class CPropertyPage;
class CVisitPage;
class QTabWidget;

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
    bool ShowOption(CBBSProperty& Board, qint32& InitialTab);

    /// Shows the properties of Board in the same way. True when closed with OK: the edited values are in Board, and the
    /// caller stores them; the places of all boards are stored already, and Board does not know its new one.
    bool ShowProperty(CBBSProperty& Board, qint32& InitialTab);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void BuildTabs();
    void BuildButtons();
    void AddPage(int Number, const QString& Caption, CPropertyPage* Page);
    void AddOptionPages();
    void AddBoardPages(CBBSProperty& Board);
    CVisitPage* AddSharedPages(const CBBSProperty& InView);
    bool Show(qint32& InitialTab);
    bool LoadPages();
    void FitToScreen();
    void WatchFields();

    void StepTab(int Step);
    void OnTabChanged(int Index);
    void FocusPage();
    void OnOK();
    bool ApplyAll();
    void ApplyToDatabase();
    bool Tell(const dao::Error& Refusal);

    Application& m_app;
    QTabWidget* m_tabStrip = nullptr;
    int m_current = 0;                   // the tab whose page is being edited
    bool m_isChanging = false;           // the tab, by the dialog itself
    std::vector<CPropertyPage*> m_pages; // in the order of the tabs
    // How OK applies them: what can be taken back, what one transaction covers, and last what nothing stops any more.
    std::vector<CPropertyPage*> m_settingsPages;
    std::vector<CPropertyPage*> m_databasePages;
    std::vector<CPropertyPage*> m_lastPages;
    CComposing m_composing; // in any field
};

#endif
