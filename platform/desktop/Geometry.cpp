// platform/desktop/Geometry.cpp
// Window places: twips of the settings file, pixels of the toolkit, and screens that are really there.

#include "platform/desktop/Geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

namespace mdlGeometry
{
namespace
{
/// What must be seen of a window's upper edge so that the mouse can grip it.
constexpr int GripWidth = 60;
constexpr int GripHeight = 20;
/// No screen is larger; keeps sums of foreign numbers from overflowing.
constexpr qint64 MaxPixels = 1'000'000;

bool CanBeGripped(const QRect& Window, const QRect& Screen)
{
    const QRect edge(Window.left(), Window.top(), Window.width(), GripHeight);
    const QRect seen = edge & Screen;
    return seen.width() >= std::min(GripWidth, Window.width()) && seen.height() >= GripHeight / 2;
}

int Distance(const QRect& Window, const QRect& Screen)
{
    const QPoint way = Window.center() - Screen.center();
    return way.manhattanLength();
}

QRect MovedInto(const QRect& Window, const QRect& Screen)
{
    const QSize size = Window.size().boundedTo(Screen.size());
    const int left = std::clamp(Window.left(), Screen.left(), Screen.left() + Screen.width() - size.width());
    const int top = std::clamp(Window.top(), Screen.top(), Screen.top() + Screen.height() - size.height());
    return {QPoint(left, top), size};
}
} // namespace

int ToPixels(qint64 Twips)
{
    const qint64 twips = std::clamp(Twips, -MaxPixels * TwipsPerPixel, MaxPixels * TwipsPerPixel);
    const qint64 half = twips < 0 ? -TwipsPerPixel / 2 : TwipsPerPixel / 2;
    return static_cast<int>((twips + half) / TwipsPerPixel);
}

int ToTwips(int Pixels) { return static_cast<int>(std::clamp<qint64>(Pixels, -MaxPixels, MaxPixels) * TwipsPerPixel); }

QRect ToPixels(const QRect& Twips)
{
    return {ToPixels(Twips.left()), ToPixels(Twips.top()), ToPixels(Twips.width()), ToPixels(Twips.height())};
}

QRect ToTwips(const QRect& Pixels)
{
    return {ToTwips(Pixels.left()), ToTwips(Pixels.top()), ToTwips(Pixels.width()), ToTwips(Pixels.height())};
}

QRect OnScreen(const QRect& Wanted, const QList<QRect>& Screens)
{
    if (Screens.isEmpty())
        return Wanted;
    const QRect desk = std::accumulate(Screens.begin(), Screens.end(), QRect(), std::bit_or<>());
    const bool isTooLarge = Wanted.width() > desk.width() || Wanted.height() > desk.height();
    for (const QRect& screen : Screens) {
        if (CanBeGripped(Wanted, screen))
            return isTooLarge ? MovedInto(Wanted, screen) : Wanted;
    }
    const QRect nearest = *std::min_element(Screens.begin(), Screens.end(), [&](const QRect& a, const QRect& b) {
        return Distance(Wanted, a) < Distance(Wanted, b);
    });
    return MovedInto(Wanted, nearest);
}

QRect OnScreen(const QRect& Wanted)
{
    QList<QRect> areas;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        areas << screen->availableGeometry();
    return OnScreen(Wanted, areas);
}

QRect Centred(const QSize& Size)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    QRect area(QPoint(), Size);
    if (screen)
        area.moveCenter(screen->availableGeometry().center());
    return area;
}
} // namespace mdlGeometry
