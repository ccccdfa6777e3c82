// viewer/mdlMessageSort.cpp
// Sorting with one key a row, made once: numbers where the texts are padded numbers, collation keys elsewhere.

#include "viewer/mdlMessageSort.h"

#include "app/Settings.h"
#include "platform/text/DateTime.h"
#include "platform/text/Fold.h"
#include "viewer/mdlColumns.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <tuple>

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

/// Whether Left comes first of two rows with equal texts.
bool IsFirstOfEqual(const CMessageItem& Left, const CMessageItem& Right)
{
    return std::tie(Left.RawRow, Left.Message.BBS_ID, Left.Message.ID) <
           std::tie(Right.RawRow, Right.Message.BBS_ID, Right.Message.ID);
}

template<class Key>
std::vector<int> SortedByKeys(const CMessageList& List, const std::vector<Key>& Keys, Order Direction)
{
    std::vector<int> rows(Keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    const auto isBefore = [&](int Left, int Right) {
        const Key& left = Keys[static_cast<std::size_t>(Left)];
        const Key& right = Keys[static_cast<std::size_t>(Right)];
        if (left == right)
            return IsFirstOfEqual(List.Item(Left), List.Item(Right));
        return (left < right) == (Direction == Order::Ascending);
    };
    // Statements mostly deliver the rows in the order that the list keeps.
    if (!std::is_sorted(rows.begin(), rows.end(), isBefore))
        std::sort(rows.begin(), rows.end(), isBefore);
    return rows;
}

template<class Key, class MakeKey> std::vector<Key> KeysOf(const CMessageList& List, MakeKey Make)
{
    std::vector<Key> keys;
    keys.reserve(static_cast<std::size_t>(List.Count()));
    for (int row = 0; row < List.Count(); ++row)
        keys.push_back(Make(row));
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
    return text::CompareText(mdlColumns::Text(Left, Column, DateFormat), mdlColumns::Text(Right, Column, DateFormat));
}

} // namespace

namespace mdlMessageSort
{

std::vector<int> SortedRows(const CMessageList& List, int Column, Order Direction, const QString& DateFormat)
{
    if (List.Count() == 0)
        return {};
    if (NumberKey(List.Item(0), Column)) {
        const auto keys = KeysOf<qint64>(List, [&](int Row) { return *NumberKey(List.Item(Row), Column); });
        return SortedByKeys(List, keys, Direction);
    }
    if (!List.IsRaw() && Column == mdlColumns::Date && DateFormat == mdlSettings::DefaultDateFormat()) {
        const std::vector<qint64> minutes = MinutesOf(List);
        if (!minutes.empty())
            return SortedByKeys(List, minutes, Direction);
    }
    const auto keys = KeysOf<QByteArray>(List, [&](int Row) { return text::SortKey(List.Text(Row, Column)); });
    return SortedByKeys(List, keys, Direction);
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
            compared == 0 ? IsFirstOfEqual(other, Item) : (compared < 0) == (Direction == Order::Ascending);
        if (isBefore)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

} // namespace mdlMessageSort
