#include "yearcalendar/YearGrid.h"

#include "runtime/RuntimeError.h"

#include <utility>

namespace yearcal
{

int MonthOfCell(int f1Index)
{
    return f1Index < 420 ? 2 + f1Index / 42 : 12;
}

int monthLength(int month, int year)
{
    switch (month) {
    case 2:
        return year % 4 == 0 ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

rt::Date gridDate(int month, int day, int year)
{
    if (day < 1 || year < 100 || year > 9999)
        throw rt::RuntimeError::typeMismatch();
    return rt::DateSerial(year, month, day);
}

void YearGrid::setCaption(int cell, int day)
{
    if (cells_[cell].caption != day) {
        cells_[cell].caption = day;
        touch(cell);
    }
}

void YearGrid::setVisible(int cell, bool visible)
{
    if (cells_[cell].visible != visible) {
        cells_[cell].visible = visible;
        touch(cell);
    }
}

void YearGrid::setEnabled(int cell, bool enabled)
{
    if (cells_[cell].enabled != enabled) {
        cells_[cell].enabled = enabled;
        touch(cell);
    }
}

void YearGrid::setBack(int cell, rt::WinColor colour)
{
    if (cells_[cell].back != colour) {
        cells_[cell].back = colour;
        touch(cell);
    }
}

void YearGrid::setFore(int cell, rt::WinColor colour)
{
    if (cells_[cell].fore != colour) {
        cells_[cell].fore = colour;
        touch(cell);
    }
}

void YearGrid::setBold(int cell, bool bold)
{
    if (cells_[cell].bold != bold) {
        cells_[cell].bold = bold;
        touch(cell);
    }
}

void YearGrid::ClearDays()
{
    for (int k = 0; k < kJanuaryCells; ++k) {
        setCaption(j1(k), 0);
        setVisible(j1(k), true);
        setEnabled(j1(k), true);
    }
    for (int i = 0; i < kLaterCells; ++i) {
        setCaption(f1(i), 0);
        setVisible(f1(i), true);
    }
}

void YearGrid::ResetWeekRow()
{
    weekRow_.fill(0);
}

void YearGrid::NextWeekRow()
{
    for (auto &row : weekRow_)
        ++row;
}

void YearGrid::FillYear(int year, rt::WinColor dayFore, rt::Date today)
{
    markedToday_ = today;
    ResetWeekRow();
    for (int month = 1; month <= 12; ++month) {
        const bool january = month == 1;
        const int firstCell = january ? j1(0) : f1((month - 2) * 42);
        const int length = monthLength(month, year);
        for (int day = 1; day <= length; ++day) {
            const int weekday = rt::Weekday(gridDate(month, day, year));
            setCaption(firstCell + weekRow_[weekday] * 7 + weekday - 1, day);
            if (weekday == 7)
                NextWeekRow();
        }
        ResetWeekRow();
        finishMonth(month, firstCell, january, dayFore, today, year);
    }
}

void YearGrid::finishMonth(int month, int firstCell, bool january, rt::WinColor dayFore,
                           rt::Date today, int year)
{
    const bool todayThisMonth = rt::Year(today) == year && rt::Month(today) == month;
    for (int cell = firstCell; cell < firstCell + 42; ++cell) {
        if (cells_[cell].caption == 0) {
            setVisible(cell, false);
            if (january)
                setEnabled(cell, false);
        }
        setFore(cell, dayFore);
        setBold(cell, false);
        if (todayThisMonth && rt::Day(today) == cells_[cell].caption)
            markToday(cell);
    }
}

void YearGrid::markToday(int cell)
{
    setFore(cell, rt::kRed);
    setBold(cell, true);
    const bool january = cell < kJanuaryCells;
    todayCell_ = january ? cell : cell - kJanuaryCells;
    if (january)
        todayInJanuary_ = true;
}

int YearGrid::cellOf(rt::Date date, int year) const
{
    if (rt::Year(date) != year)
        return -1;
    const int month = rt::Month(date);
    const int first = month == 1 ? j1(0) : f1((month - 2) * 42);
    for (int cell = first; cell < first + 42; ++cell) {
        if (cells_[cell].caption == rt::Day(date))
            return cell;
    }
    return -1;
}

void YearGrid::moveToday(int year, rt::WinColor dayFore, rt::Date today)
{
    if (today == markedToday_)
        return;
    if (const int old = cellOf(markedToday_, year); old >= 0) {
        setFore(old, dayFore);
        setBold(old, false);
    }
    markedToday_ = today;
    if (const int cell = cellOf(today, year); cell >= 0)
        markToday(cell);
}

void YearGrid::touch(int cell)
{
    if (!changedSet_.test(std::size_t(cell))) {
        changedSet_.set(std::size_t(cell));
        changed_.push_back(cell);
    }
}

std::vector<int> YearGrid::takeChanged()
{
    changedSet_.reset();
    return std::exchange(changed_, {});
}

} // namespace yearcal
