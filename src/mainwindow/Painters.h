#pragma once

#include "mainwindow/CalendarSurface.h"
#include "mainwindow/ViewFilters.h"
#include "store/DataStore.h"

#include <QHash>
#include <cstdint>
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

    struct ByCategory;
    const ByCategory &byCategory();

    CalendarSurface &calendar_;
    const store::Model &model_;
    ViewFilters &filters_;
    // The category colours as numbers, converted once: empty where the text is no number.
    QList<std::optional<std::int32_t>> colours_;
    QHash<QString, std::int32_t> colourByName_;
    bool namesWithDigits_ = false;
    std::unique_ptr<ByCategory> byCategory_;
};
