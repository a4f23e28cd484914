#pragma once

#include "yearcalendar/YearGrid.h"

#include <Qt>
#include <optional>

namespace yearcal
{

// A day as the grid shows it. February 29 exists in every year divisible by four, so days
// are counted the grid's way, not the calendar's.
struct GridDay {
    int year = 0;
    int month = 1;
    int day = 1;
    bool operator==(const GridDay &) const = default;
};

// The years the grid can show.
constexpr bool yearInRange(int year)
{
    return year >= 100 && year <= 9999;
}

// How the focused day moves: a day, a week, to the month's ends, a month.
enum class DayStep { Left, Right, Up, Down, Home, End, PageUp, PageDown };

// The key that moves the focused day, if it is one; Ctrl+PageUp/PageDown are not steps:
// they change the year as the year buttons do.
std::optional<DayStep> stepForKey(int key, Qt::KeyboardModifiers modifiers);

// The day a step leads to. Steps of a day or a week run on across month and year borders;
// a month step keeps the day where the month is long enough, else takes its last day.
GridDay stepDay(GridDay from, DayStep step);

// The same day in another year; the 29th of February becomes the 28th where there is none.
GridDay inYear(GridDay day, int year);

// The cell showing a day of the displayed year, -1 when none does; and the day of a cell.
int cellOfDay(const YearGrid &grid, int month, int day);
int monthOfGridCell(int cell);

} // namespace yearcal
