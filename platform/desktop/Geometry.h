// platform/desktop/Geometry.h
// Window places: twips of the settings file, pixels of the toolkit, and screens that are really there.

#ifndef DESKTOP_GEOMETRY_H
#define DESKTOP_GEOMETRY_H

#include <QList>
#include <QRect>
#include <QtGlobal>

#include <optional>

namespace mdlGeometry
{
/// Twips in one pixel at 100 % scale; the toolkit's pixels are those of 100 % at any scale.
inline constexpr int TwipsPerPixel = 15;

/// Rounded to the nearest pixel, so that what was saved comes back as it was.
int ToPixels(qint64 Twips);
int ToTwips(int Pixels);
QRect ToPixels(const QRect& Twips);
QRect ToTwips(const QRect& Pixels);

/// Wanted moved, and made smaller where it must be, so that it can be seen and gripped on one of Screens (their
/// available areas, in pixels). It is left alone while a good piece of its upper edge lies on a screen: windows that
/// hang over an edge on purpose stay there. One that is larger than all screens together was saved at another scale and
/// is fitted into its screen. Without screens it is returned as it is.
QRect OnScreen(const QRect& Wanted, const QList<QRect>& Screens);
/// The same with the screens of this session.
QRect OnScreen(const QRect& Wanted);

/// A window's place as settings keep it, in twips; empty where nothing usable was stored.
struct Place
{
    std::optional<int> Left;
    std::optional<int> Top;
    std::optional<int> Width;
    std::optional<int> Height;
    bool operator==(const Place&) const = default;
};

Place ToPlace(const QRect& Pixels);

/// Where a window comes back, in pixels and on a screen of this session: Stored as far as it goes. A missing size, or
/// one that is none, is that of Designed, and a missing left or top centres the window on Designed's middle.
QRect Restored(const Place& Stored, const QRect& Designed);

/// A rectangle of this size in the middle of the available area of the primary screen.
QRect Centred(const QSize& Size);
} // namespace mdlGeometry

#endif
