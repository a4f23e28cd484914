#include "shell/EventsText.h"

#include "runtime/DateText.h"
#include "runtime/Locale.h"
#include "runtime/Numbers.h"

#include <algorithm>
#include <array>

namespace eventstext
{
namespace
{

const QString kAllDay = QStringLiteral("All Day");

// The weekday a weekly event is stored under, Sunday = 1; 0 for a name that is none.
int weekdayOf(const QString &day)
{
    static const std::array<QString, 7> names = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                 "Thursday", "Friday", "Saturday"};
    const auto at = std::find(names.begin(), names.end(), day);
    return at == names.end() ? 0 : int(at - names.begin()) + 1;
}

bool fallsOn(const store::RecurringEvent &event, rt::Date date)
{
    if (event.type == store::kDaily)
        return true;
    if (event.type == store::kWeekly)
        return weekdayOf(event.day) == rt::Weekday(date);
    if (event.type == store::kMonthly)
        return rt::numberEqualsText(rt::Day(date), event.day);
    if (event.type == store::kYearly) {
        const auto on = rt::parseDate(event.month + QLatin1Char('/') + event.day +
                                      QLatin1Char('/') + QString::number(rt::Year(date)));
        return on && *on == date;
    }
    return false;
}

QString recurrence(const store::RecurringEvent &event)
{
    if (event.type == store::kDaily)
        return QStringLiteral("every day");
    if (event.type == store::kWeekly)
        return QStringLiteral("every ") + event.day;
    if (event.type == store::kMonthly)
        return QStringLiteral("every month on day ") + event.day;
    return QStringLiteral("every year on ") + event.month + QLatin1Char('/') + event.day;
}

QString what(const QString &memo)
{
    return store::isAction(memo) ? QStringLiteral("Action: ") + store::actionPath(memo)
                                 : QStringLiteral("Memo: ") + memo;
}

QString dayHeading(rt::Date date)
{
    const QStringList &names = rt::RtLocale::current().weekdayNames;
    const int weekday = rt::Weekday(date);
    const QString name = weekday <= names.size() ? names.at(weekday - 1) : QString();
    return name + QStringLiteral(", ") + rt::CStr(date);
}

} // namespace

QList<Entry> entriesOn(const store::Model &model, rt::Date date)
{
    struct Timed {
        rt::Date time;
        Entry entry;
    };
    QList<Timed> timed;
    for (int i = 1; i <= model.eventCount(); ++i) {
        const store::Event &e = model.events[i];
        if (rt::DatePart(e.date) != date)
            continue;
        const rt::Date time = rt::TimePart(e.time);
        timed.append({time, {time == 0 ? kAllDay : rt::CStr(time), what(e.memo), e.cat}});
    }
    for (int i = 1; i <= model.recurringCount(); ++i) {
        const store::RecurringEvent &e = model.recurring[i];
        if (!fallsOn(e, date))
            continue;
        const bool allDay = e.time == store::kAllDayTime;
        const auto time = allDay ? std::nullopt : rt::parseDate(e.time);
        const QString when = (allDay ? kAllDay : e.time) + QStringLiteral(", ") + recurrence(e);
        timed.append({time ? rt::TimePart(*time) : 0, {when, what(e.memo), e.cat}});
    }
    std::stable_sort(timed.begin(), timed.end(),
                     [](const Timed &a, const Timed &b) { return a.time < b.time; });
    QList<Entry> entries;
    for (const Timed &t : timed)
        entries.append(t.entry);
    return entries;
}

Text eventsText(const store::Model &model, rt::Date from, rt::Date to)
{
    Text result;
    QString &text = result.text;
    text = from == to ? QStringLiteral("ORVA Calendar: events on %1\n").arg(rt::CStr(from))
                      : QStringLiteral("ORVA Calendar: events from %1 to %2\n")
                            .arg(rt::CStr(from), rt::CStr(to));
    for (rt::Date date = from; date <= to; ++date) {
        const QList<Entry> entries = entriesOn(model, date);
        if (entries.isEmpty())
            continue;
        text += QLatin1Char('\n') + dayHeading(date) + QLatin1Char('\n');
        for (const Entry &e : entries) {
            text += QStringLiteral("    %1\n    %2\n    Category: %3\n\n")
                        .arg(e.when, e.what, e.category);
            ++result.eventCount;
        }
        text.chop(1);
    }
    if (result.eventCount == 0)
        text += QStringLiteral("\nNo events.\n");
    return result;
}

} // namespace eventstext
