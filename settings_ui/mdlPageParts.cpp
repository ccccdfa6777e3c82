// settings_ui/mdlPageParts.cpp
// Small pieces that the pages are put together from.

#include "settings_ui/mdlPageParts.h"

#include "controls/uSpinButton.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QRadioButton>

#include <algorithm>

namespace mdlPageParts
{

QButtonGroup* AddOptions(QBoxLayout& Layout, const QString& Name, const QStringList& Captions)
{
    auto* group = new QButtonGroup(Layout.parentWidget());
    for (int index = 0; index < Captions.size(); ++index) {
        auto* option = Named(new QRadioButton(Captions[index]), Name + QString::number(index));
        Layout.addWidget(option);
        group->addButton(option, index);
    }
    return group;
}

void Choose(QButtonGroup& Options, int Identifier)
{
    QAbstractButton* const chosen = Options.button(Identifier);
    Options.setExclusive(chosen != nullptr); // an exclusive group never lets go of its last choice
    for (QAbstractButton* option : Options.buttons())
        option->setChecked(option == chosen);
    Options.setExclusive(true);
}

void Show(uSpinButton& Spin, qint32 Value, qint32 Least, qint32 Most)
{
    Spin.setRange(std::min(Least, Value), std::max(Most, Value));
    Spin.SetValue(Value);
}

} // namespace mdlPageParts
