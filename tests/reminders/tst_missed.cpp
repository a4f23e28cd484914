#include "DataTable.h"
#include "Fixtures.h"
#include "reminders/LastSeenFile.h"
#include "reminders/MissedPass.h"
#include "reminders/frmMissed.h"
#include "runtime/DateText.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

namespace
{

// Sunday 1 March 2026 to Tuesday 3 March, and one event well before.
const QByteArray kStore = "[Categories]\nc=2\n1=More\n1c=100\n2=Health\n2c=200\n"
                          "[count]\nc=5\n"
                          "[1]\nDate=3/3/2026\nTime=9:00 AM\nMemo=Dentist\nCat=Health\n"
                          "[2]\nDate=3/2/2026\nTime=00:00\nMemo=Holiday\nCat=Health\n"
                          "[3]\nDate=3/3/2026\nTime=00:00\nMemo=Today\nCat=Health\n"
                          "[4]\nDate=3/1/2026\nTime=10:00 AM\nMemo=&**/srv/report.pdf\nCat=More\n"
                          "[5]\nDate=2/20/2026\nTime=9:00 AM\nMemo=Old\nCat=Health\n"
                          "[rcount]\nc=5\n"
                          "[r1]\nType=Daily\nTime=8:30 AM\nMemo=Stretch\nCat=Health\n"
                          "[r2]\nType=Daily\nTime=00:00\nMemo=Pills\nCat=Health\n"
                          "[r3]\nType=Weekly\nDay=Sunday\nTime=7:00 PM\nMemo=Call\nCat=Health\n"
                          "[r4]\nType=Monthly\nDay=25\nTime=10:00 AM\nMemo=Rent\nCat=Health\n"
                          "[r5]\nType=Yearly\nDay=29\nMonth=2\nTime=00:00\nMemo=Leap\nCat=Health\n";

} // namespace

class TstMissed : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:
    // Ticks after a state file ("-": none); each lists "text m/d h:mm" found, newest first.
    void pass_data()
    {
        // ticks: "; " between ticks, and between what they found
        columns<QByteArray, QString, QString>("stateFile", "ticks", "found");
        const auto row = [](const char *name, const QByteArray &state, const char *ticks,
                            const char *found) {
            QTest::newRow(name) << state << QString(ticks) << QString(found);
        };
        row("first start, no file", "-", "3/3/2026 9:30", "");
        row("a clock jump of 10 minutes between ticks", "-",
            "3/3/2026 8:55; 3/3/2026 8:59:59; 3/3/2026 9:05", "; ; Dentist 3/3 9:00");
        row("jumps of a minute or back in time miss nothing", "-",
            "3/3/2026 8:59:30; 3/3/2026 9:00:50; 3/3/2026 8:00; 3/3/2026 8:01", "; ; ; ");
        row("a state file from 3 days ago", "2026-02-28 12:00\n", "3/3/2026 9:30",
            "Dentist 3/3 9:00, Stretch 3/3 8:30, Holiday 3/2 0:00, Call 3/1 19:00, "
            "/srv/report.pdf 3/1 10:00");
        row("a 30-day gap cut to 7", "2026-02-01 00:00\n", "3/2/2026 8:00",
            "Call 3/1 19:00, /srv/report.pdf 3/1 10:00, Stretch 3/1 8:30, Rent 2/25 10:00");
        row("the minute seen last and the one now are not missed", "2026-03-03 08:30",
            "3/3/2026 9:00:10", "");
        for (const char *bad :
             {"garbage\x01\xff", "", "2026-02-30 09:00", "2026-03-03 9:00", "2027-01-01 00:00\n"})
            QTest::addRow("state file \"%s\"", bad)
                << QByteArray(bad) << "3/3/2026 9:30" << QString();
    }
    void pass()
    {
        QFETCH(QByteArray, stateFile);
        QFETCH(QString, ticks);
        TestFolder::setData(kStore);
        const QString path = files::inProgramFolder(reminders::kLastSeenFile);
        QFile::remove(path);
        if (stateFile != "-")
            writeBytes(path, stateFile);
        const store::Model model = store::loadModel();
        reminders::MissedPass pass;
        QStringList found, listed;
        connect(&pass, &reminders::MissedPass::missed, this, [&](const auto &missed) {
            for (const reminders::MissedReminder &m : missed)
                listed << QString::asprintf("%s %d/%d %d:%02d", qPrintable(m.text),
                                            rt::Month(m.due), rt::Day(m.due), rt::Hour(m.due),
                                            rt::Minute(m.due));
        });
        for (const QString &tick : ticks.split("; ")) {
            pass.tick(model, rt::CDate(tick));
            found << listed.join(", ");
            listed.clear();
            QCOMPARE(reminders::minuteOf(reminders::readLastSeen().value_or(0)),
                     reminders::minuteOf(rt::CDate(tick)));
        }
        // Whatever was there before, the file is rewritten whole.
        if (ticks.endsWith("3/3/2026 9:30"))
            QCOMPARE(readBytes(path), QByteArray("2026-03-03 09:30\n"));
        QTEST(found.join("; "), "found");
    }

    // Newest first, 20 rows and a count of the rest; a later find of an event replaces it.
    void window()
    {
        QList<reminders::MissedReminder> found;
        for (int n = 25; n >= 1; --n) // newest first, and the newest an action
            found.push_back({rt::Date(46000 + n), false, n, "Health", 200,
                             n == 25 ? "/srv/a b.pdf" : QStringLiteral("Memo %1").arg(n), n == 25,
                             "when"});
        frmMissed window;
        QSignalSpy opened(&window, &frmMissed::openRequested);
        window.add(found);
        const auto rows = window.findChildren<QLabel *>(QRegularExpression("^lblMissed_"));
        QCOMPARE(rows.size(), frmMissed::kShown);
        QVERIFY(window.findChild<QLabel *>("lblMissed_0")->text().startsWith("<b>a b.pdf</b>"));
        QCOMPARE(window.findChild<QLabel *>("lblMore")->text(), QString("... and 5 more."));
        QCOMPARE(window.findChildren<QPushButton *>(QRegularExpression("^cmdOpen_")).size(), 1);
        window.findChild<QPushButton *>("cmdOpen_0")->click();
        QCOMPARE(opened.size(), 1);
        QCOMPARE(opened.first().first().toString(), QString("/srv/a b.pdf"));

        reminders::MissedReminder again = found.last();
        again.due = 47000;
        window.add({again});
        QCOMPARE(window.listed().size(), 25);
        QCOMPARE(window.listed().first().number, 1);
        window.OKButton_Click();
        window.add({again});
        QCOMPARE(window.listed().size(), 1);
    }
};

QTEST_MAIN(TstMissed)

#include "tst_missed.moc"
