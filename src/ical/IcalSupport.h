#pragma once

#include <QByteArray>
#include <QString>
#include <libical/ical.h>
#include <memory>

// What the export and the import share of libical.
namespace ical
{

struct ComponentFree {
    void operator()(icalcomponent *c) const { icalcomponent_free(c); }
};
using Component = std::unique_ptr<icalcomponent, ComponentFree>;

// Our own property: the full path of an action, whose summary is only its file name.
inline constexpr char kActionProperty[] = "X-ORVA-ACTION";

// libical reports bad input through its error state; it must never abort the program.
void quietErrors();

QString text(const char *utf8);

// A time of day as the add dialog writes it: "9:30 AM", or "00:00" for midnight, the
// all-day time.
QString storedTime(int hour, int minute);

} // namespace ical
