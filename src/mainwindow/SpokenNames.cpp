#include "mainwindow/SpokenNames.h"

#include "mainwindow/DayView.h"
#include "runtime/RuntimeError.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <limits>

namespace spoken
{

namespace
{

struct Named {
    const char *name;
    int red, green, blue;
};

// The pale ones are there for the starter colours, which are light so that digits read well.
constexpr std::array<Named, 28> kColours{{
    {"black", 0, 0, 0},
    {"white", 255, 255, 255},
    {"grey", 128, 128, 128},
    {"light grey", 211, 211, 211},
    {"red", 255, 0, 0},
    {"dark red", 128, 0, 0},
    {"light red", 255, 128, 128},
    {"orange", 255, 128, 0},
    {"brown", 150, 75, 0},
    {"yellow", 255, 255, 0},
    {"olive", 128, 128, 0},
    {"green", 0, 128, 0},
    {"bright green", 0, 255, 0},
    {"teal", 0, 128, 128},
    {"cyan", 0, 255, 255},
    {"sky blue", 0, 128, 255},
    {"blue", 0, 0, 255},
    {"navy", 0, 0, 128},
    {"purple", 128, 0, 128},
    {"magenta", 255, 0, 255},
    {"violet", 255, 128, 255},
    {"pale blue", 196, 224, 255},
    {"pale green", 184, 240, 184},
    {"pink", 255, 217, 236},
    {"light yellow", 255, 255, 128},
    {"lavender", 236, 217, 255},
    {"peach", 255, 224, 168},
    {"silver", 192, 192, 192},
}};

QString timeText(rt::Date time)
{
    const int hour = rt::Hour(time);
    const int hour12 = hour % 12 == 0 ? 12 : hour % 12;
    return QStringLiteral("%1:%2 %3")
        .arg(hour12)
        .arg(rt::Minute(time), 2, 10, QLatin1Char('0'))
        .arg(hour < 12 ? QLatin1String("AM") : QLatin1String("PM"));
}

QString eventText(const QString &memo, const QString &category, const QString &time)
{
    QString text = memo;
    if (store::isAction(memo)) {
        const QString path = store::actionPath(memo);
        const qsizetype slash =
            std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/')));
        text = QStringLiteral("open ") + path.mid(slash + 1);
    }
    if (!category.isEmpty())
        text = category + QStringLiteral(": ") + text;
    return time.isEmpty() ? text + QStringLiteral(", all day")
                          : text + QStringLiteral(" at ") + time;
}

QString categoryOfColour(rt::WinColor colour, const store::Model &model)
{
    for (int i = 1; i <= model.categoryCount() && i < model.categoryColours.size(); ++i) {
        if (store::colourValue(model.categoryColours[i]) == colour)
            return model.categoryNames[i];
    }
    return {};
}

} // namespace

QString colourName(rt::WinColor colour)
{
    const int red = int(colour & 0xFF);
    const int green = int(colour >> 8 & 0xFF);
    const int blue = int(colour >> 16 & 0xFF);
    const Named *nearest = nullptr;
    int best = std::numeric_limits<int>::max();
    for (const Named &c : kColours) {
        const int d = (red - c.red) * (red - c.red) + (green - c.green) * (green - c.green) +
                      (blue - c.blue) * (blue - c.blue);
        if (d < best) {
            best = d;
            nearest = &c;
        }
    }
    return QLatin1String(nearest->name);
}

QString legendRowName(const QString &category, rt::WinColor colour)
{
    return QStringLiteral("Category %1, colour %2").arg(category, colourName(colour));
}

QString dayDetails(rt::Date date, std::optional<rt::WinColor> painted, const store::Model &model,
                   int displayedYear)
{
    QStringList parts;
    if (painted) {
        const QString category = categoryOfColour(*painted, model);
        parts << QStringLiteral("coloured as ") +
                     (category.isEmpty() ? colourName(*painted) : category);
    }
    QList<dayview::Item> items;
    try {
        items = dayview::itemsOn(date, model, displayedYear);
    } catch (const rt::RuntimeError &) {
        // The popup cannot list this day either; the name keeps to what is certain.
    }
    for (const dayview::Item &item : items) {
        if (item.recurring) {
            const store::RecurringEvent &e = model.recurring[item.number];
            parts << eventText(e.memo, e.cat, e.time == store::kAllDayTime ? QString() : e.time);
        } else {
            const store::Event &e = model.events[item.number];
            parts << eventText(e.memo, e.cat,
                               rt::TimePart(e.time) == 0 ? QString() : timeText(e.time));
        }
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace spoken
