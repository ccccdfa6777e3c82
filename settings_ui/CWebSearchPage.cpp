// settings_ui/CWebSearchPage.cpp
// The options page for the web searches that the menu of the selected text offers.

#include "settings_ui/CWebSearchPage.h"

#include "app/Application.h"
#include "platform/desktop/CFocusRim.h"
#include "platform/desktop/ShellTarget.h"
#include "platform/desktop/desktop.h"
#include "settings_ui/PageParts.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

enum Column { NameColumn, UrlColumn };

QString Section() { return u"WebSearch"_s; }

bool IsLineBreak(QChar Unit)
{
    return Unit == u'\r' || Unit == u'\n' || Unit == QChar::LineSeparator || Unit == QChar::ParagraphSeparator;
}

/// A line of the settings file is "name=address".
bool CanBeKey(const QString& Name) { return !Name.contains(u'=') && !Name.startsWith(u'[') && !Name.startsWith(u';'); }

/// Whether a menu shows anything for Name: "&" alone is only the mark of an access key.
bool IsVisibleName(const QString& Name) { return !QString(Name).remove(u'&').trimmed().isEmpty(); }

bool CanBeOpened(QString Url) { return mdlShell::AcceptTarget(Url.replace(u"%s"_s, u"x"_s)).has_value(); }

} // namespace

CWebSearchPage::CWebSearchPage(Application& App, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
{
    BuildList();
    BuildFields();
    BuildLayout();
    OnSelected();
    ShowUrlNote();
}

void CWebSearchPage::BuildList()
{
    m_lsvWebSearch = Named(new QTreeWidget(this), u"lsvWebSearch"_s);
    m_lsvWebSearch->setAccessibleName(u"検索の一覧"_s);
    m_lsvWebSearch->setHeaderLabels({u"名前"_s, u"URL"_s});
    m_lsvWebSearch->setRootIsDecorated(false);
    m_lsvWebSearch->setUniformRowHeights(true);
    m_lsvWebSearch->setAllColumnsShowFocus(true);
    new CFocusRim(*m_lsvWebSearch);
    connect(m_lsvWebSearch, &QTreeWidget::itemSelectionChanged, this, &CWebSearchPage::OnSelected);
    connect(m_lsvWebSearch, &QTreeWidget::itemClicked, this, &CWebSearchPage::OnSelected); // after other text was typed
}

void CWebSearchPage::BuildFields()
{
    m_txtWebSearchName = Named(new QLineEdit(this), u"txtWebSearchName"_s);
    m_txtWebSearchURL = Named(new QLineEdit(this), u"txtWebSearchURL"_s);
    m_lblUrlNote = Named(mdlPage::LongNote({}, this), u"lblUrlNote"_s);
    m_cmdAddSearch = Named(new QPushButton(u"追加/置換(&R)"_s, this), u"cmdAddSearch"_s);
    m_cmdDelSearch = Named(new QPushButton(u"削除(&D)"_s, this), u"cmdDelSearch"_s);
    for (QLineEdit* field : {m_txtWebSearchName, m_txtWebSearchURL})
        field->installEventFilter(this);
    connect(m_txtWebSearchURL, &QLineEdit::textChanged, this, &CWebSearchPage::ShowUrlNote);
    connect(m_cmdAddSearch, &QPushButton::clicked, this, &CWebSearchPage::OnAddSearch);
    connect(m_cmdDelSearch, &QPushButton::clicked, this, &CWebSearchPage::OnDelSearch);
    auto* del = new QShortcut(QKeySequence(Qt::Key_Delete), m_lsvWebSearch, nullptr, nullptr, Qt::WidgetShortcut);
    connect(del, &QShortcut::activated, m_cmdDelSearch, &QPushButton::click);
}

void CWebSearchPage::BuildLayout()
{
    auto* form = new QGridLayout;
    mdlPage::AddField(*form, u"メニュー文字列(&N):"_s, m_txtWebSearchName);
    form->addWidget(mdlPage::LongNote(u"前に「&」を付けるとアクセスキーとなります。"_s, this), form->rowCount(), 1);
    mdlPage::AddField(*form, u"URL(&U):"_s, m_txtWebSearchURL);
    form->addWidget(mdlPage::LongNote(u"検索文字が入るところに%sを入れてください。"_s, this), form->rowCount(), 1);
    form->addWidget(m_lblUrlNote, form->rowCount(), 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cmdAddSearch);
    buttons->addWidget(m_cmdDelSearch);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_lsvWebSearch, 1);
    layout->addLayout(form);
    layout->addLayout(buttons);
}

void CWebSearchPage::Load()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    for (const QString& key : ini.Keys())
        new QTreeWidgetItem(m_lsvWebSearch, {key, ini.Data(key)});
    m_lsvWebSearch->resizeColumnToContents(NameColumn);
}

