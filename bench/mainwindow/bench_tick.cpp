// What one reminder tick costs on a store of 10,000 one-off and 1,000 recurring events: the
// pass for missed minutes, then the check. It runs 25 times a second, so it must stay under
// 0.4 ms, 1% of its period.
#include "../StoreGenerator.h"
#include "mainwindow/ReminderCheck.h"
#include "reminders/MissedPass.h"
#include "store/Files.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace
{

struct Counter : ReminderOutput {
    int shown = 0;
    int launched = 0;
    void showOneOffAlarm(const Alarm &) override { ++shown; }
    void showRecurringAlarm(const Alarm &, std::function<void()> closed) override
    {
        ++shown;
        closed();
    }
    void launchAction(const QString &) override { ++launched; }
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const BenchProgramFolder folder;
    const store::Model model = store::loadModel();

    Counter out;
    ReminderCheck check(out);
    reminders::MissedPass pass;
    QElapsedTimer reload;
    reload.start();
    check.setModel(model);
    const double reloadMs = reload.nsecsElapsed() / 1e6;

    // Two minutes of ticks from 3:29 PM on 15 March 2026, a day with all-day events and
    // events at 3:30 PM, which fire in the middle of the run.
    const rt::Date start = rt::DateSerial(2026, 3, 15) + rt::TimeSerial(15, 29, 0);
    // The first tick after a reload converts the yearly dates, and fires the day's all-day
    // events.
    QElapsedTimer first;
    first.start();
    pass.tick(model, start);
    check.tick(start);
    const double firstMs = first.nsecsElapsed() / 1e6;
    const int ticks = 3000;
    std::vector<double> times;
    times.reserve(ticks);
    double firingMs = 0;
    for (int i = 1; i <= ticks; ++i) {
        const rt::Date now = start + (i * 0.040) / 86400.0;
        const int before = out.shown;
        QElapsedTimer t;
        t.start();
        pass.tick(model, now);
        check.tick(now);
        times.push_back(t.nsecsElapsed() / 1e6);
        if (out.shown != before)
            firingMs = times.back();
    }
    std::sort(times.begin(), times.end());
    std::printf("reminder tick, %d one-off and %d recurring events: median %.4f ms, 99th "
                "percentile %.4f ms (target < 0.4 ms)\n",
                model.eventCount(), model.recurringCount(), times[times.size() / 2],
                times[times.size() * 99 / 100]);
    std::printf("the tick in which the 3:30 PM events fire: %.4f ms\n", firingMs);
    std::printf("ticks that walked the events: %lld of %d\n", check.fullChecks(), ticks + 1);
    std::printf("conversions on reload: %.2f ms; first tick after it: %.2f ms; alarms %d\n",
                reloadMs, firstMs, out.shown);
    return 0;
}
