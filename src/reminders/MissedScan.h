#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QList>
#include <QString>

// The reminders that came due in minutes the reminder check could not see: while the
// calendar was not running, or across a jump of the clock.
namespace reminders
{

struct MissedReminder {
    rt::Date due = 0; // the latest occurrence missed: its minute, or its day when all day
    bool recurring = false;
    int number = 0; // in the store's numbering of its kind
    QString category;
    rt::WinColor colour = 0;
    QString text; // the memo, or an action's path
    bool action = false;
    QString when; // the when-line of the alarm window
};

inline constexpr qint64 kMinutesPerDay = 1440;
// A longer gap is cut to its last seven days: older reminders are no longer news.
inline constexpr qint64 kLongestGap = 7 * kMinutesPerDay;

// An instant as a whole number of minutes, read as the reminder check reads the clock.
qint64 minuteOf(rt::Date instant);

// The events due in the minutes after `seen` and before `now`, which the check saw itself.
// Timed events by the rules of the check; all-day events on the days between, which the
// check never saw (today's fire at the first tick); all-day daily events never, as they
// fire at every start. Each event once, at its latest occurrence, newest first. Text that
// does not convert leaves its event out: the check reports it where it matters.
QList<MissedReminder> findMissed(const store::Model &model, qint64 seen, qint64 now);

// Two lists as one, each event once, at its latest occurrence, newest first.
QList<MissedReminder> mergeMissed(const QList<MissedReminder> &older,
                                  const QList<MissedReminder> &newer);

} // namespace reminders
