#include "DataTable.h"
#include "Fixtures.h"
#include "mainwindow/Form1.h"
#include "recovery/Fault.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "store/ini.h"

#include <QTimer>

using recovery::Fault;

namespace
{

const QByteArray kBirthday = "[r1]\nType=Yearly\nDay=29\nMonth=2\nTime=00:00\nMemo=Anna's "
                             "birthday\nCat=Home\n";

QByteArray counts(int events, int recurring)
{
    return QString("[count]\nc=%1\n[rcount]\nc=%2\n").arg(events).arg(recurring).toLatin1();
}

} // namespace

class TstRecovery : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:
    void cleanup() { rt::Clock::setSource({}); }

    void faults_data()
    {
        columns<QByteArray, int, Fault>("store", "year", "fault");
        const auto row = [](const char *name, const QByteArray &store, int year, Fault fault) {
            QTest::newRow(name) << store << year << fault;
        };
        const QByteArray one = counts(1, 1) + "[1]\nDate=1/1/2026\nTime=00:00\nMemo=a\n";
        const QByteArray none = counts(0, 1);
        row("29 February, common year", one + kBirthday, 2027, Fault::NoDateThisYear);
        row("29 February, leap year", one + kBirthday, 2028, Fault::None);
        row("a time that is no time", one + "[r1]\nType=Daily\nTime=25:00\nMemo=m\n", 2027,
            Fault::TimeNotTime);
        row("a monthly day that is no number",
            one + "[r1]\nType=Monthly\nDay=first\nTime=00:00\nMemo=m\n", 2027, Fault::DayNotNumber);
        row("weekly, more than the one-off events",
            none + "[r1]\nType=Weekly\nDay=Monday\nTime=00:00\nMemo=m\n", 2027,
            Fault::MissingOneOff);
        row("daily needs no one-off event", none + "[r1]\nType=Daily\nTime=9:00 AM\nMemo=m\n", 2027,
            Fault::None);
    }
    void faults()
    {
        QFETCH(QByteArray, store);
        QFETCH(int, year);
        TestFolder::setData(store);
        QTEST(recovery::faultOf(store::loadModel(), 1, year), "fault");
    }

    // A tick that ends the program leaves the event behind; the next start knows it again.
    void tickErrorIsRecorded()
    {
        TestFolder::setData(counts(1, 1) + "[1]\nDate=1/1/2026\nTime=00:00\nMemo=a\n" + kBirthday);
        rt::Clock::setSource([] { return rt::CDate("3/3/2027 12:00 PM"); });
        Form1 form;
        form.Form_Load();
        recovery::recordErrors(form.reminders(), form.model());
        rt::MsgBoxRecorder boxes;
        auto *timer1 = form.findChild<QTimer *>("Timer1");
        QTimerEvent tick(timer1->timerId());
        QCOMPARE(exitCodeOf([&] { QCoreApplication::sendEvent(timer1, &tick); }),
                 rt::kRuntimeErrorExitCode);
        rt::setFatalErrorRecorder({});
        QCOMPARE(shownBoxes(boxes), "Run-time error '13':\n\nType mismatch|16");

        const auto record = recovery::readRecord().value_or(recovery::CrashRecord{});
        QCOMPARE(record.error, 13);
        QCOMPARE(record.number, 1);
        QCOMPARE(record.event.memo, QString("Anna's birthday"));
        QVERIFY(recovery::wouldEndAgain(record, store::loadModel(), 2027));
        QCOMPARE(recovery::explanation(record, Fault::NoDateThisYear, 1, 2027),
                 QString("The calendar closed because the yearly event 'Anna's birthday' on 29 "
                         "February has no date in 2027."));
        WriteINI(files::dataIni(), "r1", "Memo", "Anna");
        QVERIFY(!recovery::wouldEndAgain(record, store::loadModel(), 2027));

        writeBytes(recovery::recordPath(), "{\"error\": 13, \"recur");
        QVERIFY(!recovery::readRecord());
    }
};

QTEST_MAIN(TstRecovery)

#include "tst_recovery.moc"
