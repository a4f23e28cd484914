#include "ical/IcalExport.h"

#include "ical/IcalSupport.h"
#include "runtime/DateText.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QHash>
#include <optional>

namespace ical
{
namespace
{

// A character the store's code page has not: no stored text holds it.
constexpr QChar kCommaMark(0xE000);

// What one event becomes, before it is turned into a VEVENT.
struct Entry {
    QDate start;
    std::optional<QTime> time; // none: all day
    QByteArray rule;           // empty for a one-off event
    QString memo;
    QString cat;
};

std::optional<QTime> timeOfDay(const QString &stored)
{
    const std::optional<rt::Date> value = rt::parseDate(stored);
    if (!value)
        return std::nullopt;
    return QTime(rt::Hour(*value), rt::Minute(*value), rt::Second(*value) % 60);
}

// A number of 1 to `last`, as the painters read the store's day and month texts.
std::optional<int> number(const QString &text, int last)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    return ok && n >= 1 && n <= last ? std::optional<int>(n) : std::nullopt;
}

std::optional<Entry> oneOffEntry(const store::EventRecord &e)
{
    const std::optional<rt::Date> date = rt::parseDate(e.date);
    const std::optional<QTime> time = timeOfDay(e.time);
    if (!date || !time)
        return std::nullopt;
    const rt::Date day = rt::DatePart(*date);
    Entry entry{QDate(rt::Year(day), rt::Month(day), rt::Day(day)), *time, {}, e.memo, e.cat};
    if (*time == QTime(0, 0))
        entry.time.reset();
    return entry;
}

std::optional<Entry> recurringEntry(const store::RecurringEvent &e, int year)
{
    const std::optional<QTime> time = timeOfDay(e.time);
    if (!time)
        return std::nullopt;
    Entry entry{QDate(year, 1, 1), *time, {}, e.memo, e.cat};
    if (*time == QTime(0, 0))
        entry.time.reset();
    static const char *const byDay[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    if (e.type == store::kDaily) {
        entry.rule = "FREQ=DAILY";
    } else if (e.type == store::kWeekly) {
        const auto found =
            std::find(store::kWeekdayNames.begin(), store::kWeekdayNames.end(), e.day);
        if (found == store::kWeekdayNames.end())
            return std::nullopt;
        const int weekday = int(found - store::kWeekdayNames.begin()); // Sunday 0
        entry.start = entry.start.addDays((weekday - entry.start.dayOfWeek() % 7 + 7) % 7);
        entry.rule = QByteArray("FREQ=WEEKLY;BYDAY=") + byDay[weekday];
    } else if (e.type == store::kMonthly) {
        const std::optional<int> day = number(e.day, 31);
        if (!day)
            return std::nullopt;
        entry.start = QDate(year, 1, *day);
        entry.rule = "FREQ=MONTHLY;BYMONTHDAY=" + QByteArray::number(*day);
    } else if (e.type == store::kYearly) {
        const std::optional<int> month = number(e.month, 12);
        const std::optional<int> day =
            month ? number(e.day, rt::daysInMonth(2000, *month)) : std::nullopt;
        if (!day)
            return std::nullopt;
        // 29 February first falls in the next leap year.
        int first = year;
        while (!QDate::isValid(first, *month, *day))
            ++first;
        entry.start = QDate(first, *month, *day);
        entry.rule = "FREQ=YEARLY;BYMONTH=" + QByteArray::number(*month) +
                     ";BYMONTHDAY=" + QByteArray::number(*day);
    } else {
        return std::nullopt;
    }
    return entry;
}

icaltimetype icalTime(const QDate &date, const std::optional<QTime> &time)
{
    icaltimetype t = icaltime_null_time();
    t.year = date.year();
    t.month = date.month();
    t.day = date.day();
    t.is_date = time ? 0 : 1;
    if (time) {
        t.hour = time->hour();
        t.minute = time->minute();
        t.second = time->second();
    }
    return t;
}

// Stable for the same event across exports: its content, and how many identical events came
// before it.
QByteArray uid(const Entry &e, QHash<QByteArray, int> &seen)
{
    const QString content = QStringList{e.start.toString(Qt::ISODate),
                                        e.time ? e.time->toString(Qt::ISODate) : QString(),
                                        QString::fromLatin1(e.rule), e.memo, e.cat}
                                .join(QChar(0x1F));
    const QByteArray hash =
        QCryptographicHash::hash(content.toUtf8(), QCryptographicHash::Sha1).toHex().left(24);
    const int n = seen[hash]++;
    return hash + (n ? '-' + QByteArray::number(n + 1) : QByteArray()) + "@orva-calendar";
}

icalcomponent *vevent(const Entry &e, const QByteArray &id, const icaltimetype &stamp)
{
    icalcomponent *event = icalcomponent_new_vevent();
    icalcomponent_add_property(event, icalproperty_new_uid(id.constData()));
    icalcomponent_add_property(event, icalproperty_new_dtstamp(stamp));
    icalcomponent_add_property(event, icalproperty_new_dtstart(icalTime(e.start, e.time)));
    if (!e.rule.isEmpty())
        icalcomponent_add_property(
            event, icalproperty_new_rrule(icalrecurrencetype_from_string(e.rule.constData())));
    if (store::isAction(e.memo)) {
        const QString path = store::actionPath(e.memo);
        const QString name =
            path.mid(std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/')) + 1);
        icalcomponent_add_property(event, icalproperty_new_summary(name.toUtf8().constData()));
        icalproperty *action = icalproperty_new_x(path.toUtf8().constData());
        icalproperty_set_x_name(action, kActionProperty);
        icalcomponent_add_property(event, action);
    } else {
        const QByteArray memo = e.memo.toUtf8();
        icalcomponent_add_property(event, icalproperty_new_summary(memo.constData()));
        icalcomponent *alarm = icalcomponent_new_valarm();
        icalcomponent_add_property(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
        icaltriggertype trigger{icaltime_null_time(), icaldurationtype_null_duration()};
        icalcomponent_add_property(alarm, icalproperty_new_trigger(trigger));
        icalcomponent_add_property(alarm, icalproperty_new_description(memo.constData()));
        icalcomponent_add_component(event, alarm);
    }
    if (!e.cat.isEmpty()) {
        // libical writes the list's commas bare; a comma of the name goes in as a mark that
        // is escaped once the text is out.
        const QString cat = QString(e.cat).replace(u',', kCommaMark);
        icalcomponent_add_property(event, icalproperty_new_categories(cat.toUtf8().constData()));
    }
    return event;
}

} // namespace

ExportResult exportEvents(const QList<store::EventRecord> &events,
                          const QList<store::RecurringEvent> &recurring, int year)
{
    quietErrors();
    QList<Entry> entries;
    ExportResult result;
    for (qsizetype n = 1; n < events.size(); ++n) {
        if (const std::optional<Entry> e = oneOffEntry(events[n]))
            entries << *e;
        else
            ++result.skipped;
    }
    for (qsizetype n = 1; n < recurring.size(); ++n) {
        if (const std::optional<Entry> e = recurringEntry(recurring[n], year))
            entries << *e;
        else
            ++result.skipped;
    }

    Component calendar(icalcomponent_new_vcalendar());
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(),
                               icalproperty_new_prodid("-//ORVA//ORVA Calendar 1.07//EN"));
    const icaltimetype stamp = icaltime_from_timet_with_zone(
        time_t(QDateTime::currentSecsSinceEpoch()), 0, icaltimezone_get_utc_timezone());
    QHash<QByteArray, int> seen;
    for (const Entry &e : entries)
        icalcomponent_add_component(calendar.get(), vevent(e, uid(e, seen), stamp));
    result.written = int(entries.size());
    char *text = icalcomponent_as_ical_string_r(calendar.get());
    result.text = QByteArray(text).replace(QString(kCommaMark).toUtf8(), "\\,");
    icalmemory_free_buffer(text);
    return result;
}

ExportResult exportStore(int year)
{
    QList<store::EventRecord> events(store::readCount(store::kCountSection) + 1);
    for (qsizetype n = 1; n < events.size(); ++n)
        events[n] = store::readEventRecord(int(n));
    return exportEvents(events, store::readRecurringEvents(), year);
}

} // namespace ical
