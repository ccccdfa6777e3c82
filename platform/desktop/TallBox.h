// platform/desktop/TallBox.h
// Message boxes whose text is longer than the screen is high.

#ifndef DESKTOP_TALLBOX_H
#define DESKTOP_TALLBOX_H

class QMessageBox;

namespace mdlTallBox
{
/// Lets the text of Box, which is complete but not shown yet, be scrolled when it would push the buttons off the
/// screen. Any other box stays as it is.
void KeepOnScreen(QMessageBox& Box);
} // namespace mdlTallBox

#endif
