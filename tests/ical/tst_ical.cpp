#include "Fixtures.h"
#include "ical/IcalExport.h"
#include "ical/IcalImport.h"
#include "runtime/DateText.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace ical;

namespace
{

QByteArray calendar(const QByteArray &events)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\n" + events +
           "END:VCALENDAR\r\n";
}

QByteArray vevent(const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:x@test\r\nDTSTAMP:20260101T000000Z\r\n" + lines + "END:VEVENT\r\n";
}

// "One-off 3/14/2026 9:30 AM Dentist [Health]", "Not imported: why", one a line.
QString described(const QList<Item> &items)
{
    QStringList lines;
    for (const Item &item : items) {
        if (item.kind == Kind::NotImported) {
            lines << QStringLiteral("Not imported: ") + item.note;
            continue;
        }
        lines << QStringLiteral("%1 %2 %3 %4 [%5]")
                     .arg(kindText(item.kind), whenText(item), item.time, item.memo, item.category);
    }
    return lines.join('\n');
}

const QByteArray kCategories = "[Categories]\nc=4\n1=More\n1c=255\n2=Work\n2c=65280\n3=Home\n"
                               "3c=16711680\n4=Kids, school\n4c=4210752\n";

// One event of every kind, with the commas and quotes that the file format escapes.
const QByteArray kEvents =
    "[count]\nc=3\n[1]\nDate=3/14/2026\nTime=9:30 AM\nMemo=Dentist\nCat=Home\n"
    "[2]\nDate=7/4/2026\nTime=00:00\nMemo=Parade; with \"quotes\", commas\nCat=Kids, school\n"
    "[3]\nDate=3/14/2026\nTime=6:00 PM\nMemo=&**C:\\Tools\\backup, nightly.exe\nCat=Work\n"
    "[rcount]\nc=4\n[r1]\nType=Daily\nTime=8:00 AM\nMemo=Pills\nCat=Home\n"
    "[r2]\nType=Weekly\nDay=Monday\nTime=00:00\nMemo=Gym\nCat=Work\n"
    "[r3]\nType=Monthly\nDay=31\nTime=12:00 PM\nMemo=Rent\nCat=Home\n"
    "[r4]\nType=Yearly\nDay=14\nMonth=3\nTime=00:00\nMemo=Birthday\nCat=Kids, school\n";

// Every event's stored texts, sorted: the import numbers them in an order of its own.
QStringList stored()
{
    QStringList texts;
    for (int n = 1; n <= store::readCount(store::kCountSection); ++n)
        texts << eventText(n);
    for (int n = 1; n <= store::readCount(store::kRecurringCountSection); ++n)
        texts << recurringText(n);
    texts.sort();
    return texts;
}

} // namespace

