#include "DataTable.h"
#include "runtime/Clock.h"
#include "runtime/RuntimeError.h"
#include "yearcalendar/CalendarModel.h"
#include "yearcalendar/DayColorList.h"
#include "yearcalendar/DayFocus.h"

#include <QDate>
#include <QRandomGenerator>
#include <QTest>
#include <array>
#include <tuple>

using namespace yearcal;

namespace
{

constexpr rt::WinColor kGreen = 0x00FF00;
constexpr rt::WinColor kPink = 0xFF00FF;

rt::Date date(int year, int month, int day)
{
    return rt::DateSerial(year, month, day);
}

using Cells = std::array<rt::WinColor, kCells>;

} // namespace

class TestCalendarModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        rt::Clock::setSource([] { return date(2024, 3, 15) + 0.5; });
    }
    void cleanup() { rt::Clock::setSource({}); }

    void fillsEveryMonth_data()
    {
        columns<int, int>("year", "februaryDays");
        QTest::newRow("1900 counts as leap") << 1900 << 29;
        QTest::newRow("2020, August starts on Saturday") << 2020 << 29;
        QTest::newRow("2022, January starts on Saturday") << 2022 << 28;
        QTest::newRow("2100 counts as leap") << 2100 << 29;
        QTest::newRow("9999") << 9999 << 28;
    }

    // Day d is in cell weekday(1st) + d - 1; unused show "0", hidden, January's disabled.
    void fillsEveryMonth()
    {
        QFETCH(int, year);
        QFETCH(int, februaryDays);
        YearGrid grid;
        grid.FillYear(2024, 0, 0);
        grid.ClearDays();
        grid.FillYear(year, 0xABCDEF, 0);

        const int lengths[] = {31, februaryDays, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        for (int month = 1; month <= 12; ++month) {
            const int start = QDate(year, month, 1).dayOfWeek() % 7;
            const int first = month == 1 ? j1(0) : f1((month - 2) * 42);
            for (int k = 0; k < 42; ++k) {
                const int day = k - start + 1;
                const bool used = day >= 1 && day <= lengths[month - 1];
                const DayCell &cell = grid[first + k];
                QCOMPARE(cell.caption, used ? day : 0);
                QCOMPARE(cell.visible, used);
                QCOMPARE(cell.enabled, used || month != 1);
                QCOMPARE(cell.fore, 0xABCDEFu);
            }
        }
    }

    void colourByDate_data()
    {
        columns<rt::Date, rt::Date, uint>("painted", "read", "colour");
        QTest::newRow("day of the year") << date(2024, 3, 3) << date(2024, 3, 3) << uint(kGreen);
        QTest::newRow("January, 1990") << date(2024, 1, 5) << date(1990, 1, 5) << uint(kGreen);
        QTest::newRow("Feb. 2019") << date(2019, 2, 5) << date(2024, 2, 5) << uint(rt::kWhite);
        QTest::newRow("read outside the year") << date(2024, 2, 5) << date(2025, 2, 5) << 0u;
    }

    void colourByDate()
    {
        QFETCH(rt::Date, painted);
        QFETCH(rt::Date, read);
        CalendarModel model;
        model.SetDayBackColor(painted, kGreen);
        QTEST(model.GetDayBackcolor(read), "colour");
    }

    // A click rebuilds the year, re-applies its kept colours and greys only the clicked cell.
    void clickRebuildsAndReapplies()
    {
        CalendarModel model;
        const YearGrid &grid = model.grid();
        model.SetDayBackColor(date(2024, 3, 3), kGreen);
        model.SetDayBackColor(date(2019, 1, 9), kGreen);
        model.SetDayForeColor(date(2024, 12, 24), kPink);
        const int april1 = cellOfDay(model.grid(), 4, 1);
        model.grid().setBack(april1, kPink);
        QCOMPARE(model.GetDayBackcolor(date(2024, 1, 9)), kGreen);

        const int march10 = cellOfDay(model.grid(), 3, 10);
        QCOMPARE(model.click(false, march10 - kJanuaryCells), date(2024, 3, 10));
        QCOMPARE(grid[march10].back, kSelectionGrey);
        QCOMPARE(model.GetDayBackcolor(date(2024, 3, 3)), kGreen);
        QCOMPARE(model.GetDayBackcolor(date(2024, 1, 9)), rt::kWhite);
        QCOMPARE(grid[cellOfDay(model.grid(), 12, 24)].fore, kPink);
        QCOMPARE(grid[april1].back, rt::kWhite);

        const int march3 = cellOfDay(model.grid(), 3, 3);
        model.click(false, march3 - kJanuaryCells);
        QCOMPARE(grid[march10].back, rt::kWhite);
        QCOMPARE(grid[march3].back, kSelectionGrey);
        QCOMPARE(model.click(true, cellOfDay(model.grid(), 1, 2)), date(2024, 1, 2));
        QCOMPARE(grid[march3].back, kGreen);
        int grey = 0;
        for (int cell = 0; cell < kCells; ++cell)
            grey += grid[cell].back == kSelectionGrey;
        QCOMPARE(grey, 1);
    }

    // A January colour stays with its cell, which in its own year may show another day.
    void yearButtonsReapplyTheirYear()
    {
        CalendarModel model;
        model.SetDayBackColor(date(2024, 3, 3), kGreen);
        model.SetDayBackColor(date(2025, 1, 5), kPink);
        QCOMPARE(model.grid()[j1(5)].caption, 5);

        model.stepYear(1);
        QCOMPARE(model.displayedYear(), 2025);
        QCOMPARE(model.GetDayBackcolor(date(2025, 3, 3)), rt::kWhite);
        QCOMPARE(model.grid()[j1(5)].caption, 3);
        QCOMPARE(model.GetDayBackcolor(date(2025, 1, 3)), kPink);
        QCOMPARE(model.GetDayBackcolor(date(2025, 1, 5)), rt::kWhite);

        model.stepYear(-1);
        QCOMPARE(model.GetDayBackcolor(date(2024, 3, 3)), kGreen);
        QCOMPARE(model.GetDayBackcolor(date(2024, 1, 5)), rt::kWhite);
    }

    // Once today was in January the setter paints a January cell, or none from March on.
    void todayInJanuaryOutlivesJanuary()
    {
        rt::Clock::setSource([] { return date(2024, 1, 10); });
        CalendarModel model;
        rt::Clock::setSource([] { return date(2024, 2, 3); });
        model.click(true, 20);
        QCOMPARE(model.grid()[f1(6)].fore, rt::kRed);

        model.setDayForeColor(kGreen);
        QCOMPARE(model.grid()[j1(6)].fore, rt::kRed);
        QCOMPARE(model.grid()[f1(6)].fore, kGreen);

        rt::Clock::setSource([] { return date(2024, 3, 15); });
        model.click(true, 20);
        QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, model.setDayForeColor(kGreen));
    }

    // At midnight the mark moves, back colours stay; a year without the new day loses it.
    void todayMovesAtMidnight_data()
    {
        columns<int, double, double>("displayedYear", "before", "after");
        QTest::newRow("next day") << 2024 << date(2024, 3, 15) << date(2024, 3, 16);
        QTest::newRow("next month") << 2024 << date(2024, 1, 31) << date(2024, 2, 1);
        QTest::newRow("new year") << 2024 << date(2024, 12, 31) << date(2025, 1, 1);
        QTest::newRow("into the year shown") << 2025 << date(2024, 12, 31) << date(2025, 1, 1);
        QTest::newRow("another year shown") << 2023 << date(2024, 3, 15) << date(2024, 3, 16);
    }
    void todayMovesAtMidnight()
    {
        QFETCH(int, displayedYear);
        QFETCH(double, before);
        QFETCH(double, after);
        rt::Clock::setSource([before] { return before; });
        CalendarModel model;
        model.stepYear(displayedYear - rt::Year(before));
        model.SetDayBackColor(before, kGreen);
        model.grid().takeChanged();
        model.moveToday(after);
        const auto marked = [&](double day) {
            const int cell = rt::Year(day) == displayedYear
                                 ? cellOfDay(model.grid(), rt::Month(day), rt::Day(day))
                                 : -1;
            return cell >= 0 && model.grid()[cell].fore == rt::kRed && model.grid()[cell].bold;
        };
        QVERIFY(!marked(before));
        QCOMPARE(marked(after), rt::Year(after) == displayedYear);
        if (rt::Year(before) == displayedYear) {
            const DayCell &old =
                model.grid()[cellOfDay(model.grid(), rt::Month(before), rt::Day(before))];
            QCOMPARE(old.fore, rt::kBlue);
            QCOMPARE(old.back, kGreen);
        }
        QVERIFY(model.grid().takeChanged().size() <= 2);
    }

    // The colours kept for re-application.

    // Random crowded histories: each year's re-application matches the literal list.
    void actsLikeTheLiteralList()
    {
        QRandomGenerator random(20240315);
        const int years[] = {1899, 2023, 2024, 2025};
        const int januaryCells[] = {0, 3, 20, 41};
        const int laterCells[] = {0, 1, 42, 300, 461};
        for (int history = 0; history < 200; ++history) {
            // The list as first written: every entry kept, in order, behind a blank one.
            QList<std::tuple<rt::Date, rt::WinColor, bool, int>> literal{{0, 0, false, 0}};
            DayColorList compact;
            for (int step = 0; step < 60; ++step) {
                const int year = years[random.bounded(4)];
                const rt::Date date =
                    rt::DateSerial(year, 1 + random.bounded(12), 1 + random.bounded(28)) +
                    random.bounded(2) * 0.5;
                const bool inJanuary = random.bounded(2);
                const int index =
                    inJanuary ? januaryCells[random.bounded(4)] : laterCells[random.bounded(5)];
                const rt::WinColor colour = random.bounded(4);
                literal.append({date, colour, inJanuary, index});
                compact.append(date, colour, inJanuary, index);

                Cells before;
                for (auto &c : before)
                    c = 100 + random.bounded(4);
                for (const int shown : {1899, 2023, 2024, 2025, 2026}) {
                    Cells expected = before, actual = before;
                    for (const auto &[d, c, january, i] : literal) {
                        if (rt::Year(d) == shown)
                            expected[january ? j1(i) : f1(i)] = c;
                    }
                    compact.reapply(shown, [&](bool january, int i, rt::WinColor c) {
                        actual[january ? j1(i) : f1(i)] = c;
                    });
                    QCOMPARE(actual, expected);
                }
            }
        }
    }

    // Painting the same days on every activation does not grow the list.
    void repaintingTheSameDaysDoesNotGrow()
    {
        DayColorList list;
        const auto paintYear = [&](rt::WinColor colour) {
            for (int week = 0; week < 52; ++week)
                list.append(rt::DateSerial(2024, 1, 6) + 7 * week, colour, week < 4, week);
        };
        paintYear(1);
        const std::size_t once = list.size();
        for (int repaint = 0; repaint < 1000; ++repaint)
            paintYear(rt::WinColor(repaint));
        QCOMPARE(list.size(), once);
        QCOMPARE(once, std::size_t(53));
    }
};

QTEST_APPLESS_MAIN(TestCalendarModel)
#include "tst_calendarmodel.moc"
