// platform/text/DateTime.cpp
// Day numbers and back. Reading dates from text is in DateReader.cpp.

#include "platform/text/DateTime.h"

#include <cmath>

namespace text
{

namespace
{

constexpr double MsPerDay = 86'400'000.0;
constexpr int SecondsPerDay = 86'400;

} // namespace

double ToSerial(const QDateTime& Moment)
{
    if (!Moment.isValid())
        return 0;
    const auto day = static_cast<double>(DayZero.daysTo(Moment.date()));
    const double fraction = Moment.time().msecsSinceStartOfDay() / MsPerDay;
    return day < 0 ? day - fraction : day + fraction;
}

QDateTime FromSerial(double Serial)
{
    if (!(Serial > static_cast<double>(MinDay - 1) && Serial < static_cast<double>(MaxDay + 1)))
        return {};
    const double day = std::trunc(Serial);
    const auto seconds = static_cast<int>(std::floor(std::abs(Serial - day) * SecondsPerDay + 0.5));
    const qint64 wholeDay = static_cast<qint64>(day) + seconds / SecondsPerDay;
    if (wholeDay > MaxDay)
        return {};
    return {DayZero.addDays(wholeDay), QTime::fromMSecsSinceStartOfDay(seconds % SecondsPerDay * 1000), Qt::UTC};
}

} // namespace text
