// settings_ui/mdlPageParts.h
// Small pieces that the pages are put together from.

#ifndef SETTINGS_UI_MDLPAGEPARTS_H
#define SETTINGS_UI_MDLPAGEPARTS_H

#include <QString>
#include <QStringList>

class QBoxLayout;
class QButtonGroup;
class uSpinButton;

namespace mdlPageParts
{

template<typename Widget> Widget* Named(Widget* Made, const QString& Name)
{
    Made->setObjectName(Name);
    return Made;
}

/// Adds one option button for each caption to Layout. Their identifiers count from 0, their names are Name and that
/// number. The group belongs to Layout's widget; nothing is chosen yet.
QButtonGroup* AddOptions(QBoxLayout& Layout, const QString& Name, const QStringList& Captions);

/// Chooses the option Identifier; none when there is no such one.
void Choose(QButtonGroup& Options, int Identifier);

/// Lets Spin hold Least..Most and shows Value. A Value outside, which must have come from elsewhere, widens the bounds
/// so that it can be seen and kept.
void Show(uSpinButton& Spin, qint32 Value, qint32 Least, qint32 Most);

} // namespace mdlPageParts

#endif
