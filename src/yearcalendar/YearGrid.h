#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <vector>

namespace yearcal
{

// January has a cell array of its own (j1, 42 cells); February to December share the other
// one (f1, 42 cells a month). Both are addressed here through one cell number: j1(k) is k,
// f1(i) is 42 + i.
constexpr int kJanuaryCells = 42;
constexpr int kLaterCells = 462;
constexpr int kCells = kJanuaryCells + kLaterCells;

constexpr int j1(int index)
{
    return index;
}
constexpr int f1(int index)
{
    return kJanuaryCells + index;
}

struct DayCell {
    int caption = 0; // day of the month; 0 marks an unused cell
    bool visible = true;
    bool enabled = true;
    rt::WinColor back = 0;
    rt::WinColor fore = 0;
    bool bold = false;

    bool operator==(const DayCell &) const = default;
};

// Month (2..12) of an f1 index.
int MonthOfCell(int f1Index);

// Days shown for a month. February has 29 in every year divisible by four, 1900 and 2100
// included: the grid has always counted that way.
int monthLength(int month, int year);

// The date of a day shown in the grid. Days past the end of a month roll over as dates do
// (the 29th of February 1900 is 1 March). A day of 0 or a year outside 100..9999 is no
// date: raises "Type mismatch", as reading such a date from text does.
rt::Date gridDate(int month, int day, int year);

// The 504 day cells of a year and the filling of them. Every change to a cell is remembered
// until takeChanged(), so the widgets only need to look at cells that really moved.
class YearGrid
{
public:
    const DayCell &operator[](int cell) const { return cells_[cell]; }

    void setCaption(int cell, int day);
    void setVisible(int cell, bool visible);
    void setEnabled(int cell, bool enabled);
    void setBack(int cell, rt::WinColor colour);
    void setFore(int cell, rt::WinColor colour);
    void setBold(int cell, bool bold);

    // Every cell back to caption "0" and visible; January cells enabled too. Colours stay.
    void ClearDays();

    // Places the days of every month of the year, hides the unused cells and marks today.
    void FillYear(int year, rt::WinColor dayFore, rt::Date today);

    // The cell showing today as FillYear last found it: an index into j1 when
    // todayInJanuary(), into f1 otherwise. The flag is never cleared once set.
    int todayCell() const { return todayCell_; }
    bool todayInJanuary() const { return todayInJanuary_; }

    // Moves the mark of today to another date within the year FillYear last filled: the
    // marked cell goes back to the day colour, not bold, and the new one turns red and bold.
    // Nothing else of the cells changes.
    void moveToday(int year, rt::WinColor dayFore, rt::Date today);

    // Cells changed since the last call, each once.
    std::vector<int> takeChanged();

private:
    void ResetWeekRow();
    void NextWeekRow();
    void finishMonth(int month, int firstCell, bool january, rt::WinColor dayFore, rt::Date today,
                     int year);
    void touch(int cell);
    void markToday(int cell);
    int cellOf(rt::Date date, int year) const; // -1 when the year does not show the date

    std::array<DayCell, kCells> cells_{};
    // The row each weekday (1..7) is on; all entries move together after a Saturday.
    std::array<std::int16_t, 8> weekRow_{};
    int todayCell_ = 0;
    bool todayInJanuary_ = false;
    rt::Date markedToday_ = 0;
    std::bitset<kCells> changedSet_;
    std::vector<int> changed_;
};

} // namespace yearcal
