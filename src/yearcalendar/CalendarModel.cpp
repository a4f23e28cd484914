#include "yearcalendar/CalendarModel.h"

#include "runtime/Clock.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"

namespace yearcal
{

CalendarModel::CalendarModel() : year_(rt::Year(rt::Clock::Today()))
{
    FillYear();
    setDayBackColor(rt::kWhite);
    setDayForeColor(rt::kBlue);
    setMonthBackColor(rt::kBlue);
    setMonthForeColor(rt::kWhite);
}

bool CalendarModel::takeYearTextRefresh()
{
    const bool stale = yearTextStale_;
    yearTextStale_ = false;
    return stale;
}

void CalendarModel::FillYear()
{
    yearTextStale_ = true;
    grid_.FillYear(year_, dayFore_, rt::Clock::Today());
}

void CalendarModel::setDayForeColor(rt::WinColor colour)
{
    dayFore_ = colour;
    for (int cell = 0; cell < kCells; ++cell)
        grid_.setFore(cell, colour);
    if (rt::Year(rt::Clock::Today()) != year_)
        return;
    const int today = grid_.todayCell();
    if (!grid_.todayInJanuary()) {
        grid_.setFore(f1(today), rt::kRed);
        return;
    }
    // The flag outlives January: once today has moved on, the index may name no j1 cell.
    if (today >= kJanuaryCells)
        throw rt::RuntimeError(340, QString("Control array element '%1' doesn't exist").arg(today));
    grid_.setFore(j1(today), rt::kRed);
}

void CalendarModel::setDayBackColor(rt::WinColor colour)
{
    dayBack_ = colour;
    for (int cell = 0; cell < kCells; ++cell)
        grid_.setBack(cell, colour);
}

void CalendarModel::SetDayBackColor(rt::Date date, rt::WinColor colour)
{
    setDayColor(date, colour, backList_, &YearGrid::setBack);
}

void CalendarModel::SetDayForeColor(rt::Date date, rt::WinColor colour)
{
    setDayColor(date, colour, foreList_, &YearGrid::setFore);
}

// January dates are matched by day alone, whatever their year, and recorded with the cell
// of the grid on show; later months only colour dates of the displayed year.
void CalendarModel::setDayColor(rt::Date date, rt::WinColor colour, DayColorList &list,
                                void (YearGrid::*paint)(int, rt::WinColor))
{
    const int month = rt::Month(date);
    const int day = rt::Day(date);
    if (month == 1) {
        for (int k = 0; k < kJanuaryCells; ++k) {
            if (grid_[j1(k)].caption == day) {
                list.append(date, colour, true, k);
                (grid_.*paint)(j1(k), colour);
                return;
            }
        }
        return;
    }
    if (rt::Year(date) != year_)
        return;
    int index = 0;
    const int first = (month - 2) * 42;
    for (int i = first; i < first + 42; ++i) {
        if (grid_[f1(i)].caption == day) {
            (grid_.*paint)(f1(i), colour);
            index = i;
        }
    }
    list.append(date, colour, false, index);
}

rt::WinColor CalendarModel::GetDayBackcolor(rt::Date date) const
{
    const int month = rt::Month(date);
    const int day = rt::Day(date);
    if (month == 1) {
        for (int k = 0; k < kJanuaryCells; ++k) {
            if (grid_[j1(k)].caption == day)
                return grid_[j1(k)].back;
        }
        return 0;
    }
    if (rt::Year(date) != year_)
        return 0;
    const int first = (month - 2) * 42;
    for (int i = first; i < first + 42; ++i) {
        if (grid_[f1(i)].caption == day)
            return grid_[f1(i)].back;
    }
    return 0;
}

rt::Date CalendarModel::cellDate(bool inJanuary, int index) const
{
    const int month = inJanuary ? 1 : MonthOfCell(index);
    return gridDate(month, grid_[inJanuary ? j1(index) : f1(index)].caption, year_);
}

void CalendarModel::resetCellColours()
{
    for (int cell = 0; cell < kCells; ++cell) {
        grid_.setBack(cell, dayBack_);
        grid_.setFore(cell, dayFore_);
    }
}

void CalendarModel::reapplyColours()
{
    backList_.reapply(year_, [this](bool inJanuary, int index, rt::WinColor colour) {
        grid_.setBack(inJanuary ? j1(index) : f1(index), colour);
    });
    foreList_.reapply(year_, [this](bool inJanuary, int index, rt::WinColor colour) {
        grid_.setFore(inJanuary ? j1(index) : f1(index), colour);
    });
}

rt::Date CalendarModel::click(bool inJanuary, int index)
{
    resetCellColours();
    grid_.ClearDays();
    FillYear();
    reapplyColours();
    grid_.setBack(inJanuary ? j1(index) : f1(index), kSelectionGrey);
    return cellDate(inJanuary, index);
}

void CalendarModel::stepYear(int delta)
{
    year_ += delta;
    resetCellColours();
    grid_.ClearDays();
    FillYear();
    reapplyColours();
}

void CalendarModel::enterYear(const QString &text)
{
    year_ = rt::CLng(text);
    grid_.ClearDays();
    FillYear();
}

} // namespace yearcal
