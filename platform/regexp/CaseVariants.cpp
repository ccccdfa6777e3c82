// platform/regexp/CaseVariants.cpp
// Groups of case variants, made once from Qt's tables.

#include "platform/regexp/CaseVariants.h"

#include <QChar>

#include <algorithm>
#include <map>
#include <vector>

namespace regexp
{

namespace
{

constexpr char16_t FirstBeyondAscii = 0x80;

struct CCaseTable
{
    std::vector<std::vector<char16_t>> Groups;
    std::vector<char16_t> Units;      // ascending
    std::vector<std::size_t> GroupOf; // of the unit at the same place in Units
};

CCaseTable MakeTable()
{
    std::map<char16_t, std::vector<char16_t>> byCapital;
    for (int unit = FirstBeyondAscii; unit <= 0xFFFF; ++unit) {
        const QChar capital = QChar(unit).isSurrogate() ? QChar(unit) : QChar(unit).toUpper();
        if (capital.unicode() >= FirstBeyondAscii)
            byCapital[capital.unicode()].push_back(char16_t(unit));
    }
    CCaseTable table;
    std::map<char16_t, std::size_t> groups;
    for (auto& [capital, units] : byCapital) {
        if (units.size() < 2)
            continue;
        for (const char16_t unit : units)
            groups[unit] = table.Groups.size();
        table.Groups.push_back(std::move(units));
    }
    for (const auto& [unit, group] : groups) {
        table.Units.push_back(unit);
        table.GroupOf.push_back(group);
    }
    return table;
}

const CCaseTable& Table()
{
    static const CCaseTable table = MakeTable();
    return table;
}

} // namespace

std::span<const char16_t> CaseVariants(char16_t Unit)
{
    const CCaseTable& table = Table();
    const auto found = std::lower_bound(table.Units.begin(), table.Units.end(), Unit);
    if (found == table.Units.end() || *found != Unit)
        return {};
    return table.Groups[table.GroupOf[static_cast<std::size_t>(found - table.Units.begin())]];
}

std::span<const char16_t> CasedUnits(char16_t First, char16_t Last)
{
    const auto& units = Table().Units;
    return {std::lower_bound(units.begin(), units.end(), First), std::upper_bound(units.begin(), units.end(), Last)};
}

} // namespace regexp
