#include "ical/IcalSupport.h"

#include "store/DataStore.h"

namespace ical
{

void quietErrors()
{
    icalerror_set_errors_are_fatal(0);
    icalerror_clear_errno();
}

QString text(const char *utf8)
{
    return utf8 ? QString::fromUtf8(utf8) : QString();
}

QString storedTime(int hour, int minute)
{
    if (hour == 0 && minute == 0)
        return store::kAllDayTime;
    const int hour12 = hour % 12 == 0 ? 12 : hour % 12;
    return QStringLiteral("%1:%2 %3")
        .arg(hour12)
        .arg(minute, 2, 10, QLatin1Char('0'))
        .arg(hour < 12 ? QLatin1String("AM") : QLatin1String("PM"));
}

} // namespace ical
