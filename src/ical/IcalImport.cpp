#include "ical/IcalImport.h"

#include "ical/IcalSupport.h"
#include "runtime/DateText.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

namespace ical
{
namespace
{

// Rule steps for a whole file: rules that would run on for ever stop here.
constexpr int kMostRuleSteps = 200000;

ReadResult failure(const char *message)
{
    return {std::nullopt, QString::fromUtf8(message)};
}

// A day and, unless it is all day, a time, in local time.
struct Moment {
    QDate date;
    std::optional<QTime> time;
};

QDate wallDate(const icaltimetype &t)
{
    return QDate(t.year, t.month, t.day);
}

bool isValid(const icaltimetype &t)
{
    return !icaltime_is_null_time(t) && QDate::isValid(t.year, t.month, t.day) &&
           (t.is_date || QTime::isValid(t.hour, t.minute, std::min(t.second, 59)));
}

// The zone of a date-time property: null for floating times and for dates. An unknown zone
// goes to `problem`.
icaltimezone *zoneOf(icalcomponent *event, icalproperty *prop, const icaltimetype &t,
                     QString &problem)
{
    if (t.is_date)
        return nullptr;
    if (icaltime_is_utc(t))
        return icaltimezone_get_utc_timezone();
    icalparameter *param = icalproperty_get_first_parameter(prop, ICAL_TZID_PARAMETER);
    const char *tzid = param ? icalparameter_get_tzid(param) : nullptr;
    if (!tzid)
        return nullptr;
    icaltimezone *zone = icalcomponent_get_timezone(icalcomponent_get_parent(event), tzid);
    if (!zone)
        zone = icaltimezone_get_builtin_timezone(tzid);
    if (!zone)
        zone = icaltimezone_get_builtin_timezone_from_tzid(tzid);
    if (!zone)
        problem = QStringLiteral("its time zone \"%1\" is unknown").arg(text(tzid));
    return zone;
}

Moment local(const icaltimetype &t, icaltimezone *zone)
{
    if (t.is_date)
        return {wallDate(t), std::nullopt};
    if (!zone)
        return {wallDate(t), QTime(t.hour, t.minute)};
    const QDateTime at =
        QDateTime::fromSecsSinceEpoch(qint64(icaltime_as_timet_with_zone(t, zone)));
    return {at.date(), QTime(at.time().hour(), at.time().minute())};
}

bool none(const short *list)
{
    return list[0] == ICAL_RECURRENCE_ARRAY_MAX;
}

bool justOne(const short *list)
{
    return !none(list) && list[1] == ICAL_RECURRENCE_ARRAY_MAX;
}

QString ruleText(icalrecurrencetype r)
{
    char *rule = icalrecurrencetype_as_string_r(&r);
    const QString result = text(rule);
    icalmemory_free_buffer(rule);
    return result;
}

// Empty when the store can hold the rule exactly; else why not.
QString whyNotExact(icalcomponent *event, const icalrecurrencetype &r)
{
    if (icalcomponent_count_properties(event, ICAL_RRULE_PROPERTY) > 1)
        return QStringLiteral("it has several rules");
    if (icalcomponent_get_first_property(event, ICAL_EXDATE_PROPERTY))
        return QStringLiteral("it leaves out some dates (EXDATE)");
    if (icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY) ||
        icalcomponent_get_first_property(event, ICAL_EXRULE_PROPERTY))
        return QStringLiteral("it has dates besides its rule");
    if (r.count > 0)
        return QStringLiteral("it ends after %1 times (COUNT)").arg(r.count);
    if (!icaltime_is_null_time(r.until))
        return QStringLiteral("it ends on a date (UNTIL)");
    if (r.interval > 1)
        return QStringLiteral("it repeats at an interval of %1 (INTERVAL)").arg(r.interval);
    bool exact = none(r.by_second) && none(r.by_minute) && none(r.by_hour) && none(r.by_year_day) &&
                 none(r.by_week_no) && none(r.by_set_pos);
    const bool oneMonthDay =
        none(r.by_month_day) || (justOne(r.by_month_day) && r.by_month_day[0] > 0);
    switch (r.freq) {
    case ICAL_DAILY_RECURRENCE:
        exact = exact && none(r.by_day) && none(r.by_month_day) && none(r.by_month);
        break;
    case ICAL_WEEKLY_RECURRENCE:
        exact = exact && none(r.by_month_day) && none(r.by_month) &&
                (none(r.by_day) ||
                 (justOne(r.by_day) && icalrecurrencetype_day_position(r.by_day[0]) == 0));
        break;
    case ICAL_MONTHLY_RECURRENCE:
        exact = exact && none(r.by_day) && none(r.by_month) && oneMonthDay;
        break;
    case ICAL_YEARLY_RECURRENCE:
        // A day of the month without a month means that day of every month.
        exact = exact && none(r.by_day) && oneMonthDay &&
                (none(r.by_month) ? none(r.by_month_day) : justOne(r.by_month));
        break;
    default:
        exact = false;
    }
    return exact ? QString()
                 : QStringLiteral("its rule %1 has no equal in the calendar").arg(ruleText(r));
}

class Planner
{
public:
    Planner(Range range, QList<Item> &out) : range_(range), out_(out) {}

