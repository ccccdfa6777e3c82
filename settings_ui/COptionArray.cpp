// settings_ui/COptionArray.cpp
// A row of option buttons in a frame, one of which is chosen.

#include "settings_ui/COptionArray.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QRadioButton>

using namespace Qt::StringLiterals;

COptionArray::COptionArray(const QString& Name, const QString& Title, const QStringList& Captions, QWidget* Parent)
    : QGroupBox(Title, Parent)
    , m_options(new QButtonGroup(this))
{
    setObjectName(u"fra"_s + Name);
    auto* row = new QHBoxLayout(this);
    for (int index = 0; index < Captions.size(); ++index) {
        auto* option = new QRadioButton(Captions[index], this);
        option->setObjectName(u"opt"_s + Name + QString::number(index));
        row->addWidget(option);
        m_options->addButton(option, index);
    }
}

void COptionArray::Choose(int Index)
{
    QAbstractButton* const chosen = m_options->button(Index);
    m_options->setExclusive(chosen != nullptr); // an exclusive group never lets go of its last choice
    for (QAbstractButton* option : m_options->buttons()) {
        option->setChecked(option == chosen);
        option->setFocusPolicy(option == chosen || !chosen ? Qt::StrongFocus
                                                           : Qt::ClickFocus); // Tab goes to the chosen one
    }
    m_options->setExclusive(true);
}

int COptionArray::Chosen() const { return m_options->checkedId(); }
