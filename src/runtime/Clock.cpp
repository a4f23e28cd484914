#include "runtime/Clock.h"

#include <QDateTime>
#include <cmath>
#include <utility>

namespace rt
{
namespace
{

Clock::Source &source()
{
    static Clock::Source s;
    return s;
}

// The reminder check asks 25 times a second; the time zone's offset is looked up once a
// minute, which is how often it can change.
Date systemNow()
{
    static qint64 offsetMinute = -1;
    static qint64 offsetSeconds = 0;
    const qint64 ms = QDateTime::currentMSecsSinceEpoch();
    const qint64 minute = ms / 60000;
    if (minute != offsetMinute) {
        offsetSeconds = QDateTime::fromMSecsSinceEpoch(ms).offsetFromUtc();
        offsetMinute = minute;
    }
    const qint64 local = ms / 1000 + offsetSeconds;
    const qint64 days = local >= 0 ? local / 86400 : (local - 86399) / 86400;
    // 1 January 1970 is day 25569.
    return double(days + 25569) + double(local - days * 86400) / 86400.0;
}

} // namespace

Date Clock::Now()
{
    return source() ? source()() : systemNow();
}

Date Clock::Today()
{
    return std::floor(Now());
}

void Clock::setSource(Source s)
{
    source() = std::move(s);
}

} // namespace rt
