// mainwin/mdlColors.cpp
// The colours that the database keeps, on the palette in use.

#include "mainwin/mdlColors.h"

#include "platform/desktop/Contrast.h"

#include <QPalette>

namespace mdlColors
{

namespace
{

constexpr quint32 SystemColorFlag = 0x80000000U;

QColor SystemColor(quint32 Number, const QPalette& Palette)
{
    switch (Number) {
    case 5:
        return Palette.color(QPalette::Base);
    case 13:
        return Palette.color(QPalette::Highlight);
    case 14:
        return Palette.color(QPalette::HighlightedText);
    default:
        return Palette.color(QPalette::Text);
    }
}

} // namespace

QColor FromStored(quint32 Stored, const QPalette& Palette)
{
    if (Stored & SystemColorFlag)
        return SystemColor(Stored & 0xffU, Palette);
    return QColor(int(Stored & 0xffU), int((Stored >> 8) & 0xffU), int((Stored >> 16) & 0xffU));
}

QColor MarkColor(quint32 Stored, const QPalette& Palette)
{
    const QColor color = FromStored(Stored, Palette);
    const QColor ground = Palette.color(QPalette::Base);
    return mdlContrast::Ratio(color, ground) >= MarkContrast ? color : mdlContrast::Legible(color, ground);
}

} // namespace mdlColors