    void add(icalcomponent *event, int source);

private:
    void notImported(const QString &why);
    bool exact(const icalrecurrencetype &r, const icaltimetype &start, const Moment &first);
    void occurrences(icalcomponent *event, const icalrecurrencetype &r, const icaltimetype &start,
                     icaltimezone *zone, const QString &why);
    QString note(const QString &more = {}) const;

    Range range_;
    QList<Item> &out_;
    int steps_ = 0;
    Item item_;
    QStringList notes_;
};

QString Planner::note(const QString &more) const
{
    QStringList all = notes_;
    if (!more.isEmpty())
        all.prepend(more);
    return all.join(QStringLiteral("; "));
}

void Planner::notImported(const QString &why)
{
    Item item = item_;
    item.kind = Kind::NotImported;
    item.note = why;
    out_ << item;
}

void Planner::add(icalcomponent *event, int source)
{
    item_ = Item{};
    notes_.clear();
    item_.source = source;
    item_.summary = text(icalcomponent_get_summary(event));
    icalproperty *action = icalcomponent_get_first_property(event, ICAL_X_PROPERTY);
    while (action && qstrcmp(icalproperty_get_x_name(action), kActionProperty) != 0)
        action = icalcomponent_get_next_property(event, ICAL_X_PROPERTY);
    item_.memo = action ? storedMemo(store::actionMemo(text(icalproperty_get_x(action))), &notes_)
                        : storedMemo(item_.summary, &notes_);
    if (icalproperty *cat = icalcomponent_get_first_property(event, ICAL_CATEGORIES_PROPERTY))
        item_.category = storedMemo(text(icalproperty_get_categories(cat)));

    if (icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY))
        return notImported(QStringLiteral("it changes one occurrence of another event"));
    if (icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED)
        return notImported(QStringLiteral("it is cancelled"));
    icalproperty *dtstart = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
    const icaltimetype start = dtstart ? icalproperty_get_dtstart(dtstart) : icaltime_null_time();
    if (!isValid(start))
        return notImported(QStringLiteral("it has no valid start date"));
    QString problem;
    icaltimezone *zone = zoneOf(event, dtstart, start, problem);
    if (!problem.isEmpty())
        return notImported(problem);
    const Moment first = local(start, zone);
    if (first.time == QTime(0, 0))
        notes_ << QStringLiteral("at midnight, which the calendar takes for all day");
    item_.time =
        first.time ? storedTime(first.time->hour(), first.time->minute()) : store::kAllDayTime;
    const icaltimetype end = icalcomponent_get_dtend(event);
    if (start.is_date && isValid(end) && wallDate(start).daysTo(wallDate(end)) > 1)
        notes_ << QStringLiteral("lasts %1 days; only its first is kept")
                      .arg(wallDate(start).daysTo(wallDate(end)));

