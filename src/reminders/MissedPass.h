#pragma once

#include "reminders/MissedScan.h"

#include <QObject>
#include <optional>

namespace reminders
{

// The pass beside the reminder check for minutes it could not see: the gap since the last
// minute a running calendar saw, at the first tick, and any jump of the clock of more than a
// minute between two ticks (a suspend, a resume, a clock set forward). The last minute seen
// is kept in its file whenever it changes. A clock set back misses nothing.
class MissedPass : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Run at every tick of the reminder timer, before the reminder check.
    void tick(const store::Model &model, rt::Date now);

signals:
    void missed(const QList<reminders::MissedReminder> &found);
    // The same, counted: for a summary beside the window that lists them.
    void missedFound(int count);

private:
    std::optional<qint64> seen_; // the minute of the last tick
};

} // namespace reminders
