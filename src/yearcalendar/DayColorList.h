#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"

#include <compare>
#include <cstddef>
#include <map>

namespace yearcal
{

// The colours given to days by date, re-applied to the cells whenever the year is rebuilt.
//
// Re-application walks the recorded entries in order and, for each one whose date lies in
// the displayed year, writes its colour to its cell; the last write to a cell wins. What an
// entry does therefore depends only on the year of its date, the cell it names (January
// array or not, and index) and its colour. Two entries that agree on year and cell always
// act together and the later one overwrites the earlier, so only the latest colour per
// (year, cell) is kept; entries that differ in year never act together, and entries of one
// year that name different cells never touch the same cell, so their order does not matter.
// The list thus stays as small as the set of cells ever coloured, however often the host
// paints the same days again.
class DayColorList
{
public:
    DayColorList();

    void append(rt::Date date, rt::WinColor colour, bool inJanuary, int cellIndex);

    // Calls apply(inJanuary, cellIndex, colour) for what the recorded entries of a year
    // leave on each cell.
    template <typename Apply> void reapply(int year, Apply &&apply) const
    {
        const auto found = byYear_.find(year);
        if (found == byYear_.end())
            return;
        for (const auto &[target, colour] : found->second)
            apply(target.inJanuary, target.cellIndex, colour);
    }

    std::size_t size() const; // entries kept

private:
    struct Target {
        bool inJanuary;
        int cellIndex;
        auto operator<=>(const Target &) const = default;
    };
    std::map<int, std::map<Target, rt::WinColor>> byYear_;
};

} // namespace yearcal
