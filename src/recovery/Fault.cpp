#include "recovery/Fault.h"

#include "runtime/DateText.h"
#include "runtime/Numbers.h"

#include <QLocale>

namespace recovery
{
namespace
{

bool sameTexts(const store::RecurringEvent &a, const store::RecurringEvent &b)
{
    return a.type == b.type && a.day == b.day && a.month == b.month && a.time == b.time &&
           a.memo == b.memo && a.cat == b.cat;
}

// "the yearly event 'Anna's birthday'", or "the weekly action '/home/ann/run.sh'".
QString eventName(const store::RecurringEvent &event)
{
    const bool action = store::isAction(event.memo);
    return QStringLiteral("the %1 %2 '%3'")
        .arg(event.type.toLower(), action ? QStringLiteral("action") : QStringLiteral("event"),
             action ? store::actionPath(event.memo) : event.memo);
}

// "29 February" where the month is one, otherwise the fields as stored.
QString dayAndMonth(const store::RecurringEvent &event)
{
    std::int32_t month = 0;
    if (rt::tryCLng(event.month, month) && month >= 1 && month <= 12)
        return event.day.trimmed() + QLatin1Char(' ') + QLocale::c().monthName(month);
    return QStringLiteral("day '%1' of month '%2'").arg(event.day, event.month);
}

} // namespace

Fault faultOf(const store::Model &model, int n, int year)
{
    if (n < 1 || n > model.recurringCount())
        return Fault::None;
    const store::RecurringEvent &event = model.recurring[n];
    const bool yearly = event.type == store::kYearly;
    const bool monthly = event.type == store::kMonthly;
    if (!yearly && !monthly && event.type != store::kWeekly && event.type != store::kDaily)
        return Fault::None;
    rt::Date date = 0;
    double day = 0;
    if (yearly && !rt::tryCDate(event.month + QLatin1Char('/') + event.day + QLatin1Char('/') +
                                    QString::number(year),
                                date))
        return Fault::NoDateThisYear;
    if (monthly && !rt::tryCDbl(event.day, day))
        return Fault::DayNotNumber;
    if (event.time != store::kAllDayTime && !rt::tryCDate(event.time, date))
        return Fault::TimeNotTime;
    if (event.type != store::kDaily && n > model.eventCount())
        return Fault::MissingOneOff;
    return Fault::None;
}

bool wouldEndAgain(const CrashRecord &record, const store::Model &model, int year)
{
    return record.number >= 1 && record.number <= model.recurringCount() &&
           sameTexts(model.recurring[record.number], record.event) &&
           faultOf(model, record.number, year) != Fault::None;
}

QString explanation(const CrashRecord &record, Fault fault, int eventCount, int year)
{
    const store::RecurringEvent &event = record.event;
    const QString name = eventName(event);
    switch (fault) {
    case Fault::NoDateThisYear:
        return QStringLiteral("The calendar closed because %1 on %2 has no date in %3.")
            .arg(name, dayAndMonth(event))
            .arg(year);
    case Fault::DayNotNumber:
        return QStringLiteral("The calendar closed because %1 is set for day '%2' of the month, "
                              "which is not a number.")
            .arg(name, event.day);
    case Fault::TimeNotTime:
        return QStringLiteral("The calendar closed because %1 has the time '%2', which is not "
                              "a time of day.")
            .arg(name, event.time);
    case Fault::MissingOneOff:
        return QStringLiteral("The calendar closed when %1 came due: it is recurring event "
                              "number %2, and a weekly, monthly or yearly event needs at least "
                              "as many one-off events as its number, and there are %3.")
            .arg(name)
            .arg(record.number)
            .arg(eventCount);
    case Fault::None:
        break;
    }
    return QStringLiteral("The calendar closed because of %1.").arg(name);
}

} // namespace recovery
