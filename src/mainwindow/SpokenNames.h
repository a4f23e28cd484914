#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QString>
#include <optional>

// What a screen reader says for the legend and the days, and what the days' tool tips show.
namespace spoken
{

// The nearest everyday name of a colour: "red", "sky blue", "grey".
QString colourName(rt::WinColor colour);

// "Category Work, colour sky blue".
QString legendRowName(const QString &category, rt::WinColor colour);

// A day beyond its date: the category whose colour it is painted in, then every event the day
// popup lists for it, each with its category and time ("Health: Dentist at 9:00 AM").
QString dayDetails(rt::Date date, std::optional<rt::WinColor> painted, const store::Model &model,
                   int displayedYear);

} // namespace spoken
