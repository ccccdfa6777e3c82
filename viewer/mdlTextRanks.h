// viewer/mdlTextRanks.h
// Many texts put in order.

#ifndef VIEWER_MDLTEXTRANKS_H
#define VIEWER_MDLTEXTRANKS_H

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace mdlTextRanks
{

/// The place of each text among them all, from 0, as text::CompareText has it; texts that read the same share one.
///
/// GoesOn is asked every few milliseconds; false breaks the work off, which leaves nothing.
std::optional<std::vector<int>> Ranks(const std::vector<QString>& Texts, const std::function<bool()>& GoesOn);

} // namespace mdlTextRanks

#endif // VIEWER_MDLTEXTRANKS_H
