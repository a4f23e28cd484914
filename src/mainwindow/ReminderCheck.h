#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"
#include "runtime/RuntimeError.h"
#include "store/DataStore.h"
#include "store/Recurrence.h"

#include <QList>
#include <QString>
#include <functional>
#include <vector>

// A memo that has come due, as the alarm window shows it.
struct Alarm {
    QString category; // the window's caption
    rt::WinColor colour = 0;
    QString memo;
    QString when;
};

// Where the reminder check sends what is due.
class ReminderOutput
{
public:
    virtual ~ReminderOutput() = default;
    // The one shared alarm window, modeless: returns at once.
    virtual void showOneOffAlarm(const Alarm &alarm) = 0;
    // The same window, modal to the whole program; returns at once, and `closed` runs once
    // the user has closed it. It does not wait in a loop of its own: the timer that runs the
    // check could not tick again from inside its own handler.
    virtual void showRecurringAlarm(const Alarm &alarm, std::function<void()> closed) = 0;
    // Opens the path with the desktop's "open"; nothing is reported back.
    virtual void launchAction(const QString &path) = 0;
};

// The check that Timer1 runs 25 times a second: it compares an instant with every loaded
// event, fires each event once per due period and keeps the fired flags that make it so.
// Text that cannot change between reloads is converted when the model is set; a conversion
// that failed raises its run-time error only where the tick reaches it.
//
// The outcome depends only on the date, hour and minute, the model and the flags, so a tick
// walks the events only when one of those may have changed since the last complete walk: a
// new minute, a reload, cleared flags, a closed alarm window, a clock that jumped, or a walk
// that raised an error. The ticks between cost the same with any number of events.
class ReminderCheck
{
public:
    explicit ReminderCheck(ReminderOutput &output) : output_(output) {}

    // The model is read, not copied, and must outlive the check. Flags already set are kept;
    // new ones start clear.
    void setModel(const store::Model &model);
    void clearFlags();

    // Raises rt::RuntimeError where the check meets a text that does not convert, or a
    // cross-referenced one-off event that does not exist.
    void tick(rt::Date now);

    // How many ticks walked the events.
    qint64 fullChecks() const { return fullChecks_; }

    // Indexed by event number; element 0 is unused.
    const QList<bool> &eventFired() const { return eventFired_; }
    const QList<bool> &recurringFired() const { return recurringFired_; }

    // The recurring event the tick is checking: still set when an error left the tick, 0
    // once a tick has ended normally.
    int evaluating() const { return evaluating_; }

private:
    struct HourMinute {
        int hour = 0;
        int minute = 0;
    };
    struct OneOff {
        rt::Date date = 0;
        bool allDay = false;
        HourMinute time;
    };
    struct Recurring {
        recurrence::TickRule rule;
        bool allDay = false;
        rt::Converted<HourMinute> time; // timed events only
    };

    struct Minute {
        rt::Date today = 0;
        int hour = 0;
        int minute = 0;
        bool operator==(const Minute &) const = default;
    };
    bool walkDue(rt::Date now, const Minute &at) const;
    void walk(const Minute &at);

    // Whether event i fires now; a timed event's flag is cleared once its minute is over.
    static bool dueNow(bool allDay, const HourMinute &at, int hour, int minute, bool &fired);
    void fireEvent(int i);
    void fireRecurring(int i);
    bool openOrWaiting(int i) const;
    void showWaiting();
    void markRecurringFired(int i);

    ReminderOutput &output_;
    const store::Model *model_ = nullptr;
    std::vector<OneOff> events_;
    std::vector<Recurring> recurring_;
    QList<bool> eventFired_;
    QList<bool> recurringFired_;

    // A recurring memo that came due while another one's modal alarm was open.
    struct Waiting {
        int event = 0;
        Alarm alarm;
    };
    int openRecurring_ = 0; // the recurring event whose modal alarm is open; 0 for none
    std::vector<Waiting> waiting_;
    int evaluating_ = 0;

    // The last complete walk: its minute and the count of changes it saw. `changes_` grows
    // with every reload, clearing of flags and closed alarm window.
    struct Walked {
        Minute at;
        quint64 changes = 0;
    };
    std::optional<Walked> walked_;
    quint64 changes_ = 0;
    std::optional<rt::Date> lastTick_;
    qint64 fullChecks_ = 0;
};
