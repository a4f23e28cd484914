#pragma once

#include "store/DataStore.h"

#include <QByteArray>
#include <QList>

// The store's events as one iCalendar file (RFC 5545).
namespace ical
{

struct ExportResult {
    QByteArray text; // the VCALENDAR, UTF-8
    int written = 0;
    int skipped = 0; // events whose texts do not convert: a damaged store
};

// One-off events on their dates, timed or all-day; recurring events with a rule, starting at
// their first occurrence on or after 1 January of `year`. Times are floating, as the store's
// are. Lists use the store's numbering: element 0 is not an event.
ExportResult exportEvents(const QList<store::EventRecord> &events,
                          const QList<store::RecurringEvent> &recurring, int year);

// The same for every event of the current Data.ini.
ExportResult exportStore(int year);

} // namespace ical
