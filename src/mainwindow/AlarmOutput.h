#pragma once

#include "mainwindow/ReminderCheck.h"
#include "notify/DesktopNotifier.h"

#include <memory>

class frmalarm;

// What the reminder check shows and opens: one alarm window, made on first use and reused
// for every memo, and actions through the desktop.
class AlarmOutput : public ReminderOutput
{
public:
    AlarmOutput();
    ~AlarmOutput() override;

    void showOneOffAlarm(const Alarm &alarm) override;
    void showRecurringAlarm(const Alarm &alarm, std::function<void()> closed) override;
    void launchAction(const QString &path) override;

    frmalarm *window() const { return window_.get(); } // null before the first memo

private:
    frmalarm &fill(const Alarm &alarm);

    std::unique_ptr<frmalarm> window_;
    DesktopNotifier notifier_;
};
