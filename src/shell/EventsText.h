#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QList>
#include <QString>

// The events of a span of days as text, for printing: each day that has events, and under
// it each event's when-line, its memo or action and its category.
namespace eventstext
{

struct Entry {
    QString when;
    QString what; // "Memo: ..." or "Action: ..."
    QString category;
};

// The events on a date, all-day ones first and then by time of day; events at the same
// time keep the store's order, one-off before recurring. Recurring events fall on the days
// the calendar colours them, and daily ones on every day.
QList<Entry> entriesOn(const store::Model &model, rt::Date date);

struct Text {
    QString text;
    int eventCount = 0;
};

// From `from` to `to`, both included.
Text eventsText(const store::Model &model, rt::Date from, rt::Date to);

} // namespace eventstext