    icalproperty *rrule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY);
    if (!rrule) {
        if (icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY))
            notes_ << QStringLiteral("its further dates (RDATE) are left out");
        item_.kind = Kind::OneOff;
        item_.date = rt::DateSerial(first.date.year(), first.date.month(), first.date.day());
        item_.note = note();
        item_.chosen = true;
        out_ << item_;
        return;
    }
    const icalrecurrencetype r = icalproperty_get_rrule(rrule);
    if (r.freq == ICAL_NO_RECURRENCE)
        return notImported(QStringLiteral("its rule is not valid"));
    if (r.freq < ICAL_DAILY_RECURRENCE)
        return notImported(QStringLiteral("it repeats within a day, which the calendar cannot"));
    QString why = whyNotExact(event, r);
    if (why.isEmpty() && first.date != wallDate(start))
        why = QStringLiteral("its time zone moves it to another day");
    if (why.isEmpty() && exact(r, start, first))
        return;
    if (why.isEmpty())
        why = QStringLiteral("29 February: a yearly event would colour a wrong day in other "
                             "years, so it comes as one-off events in leap years");
    occurrences(event, r, start, zone, why);
}

// The recurring event the store holds for the rule, unless it falls on 29 February.
bool Planner::exact(const icalrecurrencetype &r, const icaltimetype &start, const Moment &first)
{
    Item item = item_;
    const int day = none(r.by_month_day) ? first.date.day() : r.by_month_day[0];
    const int month =
        none(r.by_month) ? first.date.month() : icalrecurrencetype_month_month(r.by_month[0]);
    switch (r.freq) {
    case ICAL_DAILY_RECURRENCE:
        item.kind = Kind::Daily;
        break;
    case ICAL_WEEKLY_RECURRENCE:
        item.kind = Kind::Weekly;
        item.day = store::kWeekdayNames[none(r.by_day)
                                            ? icaltime_day_of_week(start) - 1
                                            : icalrecurrencetype_day_day_of_week(r.by_day[0]) - 1];
        break;
    case ICAL_MONTHLY_RECURRENCE:
        item.kind = Kind::Monthly;
        item.day = QString::number(day);
        break;
    default:
        if (month == 2 && day == 29)
            return false;
        item.kind = Kind::Yearly;
        item.day = QString::number(day);
        item.month = QString::number(month);
    }
    item.note = note();
    item.chosen = true;
    out_ << item;
    return true;
}

void Planner::occurrences(icalcomponent *event, const icalrecurrencetype &r,
                          const icaltimetype &start, icaltimezone *zone, const QString &why)
{
    icalrecur_iterator *it = icalrecur_iterator_new(r, start);
    if (!it)
        return notImported(QStringLiteral("its rule is not valid"));
    icaltimetype from = start;
    from.year = range_.from;
    from.month = 1;
    from.day = 1;
    if (r.count == 0 && icaltime_compare(from, start) > 0)
        icalrecur_iterator_set_start(it, from);

    QList<icaltimetype> left;
    for (icalproperty *p = icalcomponent_get_first_property(event, ICAL_EXDATE_PROPERTY); p;
         p = icalcomponent_get_next_property(event, ICAL_EXDATE_PROPERTY))
        left << icalproperty_get_exdate(p);
    QList<Moment> found;
    int total = 0;
    bool tooLong = false;
    for (;;) {
        if (++steps_ > kMostRuleSteps) {
            tooLong = true;
            break;
        }
        const icaltimetype next = icalrecur_iterator_next(it);
        if (icaltime_is_null_time(next) || next.year > range_.to + 1)
            break;
        if (std::any_of(left.begin(), left.end(), [&](const icaltimetype &x) {
                return wallDate(x) == wallDate(next) &&
                       (x.is_date || next.is_date ||
                        (x.hour == next.hour && x.minute == next.minute));
            }))
            continue;
        const Moment m = local(next, zone);
        if (m.date.year() < range_.from || m.date.year() > range_.to)
            continue;
        if (++total <= kMostOccurrences)
            found << m;
    }
    icalrecur_iterator_free(it);
    if (tooLong)
        return notImported(QStringLiteral("its rule takes too long to work out"));
    if (found.isEmpty())
        return notImported(QStringLiteral("%1; it has no date from %2 to %3")
                               .arg(why)
                               .arg(range_.from)
                               .arg(range_.to));

    QString first = QStringLiteral("one of %1 dates from %2 to %3, as %4")
                        .arg(total)
                        .arg(range_.from)
                        .arg(range_.to)
                        .arg(why);
    if (total > found.size())
        first += QStringLiteral("; only the first %1 are offered").arg(found.size());
    for (const Moment &m : found) {
        Item item = item_;
        item.kind = Kind::OneOff;
        item.date = rt::DateSerial(m.date.year(), m.date.month(), m.date.day());
        item.time = m.time ? storedTime(m.time->hour(), m.time->minute()) : store::kAllDayTime;
        // Each date its own memo, as memos are unique; actions need not be.
        if (found.size() > 1 && !store::isAction(item.memo)) {
            const QString suffix = QStringLiteral(" (%1)").arg(rt::CStr(item.date));
            item.memo = item.memo.left(254 - suffix.size()).trimmed() + suffix;
        }
        item.note = note(first);
        item.chosen = true;
        out_ << item;
    }
}

