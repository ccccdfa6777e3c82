// settings_ui/CFolderField.cpp
// Entry of a data folder: a text box and the button that lets one be chosen.

#include "settings_ui/CFolderField.h"

#include "app/Application.h"
#include "app/Path.h"
#include "platform/desktop/desktop.h"
#include "settings_ui/PageParts.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

CFolderField::CFolderField(Application& App, const QString& Name, const QString& Label, QWidget* Parent)
    : QWidget(Parent)
    , m_app(App)
    , m_label(Label)
    , m_box(mdlPage::Named(new QLineEdit(this), Name))
{
    auto* browse = new QPushButton(u"参照..."_s, this);
    browse->setObjectName(u"cmdBrowse"_s + Name.mid(3)); // behind "txt"
    browse->setAccessibleName(Label + u"を参照"_s);
    connect(browse, &QPushButton::clicked, this, &CFolderField::Choose);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_box, 1);
    row->addWidget(browse);
    m_box->setAccessibleName(Label);
    setFocusProxy(m_box);
}

QString CFolderField::Folder() const { return m_box->text().trimmed(); }

void CFolderField::SetFolder(const QString& Folder) { m_box->setText(Folder); }

bool CFolderField::Validate()
{
    if (Folder().isEmpty())
        return mdlPage::Refuse(m_app, m_box, m_label + u"が入っていません。"_s);
    return mdlPage::CanBeKept(m_app, m_box);
}

void CFolderField::Choose()
{
    const QString chosen = m_app.Shell.FolderDialog(m_label + u"の選択"_s, mdlPath::DiskPath(Folder()));
    if (!chosen.isEmpty())
        m_box->setText(mdlPath::AddBackslash(chosen));
    m_box->setFocus();
    m_box->selectAll();
}
