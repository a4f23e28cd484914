#include "DataTable.h"
#include "mainwindow/SpokenNames.h"

#include <QTest>

using rt::DateSerial;

class TestSpokenNames : public QObject
{
    Q_OBJECT

private slots:
    // The colours of the starter store, by the names a person would use.
    void legendRows_data()
    {
        columns<uint, QString>("colour", "name");
        QTest::newRow("Work") << 16744448u << "Category More, colour sky blue";
        QTest::newRow("Health") << 65535u << "Category More, colour yellow";
    }
    void legendRows()
    {
        QFETCH(uint, colour);
        QTEST(spoken::legendRowName("More", colour), "name");
    }

    // A day reads as its popup lists, after the category its colour stands for.
    void days_data()
    {
        // day: of March 2026; painted: -1 for none
        columns<int, qint64, QString>("day", "painted", "details");
        QTest::newRow("nothing") << 4 << qint64(-1) << "";
        QTest::newRow("one event")
            << 3 << qint64(65535) << "coloured as Health, Health: Dentist at 9:00 AM";
        QTest::newRow("several") << 5 << qint64(8421504)
                                 << "coloured as More, Work: open run.exe, all day, "
                                    "Health: Gym at 6:30 PM, Work: Standup at 9:00 AM";
        QTest::newRow("unknown colour") << 6 << qint64(0xFF) << "coloured as red";
    }
    void days()
    {
        QFETCH(int, day);
        QFETCH(qint64, painted);
        store::Model m;
        m.categoryNames = {"", "More", "Work", "Health"};
        m.categoryColours = {"", "8421504", "16744448", "65535"};
        m.events = {{}};
        m.recurring = {{}};
        const rt::Date march3 = DateSerial(2026, 3, 3), march5 = march3 + 2;
        m.events << store::Event{march3, rt::TimeSerial(9, 0, 0), "Dentist", "Health"}
                 << store::Event{march5, 0, "&**C:\\Tools\\run.exe", "Work"}
                 << store::Event{march5, rt::TimeSerial(18, 30, 0), "Gym", "Health"};
        m.recurring.append({"Weekly", "Thursday", "", "9:00 AM", "Standup", "Work"});
        const auto colour = painted < 0 ? std::nullopt : std::optional(rt::WinColor(painted));
        QTEST(spoken::dayDetails(DateSerial(2026, 3, day), colour, m, 2026), "details");
    }
};

QTEST_APPLESS_MAIN(TestSpokenNames)
#include "tst_spokennames.moc"
