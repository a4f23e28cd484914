#include "yearcalendar/YearGrid.h"

#include <QDate>
#include <QTest>
#include <utility>

using namespace yearcal;

class TestYearGrid : public QObject
{
    Q_OBJECT

private slots:

    void fillsEveryMonth_data()
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

    void monthOfCell()
    {
        const std::pair<int, int> firstAndLast[] = {{0, 2},    {41, 2},   {42, 3},
                                                    {419, 11}, {420, 12}, {461, 12}};
        for (const auto &[index, month] : firstAndLast)
            QCOMPARE(MonthOfCell(index), month);
    }
};

QTEST_APPLESS_MAIN(TestYearGrid)
#include "tst_yeargrid.moc"
