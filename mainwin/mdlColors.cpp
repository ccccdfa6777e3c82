// mainwin/mdlColors.cpp
// Text colours that stay legible on the palette in use.

#include "mainwin/mdlColors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace mdlColors
{

namespace
{

constexpr quint32 SystemColorFlag = 0x80000000U;

// Relative luminance of an sRGB colour, 0 to 1.
double Luminance(const QColor& Color)
{
    const auto linear = [](double Part) {
        return Part <= 0.04045 ? Part / 12.92 : std::pow((Part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(Color.redF()) + 0.7152 * linear(Color.greenF()) + 0.0722 * linear(Color.blueF());
}

QColor SystemColor(quint32 Number, const QPalette& Palette)
{
    switch (Number) {
    case 5: return Palette.color(QPalette::Base);
    case 13: return Palette.color(QPalette::Highlight);
    case 14: return Palette.color(QPalette::HighlightedText);
    default: return Palette.color(QPalette::Text);
    }
}

} // namespace

double Contrast(const QColor& First, const QColor& Second)
{
    const double first = Luminance(First) + 0.05;
    const double second = Luminance(Second) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QColor Readable(const QColor& Wanted, const QColor& Ground, double Least)
{
    constexpr float step = 0.02F;
    const bool isDarkGround = Luminance(Ground) < 0.18; // where white and black have the same contrast
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    Wanted.getHslF(&hue, &saturation, &lightness);
    QColor color = Wanted;
    while (Contrast(color, Ground) < Least && lightness > 0 && lightness < 1) {
        lightness = std::clamp(lightness + (isDarkGround ? step : -step), 0.0F, 1.0F);
        color = QColor::fromHslF(hue, saturation, lightness);
    }
    // Black and white do not move along the lightness scale; on a ground like themselves the other one is left.
    if (Contrast(color, Ground) < Least)
        color = isDarkGround ? QColor(Qt::white) : QColor(Qt::black);
    return color;
}

QColor FromStored(quint32 Stored, const QPalette& Palette)
{
    if (Stored & SystemColorFlag)
        return SystemColor(Stored & 0xffU, Palette);
    return QColor(int(Stored & 0xffU), int((Stored >> 8) & 0xffU), int((Stored >> 16) & 0xffU));
}

} // namespace mdlColors
