// platform/jetsql/Keyword.cpp
// The words of the dialect.

#include "platform/jetsql/Keyword.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr std::array Words{
    "ALL"_L1, "ALTER"_L1, "AND"_L1, "ANY"_L1, "AS"_L1, "ASC"_L1, "BETWEEN"_L1, "BY"_L1, "CREATE"_L1, "DELETE"_L1,
    "DESC"_L1, "DISTINCT"_L1, "DISTINCTROW"_L1, "DROP"_L1, "EQV"_L1, "EXECUTE"_L1, "EXISTS"_L1, "FALSE"_L1, "FROM"_L1,
    "GROUP"_L1, "HAVING"_L1, "IMP"_L1, "IN"_L1, "INNER"_L1, "INSERT"_L1, "INTO"_L1, "IS"_L1, "JOIN"_L1, "LEFT"_L1,
    "LIKE"_L1, "MOD"_L1, "NO"_L1, "NOT"_L1, "NULL"_L1, "OFF"_L1, "ON"_L1, "OPTION"_L1, "OR"_L1, "ORDER"_L1, "OUTER"_L1,
    "OWNERACCESS"_L1, "PARAMETERS"_L1, "PERCENT"_L1, "PIVOT"_L1, "PROCEDURE"_L1, "RIGHT"_L1, "SELECT"_L1, "SET"_L1,
    "SOME"_L1, "TABLE"_L1, "TOP"_L1, "TRANSFORM"_L1, "TRUE"_L1, "UNION"_L1, "UPDATE"_L1, "VALUES"_L1, "WHERE"_L1,
    "WITH"_L1, "XOR"_L1, "YES"_L1};

static_assert(Words.size() == size_t(Keyword::Yes));

}

Keyword KeywordOf(QStringView Word)
{
    const auto found = std::lower_bound(Words.begin(), Words.end(), Word, [](QLatin1StringView left, QStringView right) {
        return right.compare(left, Qt::CaseInsensitive) > 0;
    });
    if (found == Words.end() || Word.compare(*found, Qt::CaseInsensitive) != 0)
        return Keyword::None;
    return Keyword(found - Words.begin() + 1);
}

bool IsOperatorWord(Keyword Word)
{
    switch (Word) {
    case Keyword::And: case Keyword::Or: case Keyword::Xor: case Keyword::Eqv: case Keyword::Imp: case Keyword::Not:
    case Keyword::Mod: case Keyword::Like: case Keyword::Between: case Keyword::In: case Keyword::Is:
    case Keyword::Select: case Keyword::From: case Keyword::Where: case Keyword::Group: case Keyword::Having:
    case Keyword::Order: case Keyword::By: case Keyword::Union: case Keyword::Inner: case Keyword::Left:
    case Keyword::Right: case Keyword::Join: case Keyword::On: case Keyword::As: case Keyword::Into: case Keyword::Set:
    case Keyword::Values: case Keyword::With: case Keyword::Asc: case Keyword::Desc: case Keyword::Pivot:
        return true;
    default:
        return false;
    }
}

}
