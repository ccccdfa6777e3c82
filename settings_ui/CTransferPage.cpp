// settings_ui/CTransferPage.cpp
// The options page for receiving, importing and the folders that both write to.

#include "settings_ui/CTransferPage.h"

#include "app/Application.h"
#include "controls/uSpinButton.h"
#include "settings_ui/CFolderField.h"
#include "settings_ui/PageParts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

constexpr qint32 LongestTimeout = 3600; // seconds
constexpr qint32 TimeoutStep = 10;

} // namespace

CTransferPage::CTransferPage(Application& App, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
{
    auto* layout = new QVBoxLayout(this);
    BuildTimes(*layout);
    BuildChecks(*layout);
    BuildFolders(*layout);
    layout->addStretch(1);
}

void CTransferPage::BuildTimes(QVBoxLayout& Layout)
{
    m_uspnTimeout = Named(new uSpinButton(this), u"uspnTimeout"_s);
    m_uspnTimeout->setSingleStep(TimeoutStep);
    auto* times = new QGridLayout;
    times->setColumnStretch(3, 1);
    mdlPage::AddField(*times, u"タイムアウトまでの時間(&O):"_s, m_uspnTimeout, mdlPage::Note(u"(単位：秒)"_s, this));
    Layout.addLayout(times);

    // Nothing receives by a timer: what the file says about it is shown and kept.
    auto* fraTimer = Named(new QGroupBox(u"タイマー"_s, this), u"fraTimer"_s);
    m_chkTimer = Named(new QCheckBox(u"タイマー受信をする(&T)"_s, fraTimer), u"chkTimer"_s);
    m_uspnInterval = Named(new uSpinButton(fraTimer), u"uspnInterval"_s);
    m_uspnInterval->setRange(mdlSettings::MinInterval, mdlSettings::MaxInterval);
    auto* interval = new QGridLayout(fraTimer);
    interval->setColumnStretch(3, 1);
    interval->addWidget(m_chkTimer, 0, 0, 1, 3);
    Named(mdlPage::AddField(*interval, u"受信間隔(&I):"_s, m_uspnInterval), u"lblInterval"_s);
    fraTimer->setEnabled(false);
    Layout.addWidget(fraTimer);
}

void CTransferPage::BuildChecks(QVBoxLayout& Layout)
{
    const auto add = [this, &Layout](const QString& Name, const QString& Caption) {
        auto* box = Named(new QCheckBox(Caption, this), Name);
        Layout.addWidget(box);
        return box;
    };
    m_chkExitIfMessageFound =
        add(u"chkExitIfMessageFound"_s, u"未読受信時、受信済みメッセージを見つけたら受信終了(&I)"_s);
    m_chkBlinkIcon = add(u"chkBlinkIcon"_s, u"受信時にアイコンをアニメーションさせる(&B)"_s);
    m_chkImportReadMode = add(u"chkImportReadMode"_s, u"既読状態でインポートする(&R)"_s);
    m_chkSaveLoadDialogPosition = add(u"chkSaveLoadDialogPosition"_s, u"受信ダイアログの位置とサイズを保存する(&S)"_s);
    m_chkAutoCloseImportDialog = add(u"chkAutoCloseImportDialog"_s, u"インポートダイアログを自動的に閉じる(&A)"_s);
}

void CTransferPage::BuildFolders(QVBoxLayout& Layout)
{
    m_txtCacheFileName = new CFolderField(m_app, u"txtCacheFileName"_s, u"キャッシュフォルダ"_s, this);
    m_txtErrorLogFilePath = new CFolderField(m_app, u"txtErrorLogFilePath"_s, u"エラーログフォルダ"_s, this);
    auto* folders = new QGridLayout;
    mdlPage::AddField(*folders, u"キャッシュフォルダ(&C):"_s, m_txtCacheFileName);
    mdlPage::AddField(*folders, u"エラーログフォルダ(&E):"_s, m_txtErrorLogFilePath);
    Layout.addLayout(folders);
}

void CTransferPage::Load()
{
    const Settings& option = m_app.Option();
    mdlPage::ShowNumber(*m_uspnTimeout, option.Timeout, 0, LongestTimeout);
    m_chkTimer->setChecked(option.Timer);
    m_uspnInterval->SetValue(option.Interval);
    m_chkExitIfMessageFound->setChecked(option.ExitIfMessageFound);
    m_chkBlinkIcon->setChecked(option.BlinkIcon);
    m_chkImportReadMode->setChecked(option.ImportReadMode);
    m_chkSaveLoadDialogPosition->setChecked(option.SaveLoadDialogPosition);
    m_chkAutoCloseImportDialog->setChecked(option.AutoCloseImportDialog);
    m_txtCacheFileName->SetFolder(option.CacheFilePath);
    m_txtErrorLogFilePath->SetFolder(option.ErrorLogFilePath);
}

bool CTransferPage::Validate() { return m_txtCacheFileName->Validate() && m_txtErrorLogFilePath->Validate(); }

void CTransferPage::Apply()
{
    Settings& option = m_app.Option();
    option.Timeout = m_uspnTimeout->Value();
    option.Timer = m_chkTimer->isChecked();
    option.Interval = m_uspnInterval->Value();
    option.ExitIfMessageFound = m_chkExitIfMessageFound->isChecked();
    option.BlinkIcon = m_chkBlinkIcon->isChecked();
    option.ImportReadMode = m_chkImportReadMode->isChecked();
    option.SaveLoadDialogPosition = m_chkSaveLoadDialogPosition->isChecked();
    option.AutoCloseImportDialog = m_chkAutoCloseImportDialog->isChecked();
    option.CacheFilePath = m_txtCacheFileName->Folder();
    option.ErrorLogFilePath = m_txtErrorLogFilePath->Folder();
}
