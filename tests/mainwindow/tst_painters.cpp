#include "DataTable.h"
#include "FakeFilters.h"
#include "mainwindow/Painters.h"
#include "runtime/Locale.h"

#include <QDate>
#include <QHash>
#include <QTest>
#include <map>

using namespace rt;
using store::RecurringEvent;

namespace
{

// A calendar that shows one year and keeps one colour per day.
class FakeCalendar : public CalendarSurface
{
public:
    int year = 2004;
    Date selected = DateSerial(2004, 1, 17);
    QHash<int, WinColor> colours;
    int setCalls = 0;
    Date lastSet = 0;

    void setDayBackColorAll(WinColor c) override
    {
        colours.clear();
        white = c;
    }
    void SetDayBackColor(Date d, WinColor c) override
    {
        ++setCalls;
        lastSet = d;
        if (Year(d) == year)
            colours[int(d)] = c;
    }
    WinColor GetDayBackcolor(Date d) override
    {
        return Year(d) == year ? colours.value(int(d), white) : 0;
    }
    Date Selected() const override { return selected; }
    int displayedYear() const override { return year; }

    // "200x52; 52 calls, last 2004-12-27": days per colour, then the setter's calls.
    QString painted() const
    {
        std::map<WinColor, int> days;
        for (const WinColor c : colours)
            ++days[c];
        QStringList parts;
        for (const auto &[colour, count] : days)
            parts << QStringLiteral("%1x%2").arg(colour).arg(count);
        const QDate last(Year(lastSet), Month(lastSet), Day(lastSet));
        return parts.join(' ') + QStringLiteral("; %1 calls, last ").arg(setCalls) +
               last.toString(Qt::ISODate);
    }

private:
    WinColor white = kWhite;
};

RecurringEvent recurring(const QString &type, const QString &day, const QString &cat,
                         const QString &month = {})
{
    return {type, day, month, "9:00 AM", "memo", cat};
}

} // namespace

class TestPainters : public QObject
{
    Q_OBJECT

    FakeCalendar calendar;
    FakeFilters filters;

private slots:
    void initTestCase() { RtLocale::setForTest(QLocale("en_US")); }
    void init()
    {
        calendar = FakeCalendar();
        filters = FakeFilters();
    }

    void painters_data()
    {
        // oneOffs: Work, on 3 March
        columns<int, QString, QList<RecurringEvent>, int, QString>("year", "painter", "events",
                                                                   "oneOffs", "painted");
        const auto row = [](const char *name, int year, const char *kind,
                            const QList<RecurringEvent> &events, int oneOffs, const char *painted) {
            QTest::newRow(name) << year << QString(kind) << events << oneOffs << QString(painted);
        };
        const RecurringEvent work29 = recurring(store::kYearly, "29", "Work", "7");
        row("weekly, 2018 starts on a Monday", 2018, "weekly",
            {recurring(store::kWeekly, "Monday", "Work")}, 0, "200x53; 53 calls, last 2018-12-31");
        row("weekly: a name that is no weekday keeps the previous event's", 2004, "weekly",
            {recurring(store::kWeekly, "Tuesday", "Work"),
             recurring(store::kWeekly, "monday", "Home")},
            0, "100x52; 104 calls, last 2004-12-28");
        row("monthly: a short month paints the month before's date again", 2004, "monthly",
            {recurring(store::kMonthly, "31", "Work")}, 0, "200x7; 12 calls, last 2004-12-31");
        row("yearly: same category", 2004, "yearly", {work29, work29}, 0,
            "200x1; 2 calls, last 2004-07-29");
        row("yearly: two categories turn More", 2004, "yearly",
            {work29, recurring(store::kYearly, "29", "Home", "7")}, 0,
            "100x1; 2 calls, last 2004-07-29");
        row("yearly: a name in another case is no category: black", 2004, "yearly",
            {recurring(store::kYearly, "29", "work", "7")}, 0, "0x1; 1 calls, last 2004-07-29");
        // One-off events compare the day with black, not with their own colour.
        row("category: one one-off", 2004, "category", {}, 1, "200x1; 1 calls, last 2004-03-03");
        row("category: two one-offs of one category turn More", 2004, "category", {}, 2,
            "100x1; 2 calls, last 2004-03-03");
    }
    void painters()
    {
        QFETCH(int, year);
        QFETCH(QString, painter);
        QFETCH(QList<RecurringEvent>, events);
        QFETCH(int, oneOffs);
        calendar.year = year;
        calendar.selected = DateSerial(year, 1, 20);
        store::Model m; // "Work" twice: the later one's colour counts
        m.categoryNames = {"", "More", "Work", "Home", "Work"};
        m.categoryColours = {"", "100", "150", "300", "200"};
        m.recurring = {{}};
        m.events = {{}};
        m.recurring << events;
        for (int i = 0; i < oneOffs; ++i)
            m.events << store::Event{DateSerial(year, 3, 3), 0, "m", "Work"};
        m.events << store::Event{DateSerial(year + 1, 3, 3), 0, "other year", "Work"};
        filters.v1 = {{"", false}, {"", false}, {"Work", false}};
        Painters painters(calendar, m, filters);
        if (painter == "weekly")
            painters.paint_weekly();
        else if (painter == "monthly")
            painters.paint_monthly();
        else if (painter == "yearly")
            painters.paint_yearly();
        else
            painters.paint_category(2);
        QTEST(calendar.painted(), "painted");
        // The painter's item in the View menu is checked.
        QCOMPARE(filters.kindShown(ViewFilters::Kind::Weekly), painter == "weekly");
        QCOMPARE(filters.kindShown(ViewFilters::Kind::Monthly), painter == "monthly");
        QCOMPARE(filters.kindShown(ViewFilters::Kind::Yearly), painter == "yearly");
        QCOMPARE(filters.v1[2].checked, painter == "category");
    }
};

QTEST_GUILESS_MAIN(TestPainters)
#include "tst_painters.moc"
