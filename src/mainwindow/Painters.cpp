#include "mainwindow/Painters.h"

#include "runtime/DateText.h"
#include "runtime/Numbers.h"

#include <QHash>
#include <algorithm>
#include <array>

namespace
{

// The weekday number of a stored day name, or the previous event's number when the name
// is none of them.
void mapWeekday(const QString &day, int &weekday)
{
    static const std::array<QString, 7> names = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                 "Thursday", "Friday", "Saturday"};
    for (int i = 0; i < 7; ++i) {
        if (day == names[i])
            weekday = i + 1;
    }
}

} // namespace

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
    : calendar_(calendar), model_(model), filters_(filters)
{
    // Only a name with a digit could equal a date's text.
    for (const QString &name : model.categoryNames)
        namesWithDigits_ = namesWithDigits_ || std::any_of(name.begin(), name.end(),
                                                           [](QChar c) { return c.isDigit(); });
    for (const QString &text : model.categoryColours) {
        std::int32_t colour = 0;
        colours_.append(rt::tryCLng(text, colour) ? std::optional(colour) : std::nullopt);
    }
    // The last category of a name whose colour converts wins.
    for (qsizetype i = 0; i < model.categoryNames.size() && i < colours_.size(); ++i) {
        if (colours_[i])
            colourByName_.insert(model.categoryNames[i], *colours_[i]);
    }
}

rt::WinColor Painters::category_colour(const QString &name) const
{
    return rt::WinColor(colourByName_.value(name, 0));
}

void Painters::applyColour(rt::Date date, rt::WinColor compareWith, rt::WinColor colour)
{
    const rt::WinColor current = calendar_.GetDayBackcolor(date);
    if (current == rt::kWhite || current == compareWith) {
        calendar_.SetDayBackColor(date, colour);
        return;
    }
    if (colours_.size() > 1 && colours_[1])
        calendar_.SetDayBackColor(date, rt::WinColor(*colours_[1]));
}

void Painters::applyColour(rt::Date date, const QString &category)
{
    const rt::WinColor colour = category_colour(category);
    applyColour(date, colour, colour);
}

Painters::WeeklyRange Painters::weeklyRange() const
{
    // The last day of the year before the selected date's, and that year's length by the
    // rule of four alone.
    const int year = rt::Year(calendar_.Selected());
    WeeklyRange range;
    rt::tryCDate(QStringLiteral("12/31/") + QString::number(year - 1), range.start);
    range.days = year % 4 == 0 ? 366 : 365;
    return range;
}

void Painters::paintWeekly(const store::RecurringEvent &event, const WeeklyRange &range,
                           int &weekday)
{
    mapWeekday(event.day, weekday);
    const rt::WinColor colour = category_colour(event.cat);
    for (int n = 1; n <= range.days; ++n) {
        const rt::Date date = range.start + n;
        if (rt::Weekday(date) == weekday)
            applyColour(date, colour, colour);
    }
}

void Painters::paintMonthly(const store::RecurringEvent &event, rt::Date &date)
{
    const QString rest = QLatin1Char('/') + event.day + QLatin1Char('/') +
                         QString::number(calendar_.displayedYear());
    const rt::WinColor colour = category_colour(event.cat);
    for (int m = 1; m <= 12; ++m) {
        // A day the month lacks leaves the previous month's date in place.
        rt::tryCDate(QString::number(m) + rest, date);
        applyColour(date, colour, colour);
    }
}

void Painters::paintYearly(const store::RecurringEvent &event, rt::Date &date)
{
    rt::tryCDate(event.month + QLatin1Char('/') + event.day + QLatin1Char('/') +
                     QString::number(calendar_.displayedYear()),
                 date);
    applyColour(date, event.cat);
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
    std::optional<WeeklyRange> range;
    int weekday = 0;
    rt::Date date = 0;
    for (const int i : events.recurring.value(name)) {
        const store::RecurringEvent &event = model_.recurring[i];
        if (event.type == store::kWeekly) {
            if (!range)
                range = weeklyRange();
            paintWeekly(event, *range, weekday);
        } else if (event.type == store::kMonthly)
            paintMonthly(event, date);
        else if (event.type == store::kYearly)
            paintYearly(event, date);
    }
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
    const WeeklyRange range = weeklyRange();
    int weekday = 0;
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kWeekly)
            paintWeekly(model_.recurring[i], range, weekday);
    }
}

void Painters::paint_monthly()
{
    filters_.showKind(ViewFilters::Kind::Monthly);
    rt::Date date = 0;
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kMonthly)
            paintMonthly(model_.recurring[i], date);
    }
}

void Painters::paint_yearly()
{
    filters_.showKind(ViewFilters::Kind::Yearly);
    rt::Date date = 0;
    for (int i = 1; i <= model_.recurringCount(); ++i) {
        if (model_.recurring[i].type == store::kYearly)
            paintYearly(model_.recurring[i], date);
    }
}
