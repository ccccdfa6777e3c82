// settings_ui/CGeneralPage.cpp
// The options page for the lists, the window and the formats of texts.

#include "settings_ui/CGeneralPage.h"

#include "app/Application.h"
#include "controls/uSpinButton.h"
#include "platform/desktop/desktop.h"
#include "platform/text/DateTime.h"
#include "platform/text/Format.h"
#include "settings_ui/CFolderField.h"
#include "settings_ui/PageParts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

constexpr qint32 LongestReadTiming = 60000; // milliseconds
constexpr qint32 ReadTimingStep = 100;
constexpr qint32 AddMaxStep = 10;
constexpr int CharactersOfSample = 60; // a pattern may be a whole sentence

QString ReplyHeaderHelp()
{
    return u"%n 掲示板の名前　%s 短縮名　%I 記事番号　%S 題名\n%N 投稿者　%D 投稿日時　\\n 改行\n"
           "%B 選択文字列(引用記号付き)　%b 選択文字列"_s;
}

} // namespace

CGeneralPage::CGeneralPage(Application& App, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
{
    auto* layout = new QVBoxLayout(this);
    BuildFields(*layout);
    BuildChecks(*layout);
    layout->addStretch(1);
}

void CGeneralPage::BuildFields(QVBoxLayout& Layout)
{
    m_uspnAddMax = Named(new uSpinButton(this), u"uspnAddMax"_s);
    m_uspnAddMax->setRange(1, mdlSettings::MaxAddMax);
    m_uspnAddMax->setSingleStep(AddMaxStep);
    m_uspnReadTiming = Named(new uSpinButton(this), u"uspnReadTiming"_s);
    m_uspnReadTiming->setSingleStep(ReadTimingStep);
    m_txtReplyHeader = Named(new QLineEdit(this), u"txtReplyHeader"_s);
    m_txtReplyHeader->setToolTip(ReplyHeaderHelp());
    m_txtReplyHeader->setAccessibleDescription(ReplyHeaderHelp());
    m_txtDateFormat = Named(new QLineEdit(this), u"txtDateFormat"_s);
    m_lblDateSample = Named(mdlPage::Note({}, this), u"lblDateSample"_s);
    m_txtIconFilePath = new CFolderField(m_app, u"txtIconFilePath"_s, u"アイコンフォルダ"_s, this);
    connect(m_txtDateFormat, &QLineEdit::textChanged, this, &CGeneralPage::ShowSample);

    auto* numbers = new QGridLayout;
    numbers->setColumnStretch(3, 1);
    mdlPage::AddField(*numbers, u"一度に表示する件数(&M):"_s, m_uspnAddMax);
    mdlPage::AddField(*numbers, u"既読にするタイミング(&R):"_s, m_uspnReadTiming,
                      mdlPage::Note(u"(単位：ミリ秒)"_s, this));
    Layout.addLayout(numbers);
    auto* texts = new QGridLayout;
    mdlPage::AddField(*texts, u"ヘッダ付コピーの書式(&H):"_s, m_txtReplyHeader);
    mdlPage::AddField(*texts, u"日付の書式(&D):"_s, m_txtDateFormat);
    texts->addWidget(m_lblDateSample, texts->rowCount(), 1);
    mdlPage::AddField(*texts, u"アイコンフォルダ(&I):"_s, m_txtIconFilePath);
    Layout.addLayout(texts);
}

void CGeneralPage::BuildChecks(QVBoxLayout& Layout)
{
    m_chkNoReadBold = Named(new QCheckBox(u"未読記事を太字表示する(&B)"_s, this), u"chkNoReadBold"_s);
    m_chkSaveSQLDialogPosition = Named(new QCheckBox(u"クエリー検索ダイアログの位置とサイズを保存する(&S)"_s, this),
                                       u"chkSaveSQLDialogPosition"_s);
    m_chkAddTaskTray = Named(new QCheckBox(u"タスクトレイに格納する(&T)"_s, this), u"chkAddTaskTray"_s);
    m_chkHideAtMinimazed =
        Named(new QCheckBox(u"最小化時はタスクバーに表示しない(&V)"_s, this), u"chkHideAtMinimazed"_s);
    connect(m_chkAddTaskTray, &QCheckBox::toggled, this, &CGeneralPage::UpdateEnabled);
    for (QCheckBox* box : {m_chkNoReadBold, m_chkSaveSQLDialogPosition, m_chkAddTaskTray, m_chkHideAtMinimazed})
        Layout.addWidget(box);
    if (!m_app.Shell.HasTray()) {
        const QString text =
            u"このデスクトップには現在タスクトレイがありません。\n最小化してもウィンドウはタスクバーに残ります。"_s;
        Layout.addWidget(Named(mdlPage::LongNote(text, this), u"lblNoTray"_s));
    }
}

void CGeneralPage::Load()
{
    const Settings& option = m_app.Option();
    m_uspnAddMax->SetValue(option.AddMax);
    mdlPage::ShowNumber(*m_uspnReadTiming, option.ReadTiming, 0, LongestReadTiming);
    m_txtReplyHeader->setText(option.ReplyHeader);
    m_txtDateFormat->setText(option.DateFormat);
    m_txtIconFilePath->SetFolder(option.IconFilePath);
    m_chkNoReadBold->setChecked(option.NoReadBold);
    m_chkSaveSQLDialogPosition->setChecked(option.SaveSQLDialogPosition);
    m_chkAddTaskTray->setChecked(option.AddTaskTray);
    m_chkHideAtMinimazed->setChecked(option.HideAtMinimazed);
    UpdateEnabled();
    ShowSample();
}

bool CGeneralPage::Validate()
{
    if (m_txtReplyHeader->text().trimmed().isEmpty())
        return mdlPage::Refuse(m_app, m_txtReplyHeader, u"返信ヘッダが入っていません。"_s);
    if (m_txtDateFormat->text().trimmed().isEmpty())
        return mdlPage::Refuse(m_app, m_txtDateFormat, u"日付の書式が入っていません。"_s);
    return mdlPage::CanBeKept(m_app, m_txtReplyHeader) && mdlPage::CanBeKept(m_app, m_txtDateFormat) &&
           m_txtIconFilePath->Validate();
}

void CGeneralPage::Apply()
{
    Settings& option = m_app.Option();
    option.AddMax = m_uspnAddMax->Value();
    option.ReadTiming = m_uspnReadTiming->Value();
    option.ReplyHeader = m_txtReplyHeader->text();
    option.DateFormat = m_txtDateFormat->text();
    option.IconFilePath = m_txtIconFilePath->Folder();
    option.NoReadBold = m_chkNoReadBold->isChecked();
    option.SaveSQLDialogPosition = m_chkSaveSQLDialogPosition->isChecked();
    option.AddTaskTray = m_chkAddTaskTray->isChecked();
    option.HideAtMinimazed = m_chkHideAtMinimazed->isChecked();
}

void CGeneralPage::UpdateEnabled() { m_chkHideAtMinimazed->setEnabled(m_chkAddTaskTray->isChecked()); }

/// What the pattern makes of a moment whose day, month, hour and minute cannot be taken for each other.
void CGeneralPage::ShowSample()
{
    static const double moment = text::ToSerial(QDateTime(QDate(2003, 1, 5), QTime(9, 7)));
    const QString pattern = m_txtDateFormat->text();
    const QString sample = pattern.trimmed().isEmpty() ? QString() : text::FormatDate(moment, pattern);
    m_lblDateSample->setText(sample.isEmpty() ? QString() : u"例: "_s + sample.left(CharactersOfSample));
}
