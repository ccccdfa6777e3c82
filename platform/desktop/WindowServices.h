// platform/desktop/WindowServices.h
// Small services for windows and boxes that several forms need.

#ifndef DESKTOP_WINDOWSERVICES_H
#define DESKTOP_WINDOWSERVICES_H

#include <QRect>

class QComboBox;
class QWidget;

namespace mdlWindow
{
/// Selects the whole text of a text box or an editable combo box; other widgets are left alone.
void SelectAllText(QWidget* Control);

/// Makes the drop-down list at most VisibleRows high (below 1: ten) and as wide as its widest item, but not
/// wider than the screen.
void AdjustComboDropDown(QComboBox* Combo, int VisibleRows);

/// The window's place when it is neither minimised nor maximised, in pixels without the frame, as setGeometry takes
/// it.
QRect GetNormalWindowRect(const QWidget* Window);

/// Brings the window to the front, restoring it unless it is maximised; shows it when it was hidden.
void ActivateWindow(QWidget* Window);
} // namespace mdlWindow

#endif