class TestIcal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Times with a zone come in local time: Berlin's here.
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }

    // Lines end in "\n" here. The round trip checks the forms the export writes.
    void mapping_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("note");
        const auto row = [](const char *name, const QByteArray &lines, const QString &expected,
                            const char *note = "") {
            QTest::newRow(name) << vevent(crlf(lines + "\n")) << expected << QString(note);
        };
        const char *noDate = "Not imported: it has no valid start date";
        row("floating time", "DTSTART:20260314T093000\nSUMMARY:Dentist\nCATEGORIES:Health,Teeth",
            "One-off 3/14/2026 9:30 AM Dentist [Health]");
        row("all day, three days",
            "DTSTART;VALUE=DATE:20260704\nDTEND;VALUE=DATE:20260707\nSUMMARY:Trip",
            "One-off 7/4/2026 00:00 Trip []", "lasts 3 days");
        row("UTC", "DTSTART:20260314T230000Z\nSUMMARY:Late", "One-off 3/15/2026 00:00 Late []",
            "midnight");
        row("named zone", "DTSTART;TZID=America/New_York:20260314T090000\nSUMMARY:Call",
            "One-off 3/14/2026 2:00 PM Call []");
        row("unknown zone", "DTSTART;TZID=Mars/Olympus:20260314T090000\nSUMMARY:Call",
            "Not imported: its time zone \"Mars/Olympus\" is unknown");
        row("invalid date", "DTSTART:20260230T100000\nSUMMARY:Bad", noDate);
        row("no start", "SUMMARY:Bad", noDate);
        row("weekly", "DTSTART;VALUE=DATE:20260107\nRRULE:FREQ=WEEKLY\nSUMMARY:Bins",
            "Weekly every Wednesday 00:00 Bins []");
        row("monthly", "DTSTART;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY\nSUMMARY:Rent",
            "Monthly day 31 of every month 00:00 Rent []");
        row("29 February", "DTSTART;VALUE=DATE:20240229\nRRULE:FREQ=YEARLY\nSUMMARY:Leap",
            "One-off 2/29/2028 00:00 Leap []", "29 February");
        row("count", "DTSTART:20260105T090000\nRRULE:FREQ=WEEKLY;COUNT=2\nSUMMARY:Course",
            "One-off 1/5/2026 9:00 AM Course (1/5/2026) []\n"
            "One-off 1/12/2026 9:00 AM Course (1/12/2026) []",
            "COUNT");
        row("exdate",
            "DTSTART;VALUE=DATE:20271229\nRRULE:FREQ=DAILY;COUNT=3\n"
            "EXDATE;VALUE=DATE:20271230\nSUMMARY:Off",
            "One-off 12/29/2027 00:00 Off (12/29/2027) []\n"
            "One-off 12/31/2027 00:00 Off (12/31/2027) []",
            "EXDATE");
        row("nth weekday, one in range",
            "DTSTART;VALUE=DATE:20280514\nRRULE:FREQ=YEARLY;BYMONTH=5;BYDAY=2SU\n"
            "SUMMARY:Mother's Day",
            "One-off 5/14/2028 00:00 Mother's Day []", "has no equal");
        row("no date in range",
            "DTSTART;VALUE=DATE:20200101\nRRULE:FREQ=DAILY;COUNT=3\nSUMMARY:Old",
            "Not imported: it ends after 3 times (COUNT); it has no date from 2026 to 2028");
        row("hourly", "DTSTART:20260101T080000\nRRULE:FREQ=HOURLY\nSUMMARY:H",
            "Not imported: it repeats within a day, which the calendar cannot");
        row("line breaks", "DTSTART;VALUE=DATE:20260101\nSUMMARY:Two\\nlines",
            "One-off 1/1/2026 00:00 Two lines []", "line breaks");
        row("long memo", "DTSTART;VALUE=DATE:20260101\nSUMMARY:" + QByteArray(300, 'm'),
            "One-off 1/1/2026 00:00 " + QString(254, 'm') + " []", "cut to 254");
        row("action",
            "DTSTART:20260101T120000\nSUMMARY:run.exe\nX-ORVA-ACTION:C:\\\\Tools\\\\run.exe",
            "One-off 1/1/2026 12:00 PM &**C:\\Tools\\run.exe []");
    }

    void mapping()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QString, expected);
        QFETCH(QString, note);
        const TestFolder folder; // the en_US locale
        const ReadResult read = readCalendar(calendar(lines));
        QVERIFY2(read.calendar, qPrintable(read.error));
        const QList<Item> items = plan(*read.calendar, {2026, 2028});
        QCOMPARE(described(items), expected);
        QVERIFY2(items.first().note.contains(note), qPrintable(items.first().note));
    }

    void badInput_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");

        const QByteArray good = calendar(vevent("DTSTART:20260101T080000\r\nSUMMARY:A\r\n"));
        QTest::newRow("empty") << QByteArray("\r\n \r\n") << "The file is empty.";
        QTest::newRow("not iCalendar")
            << QByteArray("[count]\r\nc=1\r\n") << "The file is not an iCalendar file.";
        QTest::newRow("truncated") << good.left(good.size() - 20)
                                   << "The file is incomplete: it ends before its calendar does.";
        QTest::newRow("50 MB")
            << calendar(QByteArray(50 << 20, 'x'))
            << "The file is larger than 8 MB, too large for a calendar to import.";
        QTest::newRow("not UTF-8")
            << calendar(vevent("DTSTART:20260101T080000\r\nSUMMARY:Caf\xe9\r\n"))
            << "The file is not UTF-8 text, which iCalendar files are.";
        QTest::newRow("no events")
            << calendar("BEGIN:VTODO\r\nSUMMARY:x\r\nEND:VTODO\r\n") << "The file holds no events.";
    }

    void badInput()
    {
        QFETCH(QByteArray, bytes);
        const ReadResult read = readCalendar(bytes);
        QVERIFY(!read.calendar);
        QTEST(read.error, "error");
    }

    // A rule that never gives a date in the range ends within the work's limit.
    void endlessRuleStops()
    {
        QByteArray events;
        for (int i = 0; i < 50; ++i)
            events += vevent("DTSTART;VALUE=DATE:19000101\r\nRRULE:FREQ=DAILY;COUNT=100000000\r\n"
                             "SUMMARY:E\r\n");
        const ReadResult read = readCalendar(calendar(events));
        QVERIFY(read.calendar);
        const QList<Item> items = plan(*read.calendar, {2026, 2027});
        QVERIFY(items.last().note.contains("too long"));
    }

    // Duplicates wait until renamed; the rest go as the add dialog writes, new categories first.
    void writing()
    {
        const TestFolder folder;
        TestFolder::setData(
            "[Categories]\nc=2\n1=More\n1c=255\n2=Health\n2c=65280\n"
            "[count]\nc=1\n[1]\nDate=1/1/2026\nTime=00:00\nMemo=Dentist\nCat=Health\n");
        const ReadResult read = readCalendar(calendar(
            vevent("DTSTART:20260314T093000\r\nSUMMARY:Dentist\r\nCATEGORIES:health\r\n") +
            vevent("DTSTART;VALUE=DATE:20260101\r\nRRULE:FREQ=YEARLY\r\nSUMMARY:New Year\r\n"
                   "CATEGORIES:Holiday\r\n") +
            vevent("DTSTART:20260105T090000\r\nRRULE:FREQ=WEEKLY;COUNT=2\r\nSUMMARY:Gym\r\n")));
        QVERIFY(read.calendar);
        QList<Item> items = plan(*read.calendar, {2026, 2027});
        const store::Model model = store::loadModel();
        QCOMPARE(problems(items, model),
                 QStringList({"memo already exists: rename it to import it", "", "", ""}));

        QCOMPARE(writeItems(items, model, "Health"), 3);
        items[0].memo = "Dentist again";
        items[1].chosen = items[2].chosen = items[3].chosen = false;
        QCOMPARE(writeItems(items, store::loadModel(), "Health"), 1);
        QCOMPARE(QString::fromLatin1(TestFolder::data()),
                 QString::fromLatin1(crlf(
                     "[Categories]\nc=3\n1=More\n1c=255\n2=Health\n2c=65280\n3=Holiday\n3c=0\n"
                     "[count]\nc=4\n[1]\nDate=1/1/2026\nTime=00:00\nMemo=Dentist\nCat=Health\n"
                     "[rcount]\nc=1\n[r1]\nType=Yearly\nDay=1\nMonth=1\nTime=00:00\nMemo=New Year\n"
                     "Cat=Holiday\n"
                     "[2]\nDate=1/5/2026\nTime=9:00 AM\nMemo=Gym (1/5/2026)\nCat=Health\n"
                     "[3]\nDate=1/12/2026\nTime=9:00 AM\nMemo=Gym (1/12/2026)\nCat=Health\n"
                     "[4]\nDate=3/14/2026\nTime=9:30 AM\nMemo=Dentist again\nCat=Health\n")));
    }

    // An independent parser reads every field back.
    void exportReadsBack()
    {
        const TestFolder folder;
        TestFolder::setData(kCategories + kEvents);
        const ExportResult result = exportStore(2026);
        QCOMPARE(result.written, 7);
        QCOMPARE(result.skipped, 0);
        QProcess python;
        python.start("/usr/bin/python3", {"-c", R"(
import sys, icalendar
cal = icalendar.Calendar.from_ical(sys.stdin.buffer.read())
for e in cal.walk('VEVENT'):
    alarms = [a.get('ACTION') for a in e.walk('VALARM')]
    rule = e.get('RRULE').to_ical().decode() if e.get('RRULE') else ''
    cats = e.get('CATEGORIES')
    cats = ','.join(cats.cats) if cats else ''
    print('|'.join([str(e.get('SUMMARY')), e.decoded('DTSTART').isoformat(), rule, cats,
                    str(e.get('X-ORVA-ACTION', '')), ','.join(alarms)]))
)"});
        python.write(result.text);
        python.closeWriteChannel();
        QVERIFY(python.waitForFinished(60000));
        QCOMPARE(python.readAllStandardError(), QByteArray());
        QCOMPARE(
            QString::fromUtf8(python.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts),
            QStringList({
                "Dentist|2026-03-14T09:30:00||Home||DISPLAY",
                "Parade; with \"quotes\", commas|2026-07-04||Kids, school||DISPLAY",
                "backup, nightly.exe|2026-03-14T18:00:00||Work|C:\\Tools\\backup, nightly.exe|",
                "Pills|2026-01-01T08:00:00|FREQ=DAILY|Home||DISPLAY",
                "Gym|2026-01-05|FREQ=WEEKLY;BYDAY=MO|Work||DISPLAY",
                "Rent|2026-01-31T12:00:00|FREQ=MONTHLY;BYMONTHDAY=31|Home||DISPLAY",
                "Birthday|2026-03-14|FREQ=YEARLY;BYMONTHDAY=14;BYMONTH=3|Kids, school||DISPLAY",
            }));
        // The same event keeps its UID from one export to the next.
        const auto uids = [](const QByteArray &text) {
            return QString(text).split('\n').filter(QRegularExpression("^UID:"));
        };
        QCOMPARE(uids(exportStore(2026).text), uids(result.text));
        QCOMPARE(uids(result.text).size(), 7);
    }

    // Exported, then imported into the same categories without events: every event comes back.
    void roundTripKeepsTheEvents()
    {
        const TestFolder folder;
        TestFolder::setData(kCategories + kEvents);
        const QStringList before = stored();
        const ReadResult read = readCalendar(exportStore(2026).text);
        QVERIFY(read.calendar);
        const QList<Item> items = plan(*read.calendar, {2026, 2027});

        TestFolder::setData(kCategories);
        QCOMPARE(writeItems(items, store::loadModel(), "Home"), 7);
        QCOMPARE(stored(), before);
    }
};

QTEST_GUILESS_MAIN(TestIcal)
#include "tst_ical.moc"
