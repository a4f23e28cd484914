#include "runtime/DateTime.h"

#include <cmath>

namespace rt
{
namespace
{

// Days from 1970-01-01 of a proleptic Gregorian date (H. Hinnant's algorithm).
long long daysFromCivil(long long y, int m, int d)
{
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const long long yoe = y - era * 400;
    const long long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

struct Civil {
    int year, month, day;
};

Civil civilFromDays(long long z)
{
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    const int d = int(doy - (153 * mp + 2) / 5 + 1);
    const int m = int(mp < 10 ? mp + 3 : mp - 9);
    return {int(yoe + era * 400 + (m <= 2)), m, d};
}

// 30 December 1899 counted from 1970-01-01.
constexpr long long kEpochOffset = -25569;

Civil civilOf(Date d)
{
    return civilFromDays((long long)std::trunc(d) + kEpochOffset);
}

// Seconds into the day, rounded to the nearest second. Negative values count their time
// from the same midnight as positive ones: -1.25 is 30 December 1899 minus 1 day, 6:00.
int secondsOfDay(Date d)
{
    const double fraction = std::fabs(d - std::trunc(d));
    const int s = int(std::floor(fraction * 86400.0 + 0.5));
    return s >= 86400 ? 86399 : s;
}

} // namespace

bool isValidDate(int year, int month, int day)
{
    return month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

int daysInMonth(int year, int month)
{
    static constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2) {
        const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
        return leap ? 29 : 28;
    }
    return lengths[month - 1];
}

Date DateSerial(int year, int month, int day)
{
    return double(daysFromCivil(year, month, day) - kEpochOffset);
}

Date TimeSerial(int hour, int minute, int second)
{
    return (hour * 3600 + minute * 60 + second) / 86400.0;
}

int Year(Date d)
{
    return civilOf(d).year;
}
int Month(Date d)
{
    return civilOf(d).month;
}
int Day(Date d)
{
    return civilOf(d).day;
}

int Weekday(Date d)
{
    // Serial 0 was a Saturday.
    const long long days = (long long)std::trunc(d);
    return int(((days + 6) % 7 + 7) % 7) + 1;
}

int Hour(Date d)
{
    return secondsOfDay(d) / 3600;
}
int Minute(Date d)
{
    return secondsOfDay(d) / 60 % 60;
}
int Second(Date d)
{
    return secondsOfDay(d) % 60;
}

Date DatePart(Date d)
{
    return std::trunc(d);
}
Date TimePart(Date d)
{
    return std::fabs(d - std::trunc(d));
}

} // namespace rt
