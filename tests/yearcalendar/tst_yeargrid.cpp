#include "runtime/RuntimeError.h"
#include "yearcalendar/YearGrid.h"

#include <QDate>
#include <QTest>

using namespace yearcal;

class TestYearGrid : public QObject
{
    Q_OBJECT

private slots:
    void fillsEveryMonth_data();
    void fillsEveryMonth();
    void monthOfCell_data();
    void monthOfCell();
    void marksToday_data();
    void marksToday();
    void rejectsYearsOutsideDates();
};

void TestYearGrid::fillsEveryMonth_data()
{
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("februaryDays");
    QTest::newRow("1900 counts as leap") << 1900 << 29;
    QTest::newRow("2000") << 2000 << 29;
    QTest::newRow("2020, August starts on Saturday") << 2020 << 29;
    QTest::newRow("2022, January starts on Saturday") << 2022 << 28;
    QTest::newRow("2023") << 2023 << 28;
    QTest::newRow("2100 counts as leap") << 2100 << 29;
    QTest::newRow("9999") << 9999 << 28;
}

// Day d of a month lands in cell (weekday of the 1st, Sunday = 0) + d - 1; unused cells show
// "0" and are hidden, and only January's are also disabled.
void TestYearGrid::fillsEveryMonth()
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

void TestYearGrid::monthOfCell_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("month");
    QTest::newRow("first of February") << 0 << 2;
    QTest::newRow("last of February") << 41 << 2;
    QTest::newRow("first of March") << 42 << 3;
    QTest::newRow("last of November") << 419 << 11;
    QTest::newRow("first of December") << 420 << 12;
    QTest::newRow("last of December") << 461 << 12;
}

void TestYearGrid::monthOfCell()
{
    QFETCH(int, index);
    QFETCH(int, month);
    QCOMPARE(MonthOfCell(index), month);
}

void TestYearGrid::marksToday_data()
{
    QTest::addColumn<int>("year");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<int>("todayCell"); // grid cell number, -1 for none
    QTest::newRow("January") << 2024 << QDate(2024, 1, 20) << j1(20);
    QTest::newRow("December 31st") << 2024 << QDate(2024, 12, 31) << f1(420 + 30);
    QTest::newRow("another year") << 2023 << QDate(2024, 1, 20) << -1;
}

void TestYearGrid::marksToday()
{
    QFETCH(int, year);
    QFETCH(QDate, today);
    QFETCH(int, todayCell);
    YearGrid grid;
    grid.FillYear(year, rt::kBlue, rt::DateSerial(today.year(), today.month(), today.day()));
    for (int cell = 0; cell < kCells; ++cell) {
        QCOMPARE(grid[cell].bold, cell == todayCell);
        QCOMPARE(grid[cell].fore, cell == todayCell ? rt::kRed : rt::kBlue);
    }
}

void TestYearGrid::rejectsYearsOutsideDates()
{
    YearGrid grid;
    QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, grid.FillYear(99, 0, 0));
    QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, grid.FillYear(10000, 0, 0));
    QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, gridDate(1, 0, 2024));
    QCOMPARE(gridDate(2, 29, 1900), rt::DateSerial(1900, 3, 1));
}

QTEST_APPLESS_MAIN(TestYearGrid)
#include "tst_yeargrid.moc"
