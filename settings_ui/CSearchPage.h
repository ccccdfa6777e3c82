// settings_ui/CSearchPage.h
// The options page for the ways of finding a text.

#ifndef SETTINGS_UI_CSEARCHPAGE_H
#define SETTINGS_UI_CSEARCHPAGE_H

#include "settings_ui/CPropertyPage.h"

class Application;
class QCheckBox;

class CSearchPage : public CPropertyPage
{
    Q_OBJECT

public:
    CSearchPage(Application& App, QWidget* Parent);

    void Load() override;
    void Apply() override;

private:
    void UpdateEnabled();

    Application& m_app;
    QCheckBox* m_chkUseRegExp;
    QCheckBox* m_chkIgnoreCase; // checked: case counts
};

#endif
