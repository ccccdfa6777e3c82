// controls/JobWindow.h
// The small window of a long job: what is done, how far it is, and a button to break it off.

#ifndef CONTROLS_JOBWINDOW_H
#define CONTROLS_JOBWINDOW_H

#include <QString>

#include <functional>

class QWidget;

namespace mdlJobWindow
{

/// Prepares the window (object name "frmJob") over Owner; the function that it gives takes percent and answers false
/// once the user has pressed the button or Esc or closed the window.
///
/// It appears after a moment, so that a short job does not flicker, keeps itself painted from within these calls, and
/// takes all input of the program until the last copy of the function is gone.
std::function<bool(int Percent)> Open(QWidget* Owner, const QString& Text);

} // namespace mdlJobWindow

#endif
