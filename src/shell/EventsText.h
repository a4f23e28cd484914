#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QString>

// The events of a span of days as text, for printing: first each recurring event that falls
// in the span, once, under a heading for its kind and with its rule, then the one-off events
// day by day. Blocks (the header, a kind, a day) are parted by a blank line.
namespace eventstext
{

struct Text {
    QString text;
    int eventCount = 0;
};

// From `from` to `to`, both included.
Text eventsText(const store::Model &model, rt::Date from, rt::Date to);

} // namespace eventstext
