#include "yearcalendar/DayColorList.h"
#include "yearcalendar/YearGrid.h"

#include <QRandomGenerator>
#include <QTest>
#include <array>
#include <vector>

using namespace yearcal;

namespace
{

using Cells = std::array<rt::WinColor, kCells>;

// The list as first written: every entry kept, in order, behind two blank ones; entry 0 is
// never visited.
struct LiteralList {
    struct Entry {
        rt::Date date;
        rt::WinColor colour;
        bool inJanuary;
        int cellIndex;
    };
    std::vector<Entry> entries{Entry{0, 0, false, 0}, Entry{0, 0, false, 0}};

    void reapply(int year, Cells &cells) const
    {
        for (std::size_t i = 1; i < entries.size(); ++i) {
            const Entry &e = entries[i];
            if (rt::Year(e.date) == year)
                cells[e.inJanuary ? j1(e.cellIndex) : f1(e.cellIndex)] = e.colour;
        }
    }
};

Cells reapplied(const DayColorList &list, int year, Cells cells)
{
    list.reapply(year, [&](bool inJanuary, int index, rt::WinColor colour) {
        cells[inJanuary ? j1(index) : f1(index)] = colour;
    });
    return cells;
}

} // namespace

class TestDayColorList : public QObject
{
    Q_OBJECT

private slots:

    // Random histories crowded onto few years, cells and colours, so that entries overwrite,
    // interleave and repeat; after every step each year's re-application must leave the same
    // cells as the literal list, starting from arbitrary cell colours.
    void actsLikeTheLiteralList()
    {
        QRandomGenerator random(20240315);
        const int years[] = {1899, 2023, 2024, 2025};
        const int januaryCells[] = {0, 3, 20, 41};
        const int laterCells[] = {0, 1, 42, 300, 461};
        for (int history = 0; history < 200; ++history) {
            LiteralList literal;
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
                literal.entries.push_back({date, colour, inJanuary, index});
                compact.append(date, colour, inJanuary, index);

                Cells before;
                for (auto &c : before)
                    c = 100 + random.bounded(4);
                for (const int shown : {1899, 2023, 2024, 2025, 2026}) {
                    Cells expected = before;
                    literal.reapply(shown, expected);
                    QCOMPARE(reapplied(compact, shown, before), expected);
                }
            }
        }
    }

    // A host that paints the same days on every activation leaves the list as it was after the
    // first painting.
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

QTEST_APPLESS_MAIN(TestDayColorList)
#include "tst_daycolorlist.moc"
