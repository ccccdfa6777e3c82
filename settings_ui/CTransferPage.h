// settings_ui/CTransferPage.h
// The options page for receiving, importing and the folders that both write to.

#ifndef SETTINGS_UI_CTRANSFERPAGE_H
#define SETTINGS_UI_CTRANSFERPAGE_H

#include "settings_ui/CPropertyPage.h"

class Application;
class CFolderField;
class QCheckBox;
class QVBoxLayout;
class uSpinButton;

class CTransferPage : public CPropertyPage
{
    Q_OBJECT

public:
    CTransferPage(Application& App, QWidget* Parent);

    void Load() override;
    bool Validate() override;
    void Apply() override;

private:
    void BuildTimes(QVBoxLayout& Layout);
    void BuildChecks(QVBoxLayout& Layout);
    void BuildFolders(QVBoxLayout& Layout);

    Application& m_app;
    uSpinButton* m_uspnTimeout = nullptr;
    QCheckBox* m_chkTimer = nullptr;
    uSpinButton* m_uspnInterval = nullptr;
    QCheckBox* m_chkExitIfMessageFound = nullptr;
    QCheckBox* m_chkBlinkIcon = nullptr;
    QCheckBox* m_chkImportReadMode = nullptr;
    QCheckBox* m_chkSaveLoadDialogPosition = nullptr;
    QCheckBox* m_chkAutoCloseImportDialog = nullptr;
    CFolderField* m_txtCacheFileName = nullptr;
    CFolderField* m_txtErrorLogFilePath = nullptr;
};

#endif
