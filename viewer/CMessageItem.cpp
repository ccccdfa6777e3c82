// viewer/CMessageItem.cpp
// Keys read back into the number pair.

#include "viewer/CMessageItem.h"

#include <algorithm>

namespace
{

constexpr qsizetype BoardDigits = 3;
constexpr qsizetype ShortestKey = 10; // "#", the board's digits, six of the number

bool IsDigits(QStringView Text)
{
    return std::all_of(Text.begin(), Text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

std::optional<CMessageId> CMessageId::FromKey(const QString& Key)
{
    const QStringView digits = QStringView(Key).mid(1);
    if (Key.size() < ShortestKey || Key.front() != u'#' || !IsDigits(digits))
        return std::nullopt;
    bool isBoard = false;
    bool isNumber = false;
    const CMessageId id{digits.left(BoardDigits).toInt(&isBoard), digits.mid(BoardDigits).toInt(&isNumber)};
    if (!isBoard || !isNumber)
        return std::nullopt;
    return id;
}