QList<icalcomponent *> eventsOf(icalcomponent *root)
{
    QList<icalcomponent *> calendars;
    if (icalcomponent_isa(root) == ICAL_VCALENDAR_COMPONENT)
        calendars << root;
    for (icalcomponent *c = icalcomponent_get_first_component(root, ICAL_VCALENDAR_COMPONENT); c;
         c = icalcomponent_get_next_component(root, ICAL_VCALENDAR_COMPONENT))
        calendars << c;
    QList<icalcomponent *> events;
    for (icalcomponent *calendar : calendars) {
        for (icalcomponent *e = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
             e; e = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT))
            events << e;
    }
    return events;
}

} // namespace

ReadResult readCalendar(const QByteArray &bytes)
{
    if (bytes.trimmed().isEmpty())
        return failure("The file is empty.");
    if (bytes.size() > kLargestFile)
        return failure("The file is larger than 8 MB, too large for a calendar to import.");
    QByteArray data = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(data);
    if (decoder.hasError() || data.contains('\0'))
        return failure("The file is not UTF-8 text, which iCalendar files are.");
    const QStringList lines =
        text.trimmed().split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
    if (!lines.first().trimmed().startsWith(QLatin1String("BEGIN:VCALENDAR"), Qt::CaseInsensitive))
        return failure("The file is not an iCalendar file.");
    if (lines.last().trimmed().compare(QLatin1String("END:VCALENDAR"), Qt::CaseInsensitive) != 0)
        return failure("The file is incomplete: it ends before its calendar does.");

    quietErrors();
    std::shared_ptr<icalcomponent> root(icalparser_parse_string(data.constData()),
                                        [](icalcomponent *c) {
                                            if (c)
                                                icalcomponent_free(c);
                                        });
    if (!root)
        return failure("The file is not an iCalendar file.");
    const qsizetype events = eventsOf(root.get()).size();
    if (events == 0)
        return failure("The file holds no events.");
    return {Calendar{root, int(std::max<qsizetype>(0, events - kMostEvents))}, {}};
}

ReadResult readCalendarFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure("The file could not be read.");
    if (file.size() > kLargestFile)
        return failure("The file is larger than 8 MB, too large for a calendar to import.");
    return readCalendar(file.read(kLargestFile + 1));
}

QList<Item> plan(const Calendar &calendar, Range range)
{
    quietErrors();
    QList<Item> items;
    Planner planner(range, items);
    const QList<icalcomponent *> events = eventsOf(calendar.root.get());
    for (qsizetype i = 0; i < std::min<qsizetype>(events.size(), kMostEvents); ++i)
        planner.add(events[i], int(i + 1));
    return items;
}

} // namespace ical
