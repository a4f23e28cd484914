#include "runtime/Clock.h"

#include <QDateTime>

#include <cmath>
#include <utility>

namespace rt {
namespace {

Clock::Source &source()
{
    static Clock::Source s;
    return s;
}

Date systemNow()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate d = now.date();
    const QTime t = now.time();
    return DateSerial(d.year(), d.month(), d.day()) +
           (t.msecsSinceStartOfDay() / 1000) / 86400.0;
}

} // namespace

Date Clock::Now() { return source() ? source()() : systemNow(); }

Date Clock::Today() { return std::floor(Now()); }

void Clock::setSource(Source s) { source() = std::move(s); }

} // namespace rt
