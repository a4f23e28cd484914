#include "reminders/AlarmText.h"

#include "runtime/DateText.h"
#include "runtime/Numbers.h"

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

rt::WinColor categoryColour(const store::Model &model, const QString &name)
{
    rt::WinColor colour = 0;
    const qsizetype count = std::min(model.categoryNames.size(), model.categoryColours.size());
    for (qsizetype i = 1; i < count; ++i) {
        std::int32_t value = 0;
        if (model.categoryNames[i] == name && rt::tryCLng(model.categoryColours[i], value))
            colour = rt::WinColor(value);
    }
    return colour;
}

} // namespace reminders
