#pragma once

#include "yearcalendar/DayColorList.h"
#include "yearcalendar/YearGrid.h"

#include <QString>

namespace yearcal
{

constexpr rt::WinColor kSelectionGrey = rt::RGB(157, 157, 157);

// Everything the year calendar does short of pixels and events: the displayed year, the
// cells, the colour properties, the colours kept by date and the selected date. The widget
// raises the events and copies changed cells to its labels.
class CalendarModel
{
public:
    // Shows the year of today (rt::Clock) with the default colours. Leaves the first
    // selection to the caller, which raises its click event.
    CalendarModel();

    int displayedYear() const { return year_; }
    const YearGrid &grid() const { return grid_; }
    YearGrid &grid() { return grid_; }

    // True once after every FillYear: the year box shows the year again.
    bool takeYearTextRefresh();

    rt::WinColor dayForeColor() const { return dayFore_; }
    rt::WinColor dayBackColor() const { return dayBack_; }
    rt::WinColor monthForeColor() const { return monthFore_; }
    rt::WinColor monthBackColor() const { return monthBack_; }
    void setDayForeColor(rt::WinColor colour);
    void setDayBackColor(rt::WinColor colour);
    void setMonthForeColor(rt::WinColor colour) { monthFore_ = colour; }
    void setMonthBackColor(rt::WinColor colour) { monthBack_ = colour; }

    void SetDayBackColor(rt::Date date, rt::WinColor colour);
    void SetDayForeColor(rt::Date date, rt::WinColor colour);
    rt::WinColor GetDayBackcolor(rt::Date date) const;

    // The date a cell stands for; raises "Type mismatch" for an unused cell.
    rt::Date cellDate(bool inJanuary, int index) const;

    // A left click up to, not including, its event: rebuilds the year, re-applies the kept
    // colours and greys the cell. Returns the cell's date; the caller raises DateClick and
    // then setSelected().
    rt::Date click(bool inJanuary, int index);
    rt::Date selected() const { return selected_; }
    void setSelected(rt::Date date) { selected_ = date; }

    // The arrow buttons up to their simulated click: new year, fresh cells, kept colours.
    void stepYear(int delta);

    // Enter in the year box: the typed year is filled in and nothing else changes.
    void enterYear(const QString &text);

    // Today's mark follows the clock past midnight without a refill.
    void moveToday(rt::Date today) { grid_.moveToday(year_, dayFore_, today); }

    const DayColorList &backColours() const { return backList_; }
    const DayColorList &foreColours() const { return foreList_; }

private:
    void FillYear();
    void resetCellColours();
    void reapplyColours();
    void setDayColor(rt::Date date, rt::WinColor colour, DayColorList &list,
                     void (YearGrid::*paint)(int, rt::WinColor));

    YearGrid grid_;
    int year_ = 0;
    bool yearTextStale_ = false;
    rt::WinColor dayFore_ = 0;
    rt::WinColor dayBack_ = 0;
    rt::WinColor monthFore_ = 0;
    rt::WinColor monthBack_ = 0;
    rt::Date selected_ = 0;
    DayColorList backList_;
    DayColorList foreList_;
};

} // namespace yearcal
