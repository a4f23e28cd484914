#include "reminders/MissedScan.h"

#include "reminders/AlarmText.h"
#include "runtime/DateText.h"
#include "store/Recurrence.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace reminders
{
namespace
{

qint64 dayOf(qint64 minute)
{
    return minute >= 0 ? minute / kMinutesPerDay : (minute + 1) / kMinutesPerDay - 1;
}

int minuteOfDay(rt::Date time)
{
    return rt::Hour(time) * 60 + rt::Minute(time);
}

class Scan
{
public:
    Scan(const store::Model &model, qint64 seen, qint64 now)
        : model_(model), colours_(model), from_(std::max(seen, now - kLongestGap)), now_(now)
    {
        for (qint64 day = dayOf(now - 1); day >= dayOf(from_); --day)
            days_.push_back(day);
    }

    QList<MissedReminder> run()
    {
        if (now_ - from_ < 2)
            return {};
        for (int i = 1; i <= model_.eventCount(); ++i)
            scanEvent(i);
        for (int i = 1; i <= model_.recurringCount(); ++i)
            scanRecurring(i);
        std::stable_sort(
            found_.begin(), found_.end(),
            [](const MissedReminder &a, const MissedReminder &b) { return a.due > b.due; });
        return found_;
    }

private:
    // A timed occurrence inside the gap; an all-day one on a day between its ends.
    bool missed(qint64 day, bool allDay, int minute) const
    {
        if (allDay)
            return day > dayOf(from_) && day < dayOf(now_);
        const qint64 at = day * kMinutesPerDay + minute;
        return at > from_ && at < now_;
    }

    void add(bool recurring, int i, const QString &cat, const QString &memo, QString when,
             qint64 day, bool allDay, int minute)
    {
        const bool action = store::isAction(memo);
        found_.push_back({rt::Date(day) + (allDay ? 0 : rt::Date(minute) / kMinutesPerDay),
                          recurring, i, cat, colours_.of(cat),
                          action ? store::actionPath(memo) : memo, action, std::move(when)});
    }

    void scanEvent(int i)
    {
        const store::Event &event = model_.events[i];
        if (event.date != std::floor(event.date) || days_.empty() || event.date < days_.back() ||
            event.date > days_.front())
            return;
        const bool allDay = event.time == 0;
        const int minute = minuteOfDay(event.time);
        if (missed(qint64(event.date), allDay, minute))
            add(false, i, event.cat, event.memo, whenLine(event), qint64(event.date), allDay,
                minute);
    }

    void scanRecurring(int i)
    {
        const store::RecurringEvent &event = model_.recurring[i];
        const bool allDay = event.time == store::kAllDayTime;
        if (allDay && event.type == store::kDaily)
            return;
        int minute = 0;
        if (!allDay) {
            const std::optional<rt::Date> time = rt::parseDate(event.time);
            if (!time)
                return;
            minute = minuteOfDay(*time);
        }
        for (const qint64 day : days_) {
            if (missed(day, allDay, minute) && recurrence::inRemoveWindow(event, rt::Date(day))) {
                add(true, i, event.cat, event.memo, whenLine(event), day, allDay, minute);
                return;
            }
        }
    }

    const store::Model &model_;
    const store::CategoryColours colours_;
    const qint64 from_;
    const qint64 now_;
    std::vector<qint64> days_; // the days the gap touches, newest first
    QList<MissedReminder> found_;
};

} // namespace

qint64 minuteOf(rt::Date instant)
{
    return qint64(rt::DatePart(instant)) * kMinutesPerDay + minuteOfDay(instant);
}

QList<MissedReminder> findMissed(const store::Model &model, qint64 seen, qint64 now)
{
    return Scan(model, seen, now).run();
}

QList<MissedReminder> mergeMissed(const QList<MissedReminder> &older,
                                  const QList<MissedReminder> &newer)
{
    QList<MissedReminder> merged = newer;
    for (const MissedReminder &old : older) {
        const bool kept = std::none_of(merged.begin(), merged.end(), [&](const auto &m) {
            return m.recurring == old.recurring && m.number == old.number;
        });
        if (kept)
            merged.push_back(old);
    }
    std::stable_sort(
        merged.begin(), merged.end(),
        [](const MissedReminder &a, const MissedReminder &b) { return a.due > b.due; });
    return merged;
}

} // namespace reminders
