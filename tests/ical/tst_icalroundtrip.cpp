#include "Fixtures.h"
#include "ical/IcalExport.h"
#include "ical/IcalImport.h"

#include <QProcess>
#include <QTest>

namespace
{

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

class TestIcalRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    // An independent parser reads every field back.
    void exportReadsBack()
    {
        const TestFolder folder;
        TestFolder::setData(kCategories + kEvents);
        const ical::ExportResult result = ical::exportStore(2026);
        QCOMPARE(result.written, 7);
        QCOMPARE(result.skipped, 0);
        const QString file = folder.dir.filePath("out.ics");
        writeBytes(file, result.text);
        QProcess python;
        python.start("/usr/bin/python3", {"-c", R"(
import sys, icalendar
cal = icalendar.Calendar.from_ical(open(sys.argv[1], 'rb').read())
for e in cal.walk('VEVENT'):
    alarms = [a.get('ACTION') for a in e.walk('VALARM')]
    rule = e.get('RRULE').to_ical().decode() if e.get('RRULE') else ''
    cats = e.get('CATEGORIES')
    cats = ','.join(cats.cats) if cats else ''
    print('|'.join([str(e.get('SUMMARY')), e.decoded('DTSTART').isoformat(), rule, cats,
                    str(e.get('X-ORVA-ACTION', '')), ','.join(alarms)]))
)",
                                          file});
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
            QList<QByteArray> lines = text.split('\n');
            lines.removeIf([](const QByteArray &l) { return !l.startsWith("UID:"); });
            return lines;
        };
        QCOMPARE(uids(ical::exportStore(2026).text), uids(result.text));
        QCOMPARE(uids(result.text).size(), 7);
    }

    // Exported and imported into a store with the same categories and no events, every
    // event is stored as it was.
    void roundTripKeepsTheEvents()
    {
        const TestFolder folder;
        TestFolder::setData(kCategories + kEvents);
        const QStringList before = stored();
        const ical::ReadResult read = ical::readCalendar(ical::exportStore(2026).text);
        QVERIFY(read.calendar);
        const QList<ical::Item> items = ical::plan(*read.calendar, {2026, 2027});

        TestFolder::setData(kCategories);
        QCOMPARE(ical::writeItems(items, store::loadModel(), "Home"), 7);
        QCOMPARE(stored(), before);
    }
};

QTEST_GUILESS_MAIN(TestIcalRoundTrip)
#include "tst_icalroundtrip.moc"
