#pragma once

#include "runtime/DateTime.h"
#include "runtime/RuntimeError.h"
#include "store/DataStore.h"

#include <QList>
#include <QString>

// Whether a recurring event falls on a date. Each place that asks has a rule of its own,
// and the differences are kept on purpose: which weekday names a weekly event is compared
// with, which year a yearly date is built in, and what a text that does not convert does.
// Daily events fall on every day except where said; a kind none of these knows, on none.
namespace recurrence
{

// The day popup: the locale's weekday names; a yearly date in the year the calendar shows.
// A monthly day or a yearly date that does not convert raises its run-time error.
bool inDayPopup(const store::RecurringEvent &event, rt::Date date, int displayedYear);

// The remove window, and the scan for missed reminders: the locale's weekday names, a
// yearly date in the date's own year; a text that does not convert never matches.
bool inRemoveWindow(const store::RecurringEvent &event, rt::Date date);

// The printed list: the English names the store keeps, whatever the locale; a yearly date
// in the date's own year that does not convert never matches, a monthly day that is no
// number raises.
bool inPrintedList(const store::RecurringEvent &event, rt::Date date);

// What the reminder tick compares, worked out once per tick.
struct Today {
    explicit Today(rt::Date today);
    rt::Date date;
    QString weekdayName; // the locale's
    int dayOfMonth;
    int year;
};

// The reminder tick: as the day popup, but in today's own year. It asks 25 times a second,
// so the texts are converted once, ahead; a conversion that failed raises when asked.
class TickRule
{
public:
    explicit TickRule(const store::RecurringEvent &event);

    bool known() const { return kind_ != Kind::Other; } // a kind the tick checks at all
    bool fallsOn(const Today &today) const;

private:
    enum class Kind : std::uint8_t { Other, Daily, Weekly, Monthly, Yearly };
    Kind kind_ = Kind::Other;
    QString weekday_;
    QString monthDay_; // yearly: "month/day/", to which the year is added
    rt::Converted<double> day_;
    mutable int year_ = 0; // the year date_ was converted for
    mutable rt::Converted<rt::Date> date_;
};

// The calendar's painters: they do not ask of one date but paint a year, the days listed by
// of(), weekly events on the English names the store keeps. Weekly events walk the 365 days
// (366 where the year divides by four, 2100 included) after the last day of the year before
// the selected date's; monthly and yearly dates are built in the displayed year. Nothing
// raises: a weekday name that is none keeps the weekday of the weekly event before it, and
// a date that does not convert repeats the date before it, of the month or event before.
// Daily events are never painted. One PainterDays serves one run of a painter.
class PainterDays
{
public:
    PainterDays(rt::Date selected, int displayedYear);
    QList<rt::Date> of(const store::RecurringEvent &event);

private:
    rt::Date weekStart_ = 0;
    int weekDays_ = 365;
    int year_ = 0;
    int weekday_ = 0; // Sunday = 1; 0 matches no day
    rt::Date date_ = 0;
};

} // namespace recurrence
