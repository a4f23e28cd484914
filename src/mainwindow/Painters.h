#pragma once

#include "mainwindow/CalendarSurface.h"
#include "mainwindow/ViewFilters.h"
#include "store/DataStore.h"

#include <cstdint>
#include <optional>

// Places the events of the model on the days of the displayed year, each in its category's
// colour, or in the colour of category 1 ("More") where a day already has another colour.
class Painters
{
public:
    Painters(CalendarSurface &calendar, const store::Model &model, ViewFilters &filters);

    void repaint();
    void paint_category(int index);
    void paint_weekly();
    void paint_monthly();
    void paint_yearly();

    // The colour of the last category of that exact name; 0 when there is none.
    rt::WinColor category_colour(const QString &name) const;

private:
    struct WeeklyRange {
        rt::Date start = 0;
        int days = 365;
    };
    WeeklyRange weeklyRange() const;
    void paintWeekly(const store::RecurringEvent &event, const WeeklyRange &range, int &weekday);
    void paintMonthly(const store::RecurringEvent &event, rt::Date &date);
    void paintYearly(const store::RecurringEvent &event, rt::Date &date);
    void applyColour(rt::Date date, rt::WinColor compareWith, rt::WinColor colour);
    void applyColour(rt::Date date, const QString &category);

    CalendarSurface &calendar_;
    const store::Model &model_;
    ViewFilters &filters_;
    // The category colours as numbers, converted once: empty where the text is no number.
    QList<std::optional<std::int32_t>> colours_;
    bool namesWithDigits_ = false;
};
