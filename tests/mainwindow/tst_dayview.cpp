#include "DataTable.h"
#include "mainwindow/DayView.h"
#include "mainwindow/EventLookup.h"
#include "runtime/DateText.h"
#include "runtime/Locale.h"
#include "runtime/RuntimeError.h"

#include <QTest>

using namespace dayview;
using rt::DateSerial;

namespace
{

store::Model model()
{
    store::Model m;
    m.categoryNames = {"", "More"};
    m.categoryColours = {"", "0"};
    m.events = {{}};
    m.recurring = {{}};
    return m;
}

store::RecurringEvent recurring(const QString &type, const QString &day, const QString &memo,
                                const QString &month = {})
{
    return {type, day, month, "9:00 AM", memo, "Work"};
}

store::Model lookupModel()
{
    store::Model m = model();
    m.events << store::Event{0, 0, "Lunch with Ann", "Work"}
             << store::Event{0, 0, "&**C:\\notes.txt", "Work"} << store::Event{0, 0, "", "Work"};
    m.recurring << store::RecurringEvent{"Daily", "", "", "00:00", "Weekly lunch", "Work"};
    return m;
}

} // namespace

class TestDayView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { rt::RtLocale::setForTest(QLocale("en_US")); }

    void fileNameOf_data()
    {
        columns<QString, QChar, QString>("text", "separator", "expected");
        QTest::newRow("windows path") << "&**C:\\Tools\\run.exe" << QChar('\\') << "run.exe";
        QTest::newRow("no backslash") << "&**notes" << QChar('\\') << "**notes";
        QTest::newRow("unix path") << "&**/usr/bin/x" << QChar('/') << "x";
        QTest::newRow("deep") << "&**/home/ann/a/b/c/notes.odt" << QChar('/') << "c/notes.odt";
        QTest::newRow("empty") << "" << QChar('/') << "";
    }
    void fileNameOf()
    {
        QFETCH(QString, text);
        QFETCH(QChar, separator);
        QTEST(file_name_of(text, separator), "expected");
    }

    void captions_data()
    {
        columns<QString, QString>("text", "expected");
        QTest::newRow("long memo") << "Lunch with Ann and Bob" << QString("Lunch with Ann ...");
        QTest::newRow("empty") << "" << QString("...");
        QTest::newRow("act") << "&**/home/ann/Long name tool.sh" << QString("Long name tool....");
    }
    void captions()
    {
        QFETCH(QString, text);
        QTEST(caption(text), "expected");
    }

    // One-off events first, then the recurring ones whose rule hits the day, as stored.
    void itemsOn()
    {
        store::Model m = model();
        m.events << store::Event{DateSerial(2004, 7, 29), 0, "once", "Work"}
                 << store::Event{DateSerial(2004, 7, 30), 0, "next day", "Work"};
        m.recurring << recurring(store::kDaily, "", "daily")
                    << recurring(store::kYearly, "29", "29 July", "7");
        QStringList texts;
        for (const Item &item : dayview::itemsOn(DateSerial(2004, 7, 29), m, 2004))
            texts << item.text;
        QCOMPARE(texts, QStringList({"once", "daily", "29 July"}));
    }

    void n1Targets_data()
    {
        columns<QString, QString, QList<Target>>("caption", "text", "expected");
        const auto row = [](const char *name, const char *caption, const char *text,
                            const QList<Target> &expected) {
            QTest::newRow(name) << QString(caption) << QString(text) << expected;
        };
        row("same text on two dates opens both", "Dentist...", "Dentist", {{false, 1}, {false, 3}});
        row("shared first 15 characters", "Meeting with th...", "Meeting with the boss",
            {{false, 2}, {true, 1}});
        row("one-off action", "tool.exe...", "&**/bin/tool.exe", {{false, 4}});
        // A recurring action is looked up among the one-off events of its number.
        row("recurring action", "daily.exe...", "&**/bin/daily.exe", {});
        row("recurring action, one-off text", "daily.exe...", "Dentist", {{false, 3}});
    }
    void n1Targets()
    {
        QFETCH(QString, caption);
        QFETCH(QString, text);
        store::Model m = model();
        m.events << store::Event{DateSerial(2004, 1, 1), 0, "Dentist", "Work"}
                 << store::Event{DateSerial(2004, 1, 2), 0, "Meeting with the boss", "Work"}
                 << store::Event{DateSerial(2004, 5, 5), 0, "Dentist", "Work"}
                 << store::Event{DateSerial(2004, 6, 6), 0, "&**/bin/tool.exe", "Work"};
        m.recurring << recurring(store::kDaily, "", "Meeting with the boss")
                    << recurring(store::kDaily, "", "Meeting with the team")
                    << recurring(store::kDaily, "", "&**/bin/daily.exe");
        QTEST(dayview::n1Targets(caption, text, m), "expected");
    }

    void recurringActionPastTheOneOffsRaises()
    {
        store::Model m = model();
        m.recurring << recurring(store::kDaily, "", "&**/x.exe");
        QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, dayview::n1Targets("x.exe...", "&**/x.exe", m));
    }

    // The find window's search, and the lookup of the text it hands on.
    void fFind_data()
    {
        columns<QString, QStringList>("keyword", "found");
        QTest::newRow("action text with its marker") << "&**c:" << QStringList{"&**C:\\notes.txt"};
        QTest::newRow("empty keyword, empty memo left out")
            << "" << QStringList{"Lunch with Ann", "&**C:\\notes.txt", "Weekly lunch"};
    }
    void fFind()
    {
        QFETCH(QString, keyword);
        QTEST(eventlookup::fFind(lookupModel(), keyword), "found");
    }

    void modi_data()
    {
        // found: the event's number, negative when recurring, 0 for none
        columns<QString, int>("text", "found");
        QTest::newRow("one-off memo") << "Lunch with Ann" << 1;
        QTest::newRow("action as the find window shows it") << "C:\\notes.txt" << 2;
        QTest::newRow("recurring memo") << "Weekly lunch" << -1;
        QTest::newRow("other case") << "weekly lunch" << 0;
    }
    void modi()
    {
        QFETCH(QString, text);
        const auto found = eventlookup::modi(lookupModel(), text);
        QTEST(found ? found->number * (found->recurring ? -1 : 1) : 0, "found");
    }
};

QTEST_GUILESS_MAIN(TestDayView)
#include "tst_dayview.moc"
