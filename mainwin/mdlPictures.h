// mainwin/mdlPictures.h
// How each of the program's pictures is drawn, as vector paths on a square of 24 by 24 units.

#ifndef MAINWIN_MDLPICTURES_H
#define MAINWIN_MDLPICTURES_H

#include <QColor>
#include <QStringView>

#include <span>

class QPainter;
class QPalette;

namespace mdlPictures
{

/// Side of the square on which the pictures are drawn.
constexpr double Side = 24.0;

/// The colours of a picture. One set reads on light, one on dark palettes.
struct Colors
{
    QColor Line;  ///< outlines
    QColor Paper; ///< sheets and other bright areas
    QColor Blue;
    QColor Green;
    QColor Red;
    QColor Amber;
};

Colors ColorsFor(const QPalette& Palette);

struct Picture
{
    QStringView Name;
    void (*Draw)(QPainter&, const Colors&);
};

std::span<const Picture> All();

} // namespace mdlPictures

#endif
