// platform/jetsql/DateLiteral.h
// The inside of #...#: a date in the one order that does not depend on the locale.

#ifndef JETSQL_DATELITERAL_H
#define JETSQL_DATELITERAL_H

#include <QStringView>

#include <optional>

namespace jetsql {

/// Reads what stands between the two "#": month/day/year or year/month/day by whether the first number has four digits,
/// with "/" or "-" between, or with an English month name; then perhaps a time, h:mm or h:mm:ss with AM or PM; or a time
/// alone. An impossible month/day is retried as day/month. The result is days since 1899-12-30.
std::optional<double> ReadDateLiteral(QStringView Text);

/// Days since 1899-12-30 of a day and a second of it; before that day the fraction still counts forward.
double SerialOf(qint64 Day, int Second);

}

#endif
