// app/WindowPlace.h
// A window's place in its section of the settings file.

#ifndef APP_WINDOWPLACE_H
#define APP_WINDOWPLACE_H

#include "platform/desktop/Geometry.h"

class CIniFile;
class QString;

/// These work on the current section of Ini. Nobody promises that the file was written by this program: what is no
/// number, and a length beyond MaxTwips either way, counts as never stored.
namespace mdlWindowPlace
{
/// Some 66,000 pixels, more than any desk has.
inline constexpr double MaxTwips = 1'000'000;

/// A length in twips, rounded to a whole one.
std::optional<int> Twips(const CIniFile& Ini, const QString& Key);
/// Stores a length; an empty one removes the key.
void SetTwips(CIniFile& Ini, const QString& Key, std::optional<int> Value);

/// The keys "Left", "Top", "Width" and "Height".
mdlGeometry::Place Read(const CIniFile& Ini);
void Store(CIniFile& Ini, const mdlGeometry::Place& Values);
} // namespace mdlWindowPlace

#endif
