#include "store/Recurrence.h"

#include "runtime/DateText.h"
#include "runtime/Numbers.h"

#include <algorithm>

namespace recurrence
{
namespace
{

QString yearlyText(const store::RecurringEvent &event, int year)
{
    return event.month + QLatin1Char('/') + event.day + QLatin1Char('/') + QString::number(year);
}

// Whether the yearly date, built in the date's own year, is the date; never raises.
bool yearlyInItsOwnYear(const store::RecurringEvent &event, rt::Date date)
{
    const auto on = rt::parseDate(yearlyText(event, rt::Year(date)));
    return on && *on == date;
}

// Sunday = 1; 0 for a text that is none of the stored names.
int storedWeekday(const QString &day)
{
    const auto &names = store::kWeekdayNames;
    const auto at = std::find(names.begin(), names.end(), day);
    return at == names.end() ? 0 : int(at - names.begin()) + 1;
}

QString localeWeekday(rt::Date date)
{
    return rt::WeekdayName(rt::Weekday(date));
}

} // namespace

bool inDayPopup(const store::RecurringEvent &event, rt::Date date, int displayedYear)
{
    if (event.type == store::kWeekly)
        return localeWeekday(date) == event.day;
    if (event.type == store::kMonthly)
        return rt::numberEqualsText(rt::Day(date), event.day);
    if (event.type == store::kYearly)
        return rt::CDate(yearlyText(event, displayedYear)) == date;
    return event.type == store::kDaily;
}

bool inRemoveWindow(const store::RecurringEvent &event, rt::Date date)
{
    if (event.type == store::kWeekly)
        return localeWeekday(date) == event.day;
    if (event.type == store::kMonthly) {
        double day = 0;
        return rt::tryCDbl(event.day, day) && day == rt::Day(date);
    }
    if (event.type == store::kYearly)
        return yearlyInItsOwnYear(event, date);
    return event.type == store::kDaily;
}

bool inPrintedList(const store::RecurringEvent &event, rt::Date date)
{
    if (event.type == store::kWeekly)
        return storedWeekday(event.day) == rt::Weekday(date);
    if (event.type == store::kMonthly)
        return rt::numberEqualsText(rt::Day(date), event.day);
    if (event.type == store::kYearly)
        return yearlyInItsOwnYear(event, date);
    return event.type == store::kDaily;
}

Today::Today(rt::Date today)
    : date(today), weekdayName(localeWeekday(today)), dayOfMonth(rt::Day(today)),
      year(rt::Year(today))
{
}

TickRule::TickRule(const store::RecurringEvent &event)
{
    if (event.type == store::kDaily) {
        kind_ = Kind::Daily;
    } else if (event.type == store::kWeekly) {
        kind_ = Kind::Weekly;
        weekday_ = event.day;
    } else if (event.type == store::kMonthly) {
        kind_ = Kind::Monthly;
        day_ = rt::Converted<double>::of([&] { return rt::CDbl(event.day); });
    } else if (event.type == store::kYearly) {
        kind_ = Kind::Yearly;
        monthDay_ = event.month + QLatin1Char('/') + event.day + QLatin1Char('/');
    }
}

bool TickRule::fallsOn(const Today &today) const
{
    switch (kind_) {
    case Kind::Other:
        return false;
    case Kind::Daily:
        return true;
    case Kind::Weekly:
        return weekday_ == today.weekdayName;
    case Kind::Monthly:
        return day_.value() == today.dayOfMonth;
    case Kind::Yearly:
        if (year_ != today.year) {
            date_ = rt::Converted<rt::Date>::of(
                [&] { return rt::CDate(monthDay_ + QString::number(today.year)); });
            year_ = today.year;
        }
        return date_.value() == today.date;
    }
    return false;
}

PainterDays::PainterDays(rt::Date selected, int displayedYear) : year_(displayedYear)
{
    const int year = rt::Year(selected);
    rt::tryCDate(QStringLiteral("12/31/") + QString::number(year - 1), weekStart_);
    weekDays_ = year % 4 == 0 ? 366 : 365;
}

QList<rt::Date> PainterDays::of(const store::RecurringEvent &event)
{
    QList<rt::Date> days;
    if (event.type == store::kWeekly) {
        if (const int weekday = storedWeekday(event.day))
            weekday_ = weekday;
        for (int n = 1; n <= weekDays_; ++n) {
            if (rt::Weekday(weekStart_ + n) == weekday_)
                days.append(weekStart_ + n);
        }
    } else if (event.type == store::kMonthly) {
        const QString rest =
            QLatin1Char('/') + event.day + QLatin1Char('/') + QString::number(year_);
        for (int m = 1; m <= 12; ++m) {
            rt::tryCDate(QString::number(m) + rest, date_);
            days.append(date_);
        }
    } else if (event.type == store::kYearly) {
        rt::tryCDate(yearlyText(event, year_), date_);
        days.append(date_);
    }
    return days;
}

} // namespace recurrence
