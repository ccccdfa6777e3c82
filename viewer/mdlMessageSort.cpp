// viewer/mdlMessageSort.cpp
// Sorting by one number a row, made once: the number that a padded text stands for, or the rank of the text.

#include "viewer/mdlMessageSort.h"

#include "app/Settings.h"
#include "platform/text/DateTime.h"
#include "platform/text/Fold.h"
#include "viewer/mdlColumns.h"
#include "viewer/mdlTextRanks.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace
{

using Order = CMessageList::Order;

/// Stands for the text of a column whose texts order as this number does; empty for the other columns.
std::optional<qint64> NumberKey(const CMessageItem& Item, int Column)
{
    const CMessage& message = Item.Message;
    if (!Item.IsMessage())
        return std::nullopt;
    switch (Column) {
    case mdlColumns::Read:
        return message.Read ? 0 : 1; // " " stands before "*"
    case mdlColumns::ID:
        return message.ID;
    case mdlColumns::InReplyTo:
        return (qint64{message.BBS_ID} << 32) + message.InReplyTo;
    case mdlColumns::ParentThread:
        return message.RootThread;
    default:
        return std::nullopt;
    }
}

/// The text that sorts: that of the cell without the indentation of threads.
QString SortText(const CMessageItem& Item, int Column, const QString& DateFormat)
{
    return Column == mdlColumns::Subject ? Item.Message.Subject : mdlColumns::Text(Item, Column, DateFormat);
}

std::vector<QString> SortTexts(const CMessageList& List, int Column, const QString& DateFormat)
{
    std::vector<QString> texts;
    texts.reserve(static_cast<std::size_t>(List.Count()));
    for (int row = 0; row < List.Count(); ++row)
        texts.push_back(List.IsRaw() ? List.Text(row, Column) : SortText(List.Item(row), Column, DateFormat));
    return texts;
}

/// What decides between rows with equal texts: orders as board and number, or as the rows of a raw table came.
quint64 Identity(const CMessageItem& Item)
{
    constexpr quint32 signBit = 0x80000000U; // a number from a damaged file may be negative
    if (!Item.IsMessage())
        return static_cast<quint64>(Item.RawRow);
    return quint64{static_cast<quint32>(Item.Message.BBS_ID) ^ signBit} << 32 |
           (static_cast<quint32>(Item.Message.ID) ^ signBit);
}

/// All that a row's place hangs on, side by side: the messages themselves lie far apart in memory.
struct CSortRow
{
    qint64 Key;
    quint64 Identity;
    int Row;
};

bool IsBefore(const CSortRow& Left, const CSortRow& Right)
{
    return Left.Key != Right.Key ? Left.Key < Right.Key : Left.Identity < Right.Identity;
}

std::vector<int> SortedByKeys(const CMessageList& List, const std::vector<qint64>& Keys, Order Direction)
{
    std::vector<CSortRow> rows;
    rows.reserve(Keys.size());
    for (int row = 0; row < List.Count(); ++row) {
        const qint64 key = Keys[static_cast<std::size_t>(row)];
        rows.push_back({Direction == Order::Ascending ? key : ~key, Identity(List.Item(row)), row});
    }
    // Statements mostly deliver the rows in the order that the list keeps.
    if (!std::is_sorted(rows.begin(), rows.end(), IsBefore))
        std::sort(rows.begin(), rows.end(), IsBefore);
    std::vector<int> result(rows.size());
    std::transform(rows.begin(), rows.end(), result.begin(), [](const CSortRow& Row) { return Row.Row; });
    return result;
}

/// All rows by what decides between equal texts. Mostly they stand so already, or the other way round.
std::vector<int> RowsByIdentity(const CMessageList& List)
{
    std::vector<std::pair<quint64, int>> rows;
    rows.reserve(static_cast<std::size_t>(List.Count()));
    for (int row = 0; row < List.Count(); ++row)
        rows.emplace_back(Identity(List.Item(row)), row);
    if (rows.front() > rows.back())
        std::reverse(rows.begin(), rows.end());
    if (!std::is_sorted(rows.begin(), rows.end()))
        std::sort(rows.begin(), rows.end());
    std::vector<int> result(rows.size());
    std::transform(rows.begin(), rows.end(), result.begin(), [](const auto& Row) { return Row.second; });
    return result;
}

/// Ranks lie close together from 0, so the rows need no comparing: each goes behind those of lower rank.
std::vector<int> SortedByRanks(const CMessageList& List, const std::vector<int>& Ranks, Order Direction)
{
    const int highest = *std::max_element(Ranks.begin(), Ranks.end());
    const auto place = [&](int Row) {
        const int rank = Ranks[static_cast<std::size_t>(Row)];
        return static_cast<std::size_t>(Direction == Order::Ascending ? rank : highest - rank);
    };
    std::vector<int> next(static_cast<std::size_t>(highest) + 2);
    for (int row = 0; row < List.Count(); ++row)
        ++next[place(row) + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    std::vector<int> result(Ranks.size());
    for (const int row : RowsByIdentity(List))
        result[static_cast<std::size_t>(next[place(row)]++)] = row;
    return result;
}

std::vector<qint64> NumberKeys(const CMessageList& List, int Column)
{
    std::vector<qint64> keys;
    keys.reserve(static_cast<std::size_t>(List.Count()));
    for (int row = 0; row < List.Count(); ++row)
        keys.push_back(*NumberKey(List.Item(row), Column));
    return keys;
}

/// Minutes since 1899-12-30: what the default pattern shows of a date, and in the same order as its texts.
/// Empty where some date would not be written with a four-digit year.
std::vector<qint64> MinutesOf(const CMessageList& List)
{
    constexpr double secondsPerDay = 86400;
    std::vector<qint64> minutes;
    minutes.reserve(static_cast<std::size_t>(List.Count()));
    for (int row = 0; row < List.Count(); ++row) {
        const double date = List.Item(row).Message.PostDate;
        if (!(date >= 0 && date < text::MaxDay))
            return {};
        minutes.push_back(static_cast<qint64>(date * secondsPerDay + 0.5) / 60);
    }
    return minutes;
}

int CompareItems(const CMessageItem& Left, const CMessageItem& Right, int Column, const QString& DateFormat)
{
    if (const auto left = NumberKey(Left, Column)) {
        const qint64 right = *NumberKey(Right, Column);
        return *left < right ? -1 : *left > right ? 1 : 0;
    }
    return text::CompareText(SortText(Left, Column, DateFormat), SortText(Right, Column, DateFormat));
}

} // namespace

namespace mdlMessageSort
{

std::optional<std::vector<int>> SortedRows(const CMessageList& List, int Column, Order Direction,
                                           const QString& DateFormat, const std::function<bool()>& GoesOn)
{
    if (List.Count() == 0)
        return std::vector<int>();
    if (NumberKey(List.Item(0), Column))
        return SortedByKeys(List, NumberKeys(List, Column), Direction);
    if (!List.IsRaw() && Column == mdlColumns::Date && DateFormat == mdlSettings::DefaultDateFormat()) {
        const std::vector<qint64> minutes = MinutesOf(List);
        if (!minutes.empty())
            return SortedByKeys(List, minutes, Direction);
    }
    const auto ranks = mdlTextRanks::Ranks(SortTexts(List, Column, DateFormat), GoesOn);
    if (!ranks)
        return std::nullopt;
    return SortedByRanks(List, *ranks, Direction);
}

int RowFor(const CMessageList& List, const CMessageItem& Item, int Column, Order Direction, const QString& DateFormat)
{
    int first = 0;
    int last = List.Count();
    while (first < last) {
        const int middle = first + (last - first) / 2;
        const CMessageItem& other = List.Item(middle);
        const int compared = CompareItems(other, Item, Column, DateFormat);
        const bool isBefore =
            compared == 0 ? Identity(other) < Identity(Item) : (compared < 0) == (Direction == Order::Ascending);
        if (isBefore)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

} // namespace mdlMessageSort
