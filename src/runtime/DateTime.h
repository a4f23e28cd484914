#pragma once

// Date values as the run-time keeps them: a double counting days since 30 December 1899,
// the fraction being the time of day.
namespace rt
{

using Date = double;

// Serial of a valid Gregorian date; no range or roll-over checks (callers pass real dates).
Date DateSerial(int year, int month, int day);
Date TimeSerial(int hour, int minute, int second);
bool isValidDate(int year, int month, int day);
int daysInMonth(int year, int month);

// Parts of a date value. The date parts come from the truncated whole part; the time parts
// from the fraction, rounded to the nearest second.
int Year(Date d);
int Month(Date d);
int Day(Date d);
int Weekday(Date d); // Sunday = 1 .. Saturday = 7
int Hour(Date d);
int Minute(Date d);
int Second(Date d);

// Whole days and the time of day of a value.
Date DatePart(Date d);
Date TimePart(Date d);

} // namespace rt
