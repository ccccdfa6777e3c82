// settings_ui/PageParts.h
// What the pages of the options and board dialogs are put together from.

#ifndef SETTINGS_UI_PAGEPARTS_H
#define SETTINGS_UI_PAGEPARTS_H

#include "platform/desktop/desktop.h"

#include <QString>

class Application;
class QGridLayout;
class QLabel;
class QLineEdit;
class QWidget;
class uSpinButton;

namespace mdlPage
{

/// Gives Made its object name and hands it back.
template<typename Widget> Widget* Named(Widget* Made, const QString& Name)
{
    Made->setObjectName(Name);
    return Made;
}

/// Adds a row to Form: Caption as the label (and buddy) of Field, then Field, then what stands behind it, such as
/// the unit of a number. The label.
QLabel* AddField(QGridLayout& Form, const QString& Caption, QWidget* Field, QWidget* Behind = nullptr);

/// A text that stands in a page, such as the unit of a number. It shows "&" as it is.
QLabel* Note(const QString& Text, QWidget* Page);

/// A note as wide as the page, of as many lines as that takes.
QLabel* LongNote(const QString& Text, QWidget* Page);

/// Lets Spin hold Least..Most and shows Value. A Value outside of that came from elsewhere: it widens the bounds, so
/// that it can be seen and kept.
void ShowNumber(uSpinButton& Spin, qint32 Value, qint32 Least, qint32 Most);

/// Tells Text and puts the focus on Field, its text selected. Always false.
bool Refuse(Application& App, QWidget* Field, const QString& Text, Desktop::Icon BoxIcon = Desktop::Icon::Information);

/// Whether the settings file can hold what stands in Field. Where not, Refuse has told it.
bool CanBeKept(Application& App, QLineEdit* Field);

} // namespace mdlPage

#endif
