// mainwin/mdlPosition.h
// Section "Position" of the settings file: place, splitter and column widths of the main window.

#ifndef MAINWIN_MDLPOSITION_H
#define MAINWIN_MDLPOSITION_H

#include <array>
#include <optional>

class CIniFile;

namespace mdlPosition
{

/// Columns of the message list whose widths are kept.
constexpr int ColumnCount = 11;
/// Values of WindowState.
constexpr int Normal = 0;
constexpr int Minimised = 1;
constexpr int Maximised = 2;

/// All lengths are twips. What is missing in the file, or no number, is empty.
struct Position
{
    int WindowState = Normal;
    std::optional<int> Left;
    std::optional<int> Top;
    std::optional<int> Width;
    std::optional<int> Height;
    std::optional<int> Separator;
    std::array<std::optional<int>, ColumnCount> Columns;
    bool operator==(const Position&) const = default;
};

/// Lengths beyond 1,000,000 twips (some 66,000 pixels) either way count as no number.
Position Read(CIniFile& Ini);

/// Stores what is not empty and saves the section. False when the file could not be written.
bool Write(CIniFile& Ini, const Position& Values);

} // namespace mdlPosition

#endif
