#include "mainwindow/Painters.h"
#include "runtime/Locale.h"

#include <QHash>
#include <QTest>

using namespace rt;

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

    WinColor at(int y, int m, int d) const
    {
        return colours.value(int(DateSerial(y, m, d)), white);
    }
    int countOf(WinColor c) const { return int(std::count(colours.begin(), colours.end(), c)); }

private:
    WinColor white = kWhite;
};

constexpr WinColor kMore = 100;
constexpr WinColor kWork = 200;
constexpr WinColor kHome = 300;

store::Model model()
{
    store::Model m;
    m.categoryNames = {"", "More", "Work", "Home"};
    m.categoryColours = {"", QString::number(kMore), QString::number(kWork),
                         QString::number(kHome)};
    m.recurring = {{}};
    m.events = {{}};
    return m;
}

store::RecurringEvent recurring(const QString &type, const QString &day, const QString &cat,
                                const QString &month = {})
{
    return {type, day, month, "9:00 AM", "memo", cat};
}

} // namespace

class TestPainters : public QObject
{
    Q_OBJECT

    FakeCalendar calendar;
    ViewFilters filters;

private slots:
    void initTestCase() { RtLocale::setForTest(QLocale("en_US")); }
    void init()
    {
        calendar = FakeCalendar();
        filters = ViewFilters();
    }

    void weeklyDays_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<int>("mondays");
        QTest::newRow("2004") << 2004 << 52;
        QTest::newRow("2018 starts on a Monday") << 2018 << 53;
        QTest::newRow("2024 leap, starts on a Monday") << 2024 << 53;
    }
    void weeklyDays()
    {
        QFETCH(int, year);
        QFETCH(int, mondays);
        calendar.year = year;
        calendar.selected = DateSerial(year, 1, 20);
        store::Model m = model();
        m.recurring << recurring(store::kWeekly, "Monday", "Work");
        Painters(calendar, m, filters).paint_weekly();
        QCOMPARE(calendar.countOf(kWork), mondays);
        QVERIFY(filters.weekly);
    }

    // The year's length follows the rule of four alone, so 2100 walks into 2101.
    void weeklyCenturyYear()
    {
        calendar.year = 2100;
        calendar.selected = DateSerial(2100, 1, 16);
        store::Model m = model();
        m.recurring << recurring(store::kWeekly, "Saturday", "Work");
        Painters(calendar, m, filters).paint_weekly();
        QCOMPARE(calendar.lastSet, DateSerial(2101, 1, 1));
    }

    // A name that is no weekday keeps the previous weekly event's weekday.
    void weeklyKeepsPreviousWeekday()
    {
        store::Model m = model();
        m.recurring << recurring(store::kWeekly, "Monday", "Work")
                    << recurring(store::kWeekly, "monday", "Home");
        Painters(calendar, m, filters).paint_weekly();
        QCOMPARE(calendar.countOf(kMore), 52);
    }

    void colourRule_data()
    {
        QTest::addColumn<QString>("firstCat");
        QTest::addColumn<QString>("secondCat");
        QTest::addColumn<WinColor>("expected");
        QTest::newRow("same category") << "Work"
                                       << "Work" << kWork;
        QTest::newRow("two categories") << "Work"
                                        << "Home" << kMore;
        QTest::newRow("unknown category is black") << "Nope"
                                                   << "Nope" << WinColor(0);
    }
    void colourRule()
    {
        QFETCH(QString, firstCat);
        QFETCH(QString, secondCat);
        QFETCH(WinColor, expected);
        store::Model m = model();
        m.recurring << recurring(store::kYearly, "29", firstCat, "7")
                    << recurring(store::kYearly, "29", secondCat, "7");
        Painters(calendar, m, filters).paint_yearly();
        QCOMPARE(calendar.at(2004, 7, 29), expected);
    }

    // Short months paint the previous month's date again instead of skipping.
    void monthlyDay31()
    {
        store::Model m = model();
        m.recurring << recurring(store::kMonthly, "31", "Work");
        FakeCalendar *cal = &calendar;
        Painters(*cal, m, filters).paint_monthly();
        QCOMPARE(calendar.countOf(kWork), 7);
        QCOMPARE(calendar.setCalls, 12);
        QVERIFY(filters.mon);
    }

    void laterDuplicateCategoryWins()
    {
        store::Model m = model();
        m.categoryNames << "Work";
        m.categoryColours << "999";
        QCOMPARE(Painters(calendar, m, filters).category_colour("Work"), WinColor(999));
        QCOMPARE(Painters(calendar, m, filters).category_colour("work"), WinColor(0));
    }

    // In the category painter, one-off events compare the day with black, not with their
    // own colour: two of one category on one day turn "More".
    void categoryOneOffs_data()
    {
        QTest::addColumn<int>("events");
        QTest::addColumn<WinColor>("expected");
        QTest::newRow("one") << 1 << kWork;
        QTest::newRow("two of one category") << 2 << kMore;
    }
    void categoryOneOffs()
    {
        QFETCH(int, events);
        QFETCH(WinColor, expected);
        store::Model m = model();
        for (int i = 0; i < events; ++i)
            m.events << store::Event{DateSerial(2004, 3, 3), 0, "m", "Work"};
        m.events << store::Event{DateSerial(2005, 3, 3), 0, "other year", "Work"};
        filters.v1 = {{"", false}, {"", false}, {"Work", false}};
        Painters(calendar, m, filters).paint_category(2);
        QCOMPARE(calendar.at(2004, 3, 3), expected);
        QCOMPARE(calendar.countOf(kWork) + calendar.countOf(kMore), 1);
        QVERIFY(filters.v1[2].checked);
    }

    void repaintFollowsFilters_data()
    {
        QTest::addColumn<bool>("work");
        QTest::addColumn<bool>("weekly");
        QTest::addColumn<bool>("yearly");
        QTest::addColumn<int>("painted");
        QTest::newRow("none") << false << false << false << 0;
        QTest::newRow("weekly only") << false << true << false << 52;
        QTest::newRow("yearly only") << false << false << true << 1;
        QTest::newRow("category") << true << false << false << 52 + 1 + 1;
    }
    void repaintFollowsFilters()
    {
        QFETCH(bool, work);
        QFETCH(bool, weekly);
        QFETCH(bool, yearly);
        QFETCH(int, painted);
        store::Model m = model();
        m.recurring << recurring(store::kWeekly, "Monday", "Work")
                    << recurring(store::kYearly, "29", "Work", "7")
                    << recurring(store::kDaily, "", "Work");
        m.events << store::Event{DateSerial(2004, 3, 3), 0, "m", "Work"};
        filters.v1 = {{"Work", work}};
        filters.weekly = weekly;
        filters.yearly = yearly;
        calendar.colours[int(DateSerial(2004, 5, 5))] = 12345;
        Painters(calendar, m, filters).repaint();
        QCOMPARE(calendar.colours.size(), painted);
    }
};

QTEST_GUILESS_MAIN(TestPainters)
#include "tst_painters.moc"
