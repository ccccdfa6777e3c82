// settings_ui/CGeneralPage.h
// The options page for the lists, the window and the formats of texts.

#ifndef SETTINGS_UI_CGENERALPAGE_H
#define SETTINGS_UI_CGENERALPAGE_H

#include "settings_ui/CPropertyPage.h"

class Application;
class CFolderField;
class QCheckBox;
class QLabel;
class QLineEdit;
class QVBoxLayout;
class uSpinButton;

class CGeneralPage : public CPropertyPage
{
    Q_OBJECT

public:
    CGeneralPage(Application& App, QWidget* Parent);

    void Load() override;
    bool Validate() override;
    void Apply() override;

private:
    void BuildFields(QVBoxLayout& Layout);
    void BuildChecks(QVBoxLayout& Layout);
    void UpdateEnabled();
    void ShowSample();

    Application& m_app;
    uSpinButton* m_uspnAddMax = nullptr;
    uSpinButton* m_uspnReadTiming = nullptr;
    QCheckBox* m_chkNoReadBold = nullptr;
    QCheckBox* m_chkSaveSQLDialogPosition = nullptr;
    QCheckBox* m_chkAddTaskTray = nullptr;
    QCheckBox* m_chkHideAtMinimazed = nullptr;
    QLineEdit* m_txtReplyHeader = nullptr;
    QLineEdit* m_txtDateFormat = nullptr;
    QLabel* m_lblDateSample = nullptr;
    CFolderField* m_txtIconFilePath = nullptr;
};

#endif
