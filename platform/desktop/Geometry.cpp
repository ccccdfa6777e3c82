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
/// Room for the caption, which the window system puts above the rectangle that is saved.
constexpr int CaptionHeight = 28;
/// No screen is larger; keeps sums of foreign numbers from overflowing.
constexpr qint64 MaxPixels = 1'000'000;

bool ShowsStrip(const QRect& Window, int Top, const QRect& Screen)
{
    const QRect seen = QRect(Window.left(), Top, Window.width(), GripHeight) & Screen;
    return seen.width() >= std::min(GripWidth, Window.width()) && seen.height() >= GripHeight / 2;
}

/// The caption is what the mouse grips, the upper edge what tells that there is a window below it.
bool CanBeGripped(const QRect& Window, const QRect& Screen)
{
    return ShowsStrip(Window, Window.top() - CaptionHeight, Screen) && ShowsStrip(Window, Window.top(), Screen);
}

int Distance(const QRect& Window, const QRect& Screen)
{
    const QPoint way = Window.center() - Screen.center();
    return way.manhattanLength();
}

QRect MovedInto(const QRect& Window, const QRect& Screen)
{
    const QRect area = Screen.adjusted(0, std::min(CaptionHeight, Screen.height() - 1), 0, 0);
    const QSize size = Window.size().boundedTo(area.size());
    const int left = std::clamp(Window.left(), area.left(), area.left() + area.width() - size.width());
    const int top = std::clamp(Window.top(), area.top(), area.top() + area.height() - size.height());
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

Place ToPlace(const QRect& Pixels)
{
    const QRect twips = ToTwips(Pixels);
    return {twips.left(), twips.top(), twips.width(), twips.height()};
}

QRect Restored(const Place& Stored, const QRect& Designed)
{
    const auto side = [](std::optional<int> Twips, int Instead) {
        return Twips && ToPixels(*Twips) > 0 ? ToPixels(*Twips) : Instead;
    };
    QRect place(0, 0, side(Stored.Width, Designed.width()), side(Stored.Height, Designed.height()));
    place.moveCenter(Designed.center());
    if (Stored.Left)
        place.moveLeft(ToPixels(*Stored.Left));
    if (Stored.Top)
        place.moveTop(ToPixels(*Stored.Top));
    return OnScreen(place);
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
