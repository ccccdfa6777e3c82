// platform/desktop/Contrast.h
// Colours that stay legible on a light and on a dark palette.

#ifndef DESKTOP_CONTRAST_H
#define DESKTOP_CONTRAST_H

#include <QColor>

namespace mdlContrast
{
/// Least contrast at which text of normal size is easy to read, as the accessibility guidelines have it.
inline constexpr double Readable = 4.5;

/// 1 (the same) to 21 (black on white), whichever of the two is the lighter.
double Ratio(const QColor& A, const QColor& B);

/// Wanted itself where it is Readable on Background, else the same hue made lighter, or darker where no lighter one
/// will do, just as far as it takes; at worst black or white.
QColor Legible(const QColor& Wanted, const QColor& Background);
} // namespace mdlContrast

#endif
