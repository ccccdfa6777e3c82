// mainwin/mdlColors.h
// The colours that the database keeps, on the palette in use.

#ifndef MAINWIN_MDLCOLORS_H
#define MAINWIN_MDLCOLORS_H

#include <QColor>

class QPalette;

namespace mdlColors
{

/// Contrast below which a mark, which the user chose to stand out, can no longer be made out.
constexpr double MarkContrast = 3.0;

/// A colour as the database keeps it: red + 256 x green + 65536 x blue, or 0x80000000 + a system colour, of which the
/// window (5), window text (8) and the highlight pair (13, 14) are known; others are taken as window text.
QColor FromStored(quint32 Stored, const QPalette& Palette);

/// The stored colour of a mark as a text colour on the palette's base: itself where its contrast is at least
/// MarkContrast, else the same hue made legible.
QColor MarkColor(quint32 Stored, const QPalette& Palette);

} // namespace mdlColors

#endif
