#include "shell/EventsText.h"

#include "runtime/DateText.h"
#include "runtime/Locale.h"
#include "store/Recurrence.h"

#include <QList>
#include <algorithm>
#include <array>

namespace eventstext
{
namespace
{

// Every rule repeats within four years, leap days included.
constexpr int kRuleCycleDays = 4 * 366;

bool fallsWithin(const store::RecurringEvent &event, rt::Date from, rt::Date to)
{
    for (rt::Date date = from; date <= std::min(to, from + kRuleCycleDays); ++date) {
        if (recurrence::inPrintedList(event, date))
            return true;
    }
    return false;
}

// One-off and recurring times alike in hours and minutes; a recurring time that is no time
// stays as stored.
QString timeText(const QString &stored)
{
    const auto time = rt::parseDate(stored);
    return time ? rt::ShortTimeText(*time) : stored;
}

QString rule(const store::RecurringEvent &event)
{
    QString rule;
    if (event.type == store::kDaily)
        rule = QStringLiteral("every day");
    else if (event.type == store::kWeekly)
        rule = QStringLiteral("every ") + event.day;
    else if (event.type == store::kMonthly)
        rule = QStringLiteral("monthly on day ") + event.day;
    else
        rule = QStringLiteral("yearly on ") + event.month + QLatin1Char('/') + event.day;
    if (event.time != store::kAllDayTime)
        rule += QStringLiteral(" at ") + timeText(event.time);
    return rule;
}

QString line(const QString &when, const QString &memo, const QString &category)
{
    const QString what = store::isAction(memo)
                             ? QStringLiteral("Action: ") + store::actionPath(memo)
                             : QStringLiteral("Memo: ") + memo;
    return QStringLiteral("    %1 - %2 (%3)\n").arg(when, what, category);
}

QString dayHeading(rt::Date date)
{
    const QStringList &names = rt::RtLocale::current().weekdayNames;
    const int weekday = rt::Weekday(date);
    const QString name = weekday <= names.size() ? names.at(weekday - 1) : QString();
    return name + QStringLiteral(", ") + rt::CStr(date) + QLatin1Char('\n');
}

} // namespace

Text eventsText(const store::Model &model, rt::Date from, rt::Date to)
{
    Text result;
    QString &text = result.text;
    text = from == to ? QStringLiteral("ORVA Calendar: events on %1\n").arg(rt::CStr(from))
                      : QStringLiteral("ORVA Calendar: events from %1 to %2\n")
                            .arg(rt::CStr(from), rt::CStr(to));

    const std::array<std::pair<QString, QString>, 4> kinds = {{
        {store::kDaily, QStringLiteral("Daily events")},
        {store::kWeekly, QStringLiteral("Weekly events")},
        {store::kMonthly, QStringLiteral("Monthly events")},
        {store::kYearly, QStringLiteral("Yearly events")},
    }};
    for (const auto &[kind, heading] : kinds) {
        QString block;
        for (int i = 1; i <= model.recurringCount(); ++i) {
            const store::RecurringEvent &e = model.recurring[i];
            if (e.type == kind && fallsWithin(e, from, to)) {
                block += line(rule(e), e.memo, e.cat);
                ++result.eventCount;
            }
        }
        if (!block.isEmpty())
            text += QLatin1Char('\n') + heading + QLatin1Char('\n') + block;
    }

    // By date, all-day events first and then by time; the store's order among equals.
    QList<const store::Event *> once;
    for (int i = 1; i <= model.eventCount(); ++i) {
        const rt::Date day = rt::DatePart(model.events[i].date);
        if (day >= from && day <= to)
            once.append(&model.events[i]);
    }
    std::stable_sort(once.begin(), once.end(), [](const store::Event *a, const store::Event *b) {
        const auto key = [](const store::Event *e) {
            return std::pair(rt::DatePart(e->date), rt::TimePart(e->time));
        };
        return key(a) < key(b);
    });
    rt::Date shown = -1e9;
    for (const store::Event *e : once) {
        if (rt::DatePart(e->date) != shown) {
            shown = rt::DatePart(e->date);
            text += QLatin1Char('\n') + dayHeading(shown);
        }
        const rt::Date time = rt::TimePart(e->time);
        text +=
            line(time == 0 ? QStringLiteral("All Day") : rt::ShortTimeText(time), e->memo, e->cat);
        ++result.eventCount;
    }
    if (result.eventCount == 0)
        text += QStringLiteral("\nNo events.\n");
    return result;
}

} // namespace eventstext
