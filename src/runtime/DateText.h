#pragma once

#include "runtime/DateTime.h"

#include <QString>
#include <array>
#include <optional>

namespace rt
{

// The days of the week in English, Sunday first, whatever the locale: the names the store
// keeps for weekly events, and the calendar's own.
inline const std::array<QString, 7> kEnglishWeekdays = {
    QStringLiteral("Sunday"),    QStringLiteral("Monday"),   QStringLiteral("Tuesday"),
    QStringLiteral("Wednesday"), QStringLiteral("Thursday"), QStringLiteral("Friday"),
    QStringLiteral("Saturday")};

// Text to date, as CDate/IsDate read it in the current locale. Empty when the text is
// no date or time.
std::optional<Date> parseDate(const QString &text);
bool IsDate(const QString &text);
Date CDate(const QString &text); // raises "Type mismatch" when parseDate fails

// "Errors ignored" form: on failure the field keeps its value.
bool tryCDate(const QString &text, Date &field);

// Date to text, as CStr writes it: the short date with a four-digit year, the long time,
// or both.
QString CStr(Date value);

// The time of day of a value in hours and minutes, in the locale's form ("9:00 AM").
QString ShortTimeText(Date value);

// The locale's full name of day n of the week, counted from the locale's first day of the
// week: n = 1 is Sunday only where weeks start on Sunday. Callers pass Weekday(), which
// counts from Sunday, and so shift by a day elsewhere, as the original did.
QString WeekdayName(int n);

} // namespace rt
