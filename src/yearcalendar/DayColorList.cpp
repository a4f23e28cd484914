#include "yearcalendar/DayColorList.h"

namespace yearcal
{

// The list starts with a blank entry (date 0, colour 0, f1 cell 0) that re-application
// visits like any other: it paints February's first cell black in a displayed year 1899.
DayColorList::DayColorList()
{
    append(0, 0, false, 0);
}

void DayColorList::append(rt::Date date, rt::WinColor colour, bool inJanuary, int cellIndex)
{
    byYear_[rt::Year(date)][Target{inJanuary, cellIndex}] = colour;
}

std::size_t DayColorList::size() const
{
    std::size_t n = 0;
    for (const auto &[year, targets] : byYear_)
        n += targets.size();
    return n;
}

} // namespace yearcal
