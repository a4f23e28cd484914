#pragma once

#include "mainwindow/CalendarSurface.h"
#include "mainwindow/ViewFilters.h"
#include "store/DataStore.h"
#include "store/Recurrence.h"

#include <memory>
#include <optional>

// Places the events of the model on the days of the displayed year, each in its category's
// colour, or in the colour of category 1 ("More") where a day already has another colour.
//
// Events are grouped by category when first needed, so a repaint costs the number of events
// plus the number of categories, not their product.
class Painters
{
public:
    Painters(CalendarSurface &calendar, const store::Model &model, ViewFilters &filters);
    ~Painters();

    void repaint();
    void paint_category(int index);
    void paint_weekly();
    void paint_monthly();
    void paint_yearly();

    // The colour of the last category of that exact name; 0 when there is none.
    rt::WinColor category_colour(const QString &name) const;

private:
    void paint(const store::RecurringEvent &event, recurrence::PainterDays &days);
    void applyColour(rt::Date date, rt::WinColor compareWith, rt::WinColor colour);

    struct ByCategory;
    const ByCategory &byCategory();

    CalendarSurface &calendar_;
    const store::Model &model_;
    ViewFilters &filters_;
    const store::CategoryColours colours_;
    std::optional<rt::WinColor> more_; // the colour of category 1, where it is a number
    bool namesWithDigits_ = false;
    std::unique_ptr<ByCategory> byCategory_;
};
