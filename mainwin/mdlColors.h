// mainwin/mdlColors.h
// Text colours that stay legible on the palette in use.

#ifndef MAINWIN_MDLCOLORS_H
#define MAINWIN_MDLCOLORS_H

#include <QColor>

class QPalette;

namespace mdlColors
{

/// Contrast below which running text is hard to read.
constexpr double TextContrast = 4.5;
/// Contrast below which a mark, which the user chose to stand out, no longer does.
constexpr double MarkContrast = 3.0;

/// Contrast of two colours by their relative luminance, 1 (equal) to 21 (black and white). Alpha is ignored.
double Contrast(const QColor& First, const QColor& Second);

/// Wanted itself where it has at least Least contrast on Ground; otherwise the same hue made lighter on a dark ground and
/// darker on a light one until it has.
QColor Readable(const QColor& Wanted, const QColor& Ground, double Least);

/// A colour as the database keeps it: red + 256 x green + 65536 x blue, or 0x80000000 + a system colour, of which the
/// window (5), window text (8) and the highlight pair (13, 14) are known; others are taken as window text.
QColor FromStored(quint32 Stored, const QPalette& Palette);

} // namespace mdlColors

#endif
