// platform/desktop/Contrast.cpp
// Colours that stay legible on a light and on a dark palette.

#include "platform/desktop/Contrast.h"

#include <algorithm>
#include <cmath>

namespace mdlContrast
{
namespace
{
double Linear(double Channel)
{
    return Channel <= 0.04045 ? Channel / 12.92 : std::pow((Channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& Colour)
{
    return 0.2126 * Linear(Colour.redF()) + 0.7152 * Linear(Colour.greenF()) + 0.0722 * Linear(Colour.blueF());
}
} // namespace

double Ratio(const QColor& A, const QColor& B)
{
    const auto [low, high] = std::minmax({Luminance(A), Luminance(B)});
    return (high + 0.05) / (low + 0.05);
}

QColor Legible(const QColor& Wanted, const QColor& Background)
{
    if (Ratio(Wanted, Background) >= Readable)
        return Wanted;
    const int hue = Wanted.hslHue();
    const int saturation = Wanted.hslSaturation();
    for (const int step : {1, -1}) {
        for (int lightness = Wanted.lightness() + step; lightness >= 0 && lightness <= 255; lightness += step) {
            const QColor colour = QColor::fromHsl(hue, saturation, lightness);
            if (Ratio(colour, Background) >= Readable)
                return colour;
        }
    }
    return Ratio(Qt::white, Background) > Ratio(Qt::black, Background) ? QColor(Qt::white) : QColor(Qt::black);
}
} // namespace mdlContrast
