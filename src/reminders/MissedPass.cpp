#include "reminders/MissedPass.h"

#include "reminders/LastSeenFile.h"

namespace reminders
{

void MissedPass::tick(const store::Model &model, rt::Date now)
{
    const qint64 minute = minuteOf(now);
    if (seen_ == minute)
        return;
    std::optional<qint64> before = seen_;
    if (!before) {
        // A file from the future, of a clock set back since, means nothing missed.
        if (const std::optional<rt::Date> stored = readLastSeen())
            before = minuteOf(*stored);
    }
    seen_ = minute;
    writeLastSeen(rt::Date(minute) / kMinutesPerDay);
    if (!before || minute - *before < 2)
        return;
    const QList<MissedReminder> found = findMissed(model, *before, minute);
    if (found.isEmpty())
        return;
    emit missed(found);
    emit missedFound(int(found.size()));
}

} // namespace reminders
