#pragma once

#include "recovery/CrashRecord.h"

// Why a recorded event ended the calendar, whether it still would, and the words that tell
// the user.
namespace recovery
{

enum class Fault {
    None,
    NoDateThisYear, // a yearly event whose month and day form no date in the year
    DayNotNumber,   // a monthly event whose day is no number
    TimeNotTime,    // a timed event whose time is no time
    MissingOneOff,  // a weekly, monthly or yearly event numbered above the one-off events
};

// What the reminder check meets first for recurring event n of the model in `year`.
Fault faultOf(const store::Model &model, int n, int year);

// Whether the recorded event is still in the store as it was and would end the calendar
// again when it comes due.
bool wouldEndAgain(const CrashRecord &record, const store::Model &model, int year);

// "The calendar closed because the yearly event 'Anna's birthday' on 29 February has no
// date in 2027."
QString explanation(const CrashRecord &record, Fault fault, int eventCount, int year);

} // namespace recovery
