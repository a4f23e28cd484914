#include "mainwindow/Painters.h"

#include "runtime/DateText.h"

#include <QHash>
#include <algorithm>

// The numbers of the events of each category name, in the order the model holds them.
struct Painters::ByCategory {
    QHash<QString, QList<int>> recurring;
    QHash<QString, QList<int>> events;
};

Painters::~Painters() = default;

const Painters::ByCategory &Painters::byCategory()
{
    if (!byCategory_) {
        byCategory_ = std::make_unique<ByCategory>();
        for (int i = 1; i <= model_.recurringCount(); ++i)
            byCategory_->recurring[model_.recurring[i].cat].append(i);
        for (int i = 1; i <= model_.eventCount(); ++i)
            byCategory_->events[model_.events[i].cat].append(i);
    }
    return *byCategory_;
}

Painters::Painters(CalendarSurface &calendar, const store::Model &model, ViewFilters &filters)
    : calendar_(calendar), model_(model), filters_(filters), colours_(model),
      more_(store::colourValue(model.categoryColours.value(1)))
{
    // Only a name with a digit could equal a date's text.
    for (const QString &name : model.categoryNames)
        namesWithDigits_ = namesWithDigits_ || std::any_of(name.begin(), name.end(),
                                                           [](QChar c) { return c.isDigit(); });
}

rt::WinColor Painters::category_colour(const QString &name) const
{
    return colours_.of(name);
}

void Painters::applyColour(rt::Date date, rt::WinColor compareWith, rt::WinColor colour)
{
    const rt::WinColor current = calendar_.GetDayBackcolor(date);
    if (current == rt::kWhite || current == compareWith)
        calendar_.SetDayBackColor(date, colour);
    else if (more_)
        calendar_.SetDayBackColor(date, *more_);
}

void Painters::paint(const store::RecurringEvent &event, recurrence::PainterDays &days)
{
    const rt::WinColor colour = category_colour(event.cat);
    for (const rt::Date date : days.of(event))
        applyColour(date, colour, colour);
}

void Painters::repaint()
{
    calendar_.setDayBackColorAll(rt::kWhite);
    for (int i = 1; i <= filters_.lastCategory(); ++i) {
        if (filters_.categoryShown(i))
            paint_category(i);
    }
    using Kind = ViewFilters::Kind;
    if (filters_.kindShown(Kind::Weekly))
        paint_weekly();
    if (filters_.kindShown(Kind::Monthly))
        paint_monthly();
    if (filters_.kindShown(Kind::Yearly))
        paint_yearly();
}

void Painters::paint_category(int index)
{
    filters_.showCategory(index);
    const QString name = filters_.categoryCaption(index);
    const ByCategory &events = byCategory();
    recurrence::PainterDays days(calendar_.Selected(), calendar_.displayedYear());
    for (const int i : events.recurring.value(name))
        paint(model_.recurring[i], days);
    const int year = calendar_.displayedYear();
    for (const int i : events.events.value(name)) {
        const store::Event &event = model_.events[i];
        if (rt::Year(event.date) != year)
            continue;
        // The day's colour is compared with the "category" named by the date's text, which
        // never exists: a day that already has any colour but white or black turns "More".
        const rt::WinColor dateColour =
            namesWithDigits_ ? category_colour(rt::CStr(event.date)) : 0;
        applyColour(event.date, dateColour, category_colour(event.cat));
    }
}

void Painters::paint_weekly()
{
    filters_.showKind(ViewFilters::Kind::Weekly);
    recurrence::PainterDays days(calendar_.Selected(), calendar_.displayedYear());
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kWeekly)
            paint(model_.recurring[i], days);
    }
}

void Painters::paint_monthly()
{
    filters_.showKind(ViewFilters::Kind::Monthly);
    recurrence::PainterDays days(calendar_.Selected(), calendar_.displayedYear());
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kMonthly)
            paint(model_.recurring[i], days);
    }
}

void Painters::paint_yearly()
{
    filters_.showKind(ViewFilters::Kind::Yearly);
    recurrence::PainterDays days(calendar_.Selected(), calendar_.displayedYear());
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kYearly)
            paint(model_.recurring[i], days);
    }
}
