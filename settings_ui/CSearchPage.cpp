// settings_ui/CSearchPage.cpp
// The options page for the ways of finding a text.

#include "settings_ui/CSearchPage.h"

#include "app/Application.h"
#include "settings_ui/PageParts.h"

#include <QCheckBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using mdlPage::Named;

CSearchPage::CSearchPage(Application& App, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
    , m_chkUseRegExp(Named(new QCheckBox(u"正規表現検索(&R)"_s, this), u"chkUseRegExp"_s))
    , m_chkIgnoreCase(Named(new QCheckBox(u"大文字と小文字を区別(&I)"_s, this), u"chkIgnoreCase"_s))
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_chkUseRegExp);
    layout->addWidget(m_chkIgnoreCase);
    layout->addStretch(1);
    connect(m_chkUseRegExp, &QCheckBox::toggled, this, &CSearchPage::UpdateEnabled);
}

void CSearchPage::Load()
{
    m_chkUseRegExp->setChecked(m_app.Option().UseRegExp);
    m_chkIgnoreCase->setChecked(!m_app.Option().IgnoreCase);
    UpdateEnabled();
}

void CSearchPage::Apply()
{
    m_app.Option().UseRegExp = m_chkUseRegExp->isChecked();
    m_app.Option().IgnoreCase = !m_chkIgnoreCase->isChecked();
}

/// A plain search takes no account of case at all.
void CSearchPage::UpdateEnabled() { m_chkIgnoreCase->setEnabled(m_chkUseRegExp->isChecked()); }