void CWebSearchPage::Apply()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    ini.Clear();
    for (int row = 0; row < m_lsvWebSearch->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* entry = m_lsvWebSearch->topLevelItem(row);
        ini.SetData(entry->text(NameColumn), entry->text(UrlColumn));
    }
    if (!ini.Save(Section()))
        m_app.Shell.MessageBox(u"設定ファイル\""_s + ini.FileName() +
                                   u"\"に書き込めませんでした。\n変更した内容は終了するまでの間だけ有効です。"_s,
                               m_app.AppTitle(), Desktop::Icon::Exclamation);
}

// The list

QTreeWidgetItem* CWebSearchPage::Selected() const { return m_lsvWebSearch->selectedItems().value(0); }

/// Names are told apart as the settings file tells its keys apart.
QTreeWidgetItem* CWebSearchPage::Find(const QString& Name) const
{
    return m_lsvWebSearch->findItems(Name, Qt::MatchFixedString, NameColumn).value(0);
}

void CWebSearchPage::OnSelected()
{
    const QTreeWidgetItem* entry = Selected();
    m_cmdDelSearch->setEnabled(entry);
    if (!entry)
        return;
    m_txtWebSearchName->setText(entry->text(NameColumn));
    m_txtWebSearchURL->setText(entry->text(UrlColumn));
}

void CWebSearchPage::OnAddSearch()
{
    const QString name = EnteredName();
    const QString url = EnteredUrl();
    if (!IsVisibleName(name)) {
        mdlPage::Refuse(m_app, m_txtWebSearchName, u"メニュー文字列が入力されていません。"_s,
                        Desktop::Icon::Exclamation);
    } else if (url.isEmpty()) {
        mdlPage::Refuse(m_app, m_txtWebSearchURL, u"URLが入力されていません。"_s, Desktop::Icon::Exclamation);
    } else if (!CanBeKey(name)) {
        mdlPage::Refuse(m_app, m_txtWebSearchName,
                        u"メニュー文字列に「=」は使えません。また、「[」や「;」で始めることはできません。"_s,
                        Desktop::Icon::Exclamation);
    } else if (!mdlPage::CanBeKept(m_app, m_txtWebSearchName) || !mdlPage::CanBeKept(m_app, m_txtWebSearchURL)) {
        return; // the user knows
    } else if (QTreeWidgetItem* entry = Find(name)) {
        if (MayReplace(*entry))
            entry->setText(UrlColumn, url);
        m_lsvWebSearch->setCurrentItem(entry);
    } else {
        m_lsvWebSearch->setCurrentItem(new QTreeWidgetItem(m_lsvWebSearch, {name, url}));
    }
}

bool CWebSearchPage::MayReplace(const QTreeWidgetItem& Entry) const
{
    return m_app.Shell.MessageBox(u"メニュー文字列"_s + Entry.text(NameColumn) +
                                      u"は既に登録されています。\n置き換えますか？"_s,
                                  m_app.AppTitle(), Desktop::Icon::Exclamation, Desktop::Buttons::YesNo,
                                  Desktop::Answer::No) == Desktop::Answer::Yes;
}

void CWebSearchPage::OnDelSearch()
{
    QTreeWidgetItem* entry = Selected();
    if (!entry)
        return;
    const auto answer =
        m_app.Shell.MessageBox(entry->text(NameColumn) + u"を削除します。\nよろしいですか？"_s, m_app.AppTitle(),
                               Desktop::Icon::Exclamation, Desktop::Buttons::OkCancel, Desktop::Answer::Cancel);
    if (answer == Desktop::Answer::Ok)
        delete entry;
    m_lsvWebSearch->setFocus();
}

// The fields

/// Line breaks come in with what is pasted; neither a menu nor the settings file has room for them.
QString CWebSearchPage::EnteredName() const
{
    QString name = m_txtWebSearchName->text();
    std::replace_if(name.begin(), name.end(), IsLineBreak, u' ');
    return name.trimmed();
}

QString CWebSearchPage::EnteredUrl() const { return m_txtWebSearchURL->text().removeIf(IsLineBreak).trimmed(); }

bool CWebSearchPage::HasNewEntry() const
{
    const QTreeWidgetItem* entry = Find(EnteredName());
    return !EnteredName().isEmpty() && (!entry || entry->text(UrlColumn) != EnteredUrl());
}

/// The address is taken all the same: which ones can be opened is up to the desktop, which may change.
void CWebSearchPage::ShowUrlNote()
{
    const QString url = EnteredUrl();
    const bool isGood = url.isEmpty() || CanBeOpened(url);
    m_lblUrlNote->setText(isGood ? QString() : u"開けるのは http、https、ftp のアドレスだけです。"_s);
}

/// Enter takes what was typed into the list first; the next one closes the dialog.
bool CWebSearchPage::eventFilter(QObject* Watched, QEvent* Event)
{
    if (Event->type() == QEvent::KeyPress && HasNewEntry()) {
        const int key = static_cast<QKeyEvent*>(Event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            OnAddSearch();
            return true;
        }
    }
    return CPropertyPage::eventFilter(Watched, Event);
}
