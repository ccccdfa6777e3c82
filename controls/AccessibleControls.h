// controls/AccessibleControls.h
// What screen readers are told about the controls that the toolkit does not know.

#ifndef CONTROLS_ACCESSIBLECONTROLS_H
#define CONTROLS_ACCESSIBLECONTROLS_H

namespace mdlAccessibleControls
{
/// Makes the clickable label a link and the splitter's bar a splitter with a value. Controls call it when they are
/// made; only the first call does something.
void Install();
} // namespace mdlAccessibleControls

#endif
