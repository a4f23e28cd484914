#pragma once

#include "ical/ImportPlan.h"

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>

struct icalcomponent_impl;

// Reading an iCalendar file (RFC 5545) with libical, and what its events become.
namespace ical
{

// Larger files are refused before they are read; more events than this are left out.
inline constexpr qint64 kLargestFile = 8 * 1024 * 1024;
inline constexpr int kMostEvents = 5000;
// One event's rule gives at most this many one-off events.
inline constexpr int kMostOccurrences = 400;

struct Calendar {
    std::shared_ptr<icalcomponent_impl> root;
    int eventsLeftOut = 0; // beyond kMostEvents
};

struct ReadResult {
    std::optional<Calendar> calendar;
    QString error; // for the user, when there is no calendar
};

ReadResult readCalendar(const QByteArray &bytes);
ReadResult readCalendarFile(const QString &path);

// Years whose days the rules the store cannot hold are written out for, as one-off events.
struct Range {
    int from = 0;
    int to = 0;
};

// One item per event of the file, or per occurrence where its rule is written out as
// one-off events. Times with a time zone come in the computer's local time.
QList<Item> plan(const Calendar &calendar, Range range);

} // namespace ical
