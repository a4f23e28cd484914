#include "mainwindow/ReminderCheck.h"

#include "reminders/AlarmText.h"
#include "runtime/DateText.h"

#include <algorithm>

namespace
{

// One-off events and their cross-references alike fail on a missing number the way an
// array out of its bounds does.
template <typename List> void checkIndex(const List &list, int i)
{
    if (i < 0 || i >= int(list.size()))
        throw rt::RuntimeError::subscriptOutOfRange();
}

} // namespace

void ReminderCheck::setModel(const store::Model &model)
{
    model_ = &model;

    events_.assign(model.events.size(), {});
    for (qsizetype i = 1; i < model.events.size(); ++i) {
        const store::Event &event = model.events[i];
        // "00:00" converts to the time value 0.
        events_[i] = {event.date, event.time == 0, {rt::Hour(event.time), rt::Minute(event.time)}};
    }

    recurring_.clear();
    recurring_.reserve(model.recurring.size());
    for (const store::RecurringEvent &event : model.recurring) {
        Recurring r{recurrence::TickRule(event), event.time == store::kAllDayTime, {}};
        if (!r.allDay) {
            r.time = rt::Converted<HourMinute>::of([&] {
                const rt::Date time = rt::CDate(event.time);
                return HourMinute{rt::Hour(time), rt::Minute(time)};
            });
        }
        recurring_.push_back(std::move(r));
    }

    eventFired_.resize(model.events.size(), false);
    recurringFired_.resize(model.recurring.size(), false);
    ++changes_;
}

void ReminderCheck::clearFlags()
{
    std::fill(eventFired_.begin(), eventFired_.end(), false);
    std::fill(recurringFired_.begin(), recurringFired_.end(), false);
    ++changes_;
}

bool ReminderCheck::dueNow(bool allDay, const HourMinute &at, int hour, int minute, bool &fired)
{
    if (allDay)
        return !fired;
    if (at.hour != hour)
        return false;
    if (at.minute != minute) {
        fired = false;
        return false;
    }
    return !fired;
}

void ReminderCheck::tick(rt::Date now)
{
    if (!model_)
        return;
    const Minute at{rt::DatePart(now), rt::Hour(now), rt::Minute(now)};
    const bool due = walkDue(now, at);
    lastTick_ = now;
    if (!due)
        return;
    // Left empty when the walk raises an error, so that the next tick walks again.
    walked_.reset();
    const quint64 changes = changes_;
    ++fullChecks_;
    walk(at);
    walked_ = Walked{at, changes};
}

// A clock set back, or forward by more than a tick's lateness, may have skipped or repeated
// minutes that the flags alone cannot tell.
bool ReminderCheck::walkDue(rt::Date now, const Minute &at) const
{
    constexpr rt::Date kLargestStep = 5.0 / 86400.0;
    if (lastTick_ && (now < *lastTick_ || now - *lastTick_ > kLargestStep))
        return true;
    return !walked_ || walked_->at != at || walked_->changes != changes_;
}

// A modal alarm keeps the timer running, and the check goes on under it:
// - a one-off memo takes the shared alarm window at once, over the recurring memo shown in
//   it, as one-off memos always overwrite one another;
// - a recurring memo waits until the open one is closed, then has its own modal window: a
//   second modal window stacked on the first would leave the first unanswerable;
// - actions are launched at once;
// - the recurring event whose window is open, or that waits, does not fire again meanwhile,
//   though its flag stays clear until its window is closed.
// So nothing that comes due is dropped.
void ReminderCheck::walk(const Minute &at)
{
    const rt::Date today = at.today;
    const int hour = at.hour;
    const int minute = at.minute;

    bool *eventFired = eventFired_.data();
    for (int i = 1; i < int(events_.size()); ++i) {
        const OneOff &event = events_[i];
        if (event.date != today) {
            eventFired[i] = false;
            continue;
        }
        if (dueNow(event.allDay, event.time, hour, minute, eventFired[i])) {
            fireEvent(i);
            eventFired[i] = true;
        }
    }

    const recurrence::Today day(today);
    // Bounds are read again on every round: a reload may come while a modal alarm is open.
    for (int i = 1; i < int(recurring_.size()); ++i) {
        evaluating_ = i;
        const Recurring &event = recurring_[i];
        if (!event.rule.known())
            continue;
        const bool matches = event.rule.fallsOn(day);
        if (!matches) {
            recurringFired_[i] = false;
            continue;
        }
        const HourMinute at = event.allDay ? HourMinute{} : event.time.value();
        if (dueNow(event.allDay, at, hour, minute, recurringFired_[i]) && !openOrWaiting(i))
            fireRecurring(i);
    }
    evaluating_ = 0;
}

bool ReminderCheck::openOrWaiting(int i) const
{
    return i == openRecurring_ ||
           std::any_of(waiting_.begin(), waiting_.end(),
                       [i](const Waiting &waiting) { return waiting.event == i; });
}

// One modal alarm at a time, the next once it is closed. Each flag is set as its window
// closes.
void ReminderCheck::showWaiting()
{
    if (openRecurring_ != 0 || waiting_.empty())
        return;
    const Waiting next = waiting_.front();
    waiting_.erase(waiting_.begin());
    openRecurring_ = next.event;
    output_.showRecurringAlarm(next.alarm, [this, i = next.event] {
        ++changes_;
        openRecurring_ = 0;
        markRecurringFired(i);
        showWaiting();
    });
}

// Bounds are checked again: a reload may have come while the modal alarm was open.
void ReminderCheck::markRecurringFired(int i)
{
    checkIndex(recurringFired_, i);
    recurringFired_[i] = true;
}

void ReminderCheck::fireEvent(int i)
{
    const store::Event &event = model_->events[i];
    if (store::isAction(event.memo)) {
        output_.launchAction(store::actionPath(event.memo));
        return;
    }
    output_.showOneOffAlarm({event.cat, store::CategoryColours(*model_).of(event.cat), event.memo,
                             reminders::whenLine(event)});
}

void ReminderCheck::fireRecurring(int i)
{
    const store::RecurringEvent &event = model_->recurring[i];
    // Weekly, monthly and yearly events are told memo from action by the one-off event of
    // the same number, and open that event's path. Kept as the program has always done it.
    const QString *marked = &event.memo;
    if (event.type != store::kDaily) {
        checkIndex(model_->events, i);
        marked = &model_->events[i].memo;
    }
    if (store::isAction(*marked)) {
        output_.launchAction(store::actionPath(*marked));
        markRecurringFired(i);
        return;
    }
    waiting_.push_back({i,
                        {event.cat, store::CategoryColours(*model_).of(event.cat), event.memo,
                         reminders::whenLine(event)}});
    showWaiting();
}
