#include "yearcalendar/DayFocus.h"

#include <algorithm>

namespace yearcal
{

std::optional<DayStep> stepForKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return std::nullopt;
    switch (key) {
    case Qt::Key_Left:
        return DayStep::Left;
    case Qt::Key_Right:
        return DayStep::Right;
    case Qt::Key_Up:
        return DayStep::Up;
    case Qt::Key_Down:
        return DayStep::Down;
    case Qt::Key_Home:
        return DayStep::Home;
    case Qt::Key_End:
        return DayStep::End;
    case Qt::Key_PageUp:
        return DayStep::PageUp;
    case Qt::Key_PageDown:
        return DayStep::PageDown;
    default:
        return std::nullopt;
    }
}

namespace
{

GridDay addDays(GridDay d, int days)
{
    d.day += days;
    while (d.day < 1) {
        if (--d.month < 1) {
            d.month = 12;
            --d.year;
        }
        d.day += monthLength(d.month, d.year);
    }
    while (d.day > monthLength(d.month, d.year)) {
        d.day -= monthLength(d.month, d.year);
        if (++d.month > 12) {
            d.month = 1;
            ++d.year;
        }
    }
    return d;
}

GridDay addMonths(GridDay d, int months)
{
    const int index = d.year * 12 + d.month - 1 + months;
    d.year = index / 12;
    d.month = index % 12 + 1;
    d.day = std::min(d.day, monthLength(d.month, d.year));
    return d;
}

} // namespace

GridDay stepDay(GridDay from, DayStep step)
{
    switch (step) {
    case DayStep::Left:
        return addDays(from, -1);
    case DayStep::Right:
        return addDays(from, 1);
    case DayStep::Up:
        return addDays(from, -7);
    case DayStep::Down:
        return addDays(from, 7);
    case DayStep::Home:
        return {from.year, from.month, 1};
    case DayStep::End:
        return {from.year, from.month, monthLength(from.month, from.year)};
    case DayStep::PageUp:
        return addMonths(from, -1);
    case DayStep::PageDown:
        return addMonths(from, 1);
    }
    return from;
}

GridDay inYear(GridDay day, int year)
{
    return {year, day.month, std::min(day.day, monthLength(day.month, year))};
}

int cellOfDay(const YearGrid &grid, int month, int day)
{
    const int first = month == 1 ? j1(0) : f1((month - 2) * 42);
    for (int cell = first; cell < first + 42; ++cell) {
        if (grid[cell].caption == day)
            return cell;
    }
    return -1;
}

int monthOfGridCell(int cell)
{
    return cell < kJanuaryCells ? 1 : MonthOfCell(cell - kJanuaryCells);
}

} // namespace yearcal
