// mainwin/mdlPosition.h
// Section "Position" of the settings file: what the main window looked like when it was closed.

#ifndef MAINWIN_MDLPOSITION_H
#define MAINWIN_MDLPOSITION_H

#include "platform/desktop/Geometry.h"

#include <array>
#include <optional>

class CIniFile;
class QHeaderView;

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
    mdlGeometry::Place Window;
    std::optional<int> Separator;
    std::array<std::optional<int>, ColumnCount> Columns;
    std::optional<std::array<int, ColumnCount>> ColumnOrder; ///< columns from left to right; empty: as they are made
    std::optional<double> TextSize;                          ///< of the message text, in points; empty: the usual one
    bool operator==(const Position&) const = default;
};

/// Lengths beyond mdlWindowPlace::MaxTwips count as no number, an order in which not every column stands once as none.
Position Read(CIniFile& Ini);

/// Stores the values, removes the keys of those that are empty, and saves the section. False when the file could not be
/// written.
bool Write(CIniFile& Ini, const Position& Values);

/// Takes widths and order from a header that has all the columns, which it has not while it shows a raw table.
void TakeColumns(Position& Values, const QHeaderView& Header);
/// Gives them to it. No column becomes so narrow or so wide that its edge cannot be gripped any more.
void PlaceColumns(const Position& Values, QHeaderView& Header);

} // namespace mdlPosition

#endif
