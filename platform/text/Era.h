// platform/text/Era.h
// The Japanese eras, for writing and reading dates.

#ifndef TEXT_ERA_H
#define TEXT_ERA_H

#include <QDate>
#include <QString>

#include <array>

namespace text
{

/// One era; its year 1 is FirstYear, its first day may lie within that year.
struct Era
{
    char16_t Letter;
    QStringView Name; // two kanji
    int FirstYear;
    int FirstMonth;
    int FirstDay;

    QDate Begin() const { return {FirstYear, FirstMonth, FirstDay}; }
};

/// The latest first.
inline constexpr std::array<Era, 5> Eras = {{{u'R', u"令和", 2019, 5, 1},
                                             {u'H', u"平成", 1989, 1, 8},
                                             {u'S', u"昭和", 1926, 12, 25},
                                             {u'T', u"大正", 1912, 7, 30},
                                             {u'M', u"明治", 1868, 1, 1}}};

/// The era of Day; null before the first one.
inline const Era* EraOf(QDate Day)
{
    for (const Era& era : Eras) {
        if (Day >= era.Begin())
            return &era;
    }
    return nullptr;
}

} // namespace text

#endif // TEXT_ERA_H
