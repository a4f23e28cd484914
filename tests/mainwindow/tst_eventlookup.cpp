#include "mainwindow/EventLookup.h"

#include <QTest>

using namespace eventlookup;

namespace
{

store::Model model()
{
    store::Model m;
    m.events = {{},
                {0, 0, "Lunch with Ann", "Work"},
                {0, 0, "&**C:\\notes.txt", "Work"},
                {0, 0, "", "Work"}};
    m.recurring = {{}, {"Daily", "", "", "00:00", "Weekly lunch", "Work"}};
    return m;
}

} // namespace

class TestEventLookup : public QObject
{
    Q_OBJECT

private slots:
    void fFind_data()
    {
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("action text with its marker") << "&**c:" << QStringList{"&**C:\\notes.txt"};
        QTest::newRow("empty keyword, empty memo left out")
            << "" << QStringList{"Lunch with Ann", "&**C:\\notes.txt", "Weekly lunch"};
    }
    void fFind()
    {
        QFETCH(QString, keyword);
        QFETCH(QStringList, found);
        QCOMPARE(eventlookup::fFind(model(), keyword), found);
    }

    void modi_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("recurring");
        QTest::addColumn<int>("number"); // 0: none
        QTest::newRow("one-off memo") << "Lunch with Ann" << false << 1;
        QTest::newRow("action as the find window shows it") << "C:\\notes.txt" << false << 2;
        QTest::newRow("recurring memo") << "Weekly lunch" << true << 1;
        QTest::newRow("other case") << "weekly lunch" << false << 0;
    }
    void modi()
    {
        QFETCH(QString, text);
        QFETCH(bool, recurring);
        QFETCH(int, number);
        const auto found = eventlookup::modi(model(), text);
        QCOMPARE(found.has_value(), number != 0);
        if (found)
            QCOMPARE(*found, (Found{recurring, number}));
    }
};

QTEST_MAIN(TestEventLookup)
#include "tst_eventlookup.moc"
