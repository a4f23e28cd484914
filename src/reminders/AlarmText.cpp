#include "reminders/AlarmText.h"

#include "runtime/DateText.h"

namespace reminders
{
namespace
{

const QString kGap = QStringLiteral("  ");

} // namespace

QString whenLine(const store::Event &event)
{
    return rt::CStr(event.date) + kGap + rt::CStr(event.time);
}

QString whenLine(const store::RecurringEvent &event)
{
    QString line;
    if (event.type == store::kYearly)
        line = event.day + QLatin1Char('/') + event.month + kGap;
    else if (event.type != store::kDaily)
        line = event.day + kGap;
    if (event.time != store::kAllDayTime)
        line += event.time + kGap;
    return line + event.type;
}

} // namespace reminders
