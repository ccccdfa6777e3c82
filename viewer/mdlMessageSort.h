// viewer/mdlMessageSort.h
// The order of a list's rows by the texts of one column.

#ifndef VIEWER_MDLMESSAGESORT_H
#define VIEWER_MDLMESSAGESORT_H

#include "viewer/CMessageList.h"

#include <functional>
#include <optional>
#include <vector>

namespace mdlMessageSort
{

/// The rows of List in the order of Column's texts as readers compare them: case, width and kana do not count.
///
/// Columns of padded numbers go by the numbers; DateFormat is the pattern of the date column. Equal texts keep board
/// and number order (in a raw table: the order of the statement) in both directions. The indentation of a subject does
/// not count. Empty when GoesOn, asked every few milliseconds, has said false.
std::optional<std::vector<int>> SortedRows(const CMessageList& List, int Column, CMessageList::Order Direction,
                                           const QString& DateFormat, const std::function<bool()>& GoesOn);

/// The row at which the message Item belongs in List, which is sorted so.
int RowFor(const CMessageList& List, const CMessageItem& Item, int Column, CMessageList::Order Direction,
           const QString& DateFormat);

} // namespace mdlMessageSort

#endif // VIEWER_MDLMESSAGESORT_H
