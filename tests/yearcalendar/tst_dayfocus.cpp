#include "DataTable.h"
#include "yearcalendar/DayFocus.h"

#include <QTest>

using namespace yearcal;

Q_DECLARE_METATYPE(yearcal::GridDay)
Q_DECLARE_METATYPE(yearcal::DayStep)

namespace
{

QString text(GridDay d)
{
    return QStringLiteral("%1-%2-%3").arg(d.year).arg(d.month).arg(d.day);
}

} // namespace

class TestDayFocus : public QObject
{
    Q_OBJECT

private slots:
    // Steps run over months and years; 29 February is there every fourth year, 1900 too.
    void steps_data()
    {
        columns<GridDay, DayStep, GridDay>("from", "step", "to");
        const auto row = [](const char *name, GridDay from, DayStep step, GridDay to) {
            QTest::newRow(name) << from << step << to;
        };
        row("right past the 28th", {2025, 2, 28}, DayStep::Right, {2025, 3, 1});
        row("right onto 29/2/1900", {1900, 2, 28}, DayStep::Right, {1900, 2, 29});
        row("right past 29/2/2100", {2100, 2, 29}, DayStep::Right, {2100, 3, 1});
        row("right into the next year", {2026, 12, 31}, DayStep::Right, {2027, 1, 1});
        row("left into the last year", {2026, 1, 1}, DayStep::Left, {2025, 12, 31});
        row("up over 29/2/1900", {1900, 3, 3}, DayStep::Up, {1900, 2, 25});
        row("down into the next year", {2026, 12, 28}, DayStep::Down, {2027, 1, 4});
        row("home", {2026, 3, 17}, DayStep::Home, {2026, 3, 1});
        row("end of February 2100", {2100, 2, 10}, DayStep::End, {2100, 2, 29});
        row("page down onto the 29th", {2024, 1, 31}, DayStep::PageDown, {2024, 2, 29});
        row("page down into the next year", {2026, 12, 15}, DayStep::PageDown, {2027, 1, 15});
    }
    void steps()
    {
        QFETCH(GridDay, from);
        QFETCH(DayStep, step);
        QFETCH(GridDay, to);
        QCOMPARE(text(stepDay(from, step)), text(to));
    }

    // The cell of a day is found by its caption among its month's 42 cells.
    void cells()
    {
        YearGrid grid;
        grid.FillYear(1900, 0, 0);
        const int cell = cellOfDay(grid, 2, 29);
        QCOMPARE(monthOfGridCell(cell), 2);
        QCOMPARE(grid[cell].caption, 29);
        QCOMPARE(cellOfDay(grid, 4, 31), -1);
        QCOMPARE(monthOfGridCell(cellOfDay(grid, 1, 31)), 1);
        QCOMPARE(monthOfGridCell(cellOfDay(grid, 12, 31)), 12);
    }
};

QTEST_APPLESS_MAIN(TestDayFocus)
#include "tst_dayfocus.moc"
