#include "DataTable.h"
#include "Fixtures.h"
#include "dialogs/frmalarm.h"
#include "mainwindow/AlarmOutput.h"
#include "mainwindow/Form1.h"
#include "mainwindow/ReminderCheck.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <functional>

namespace
{

QByteArray counts(int events, int recurring)
{
    return "[count]\nc=" + QByteArray::number(events) +
           "\n[rcount]\nc=" + QByteArray::number(recurring) + "\n";
}

QByteArray oneOff(int n, const char *date, const char *time, const QByteArray &memo,
                  const char *cat = "Work")
{
    return "[" + QByteArray::number(n) + "]\nDate=" + date + "\nTime=" + time + "\nMemo=" + memo +
           "\nCat=" + cat + "\n";
}

QByteArray rec(const char *type, const char *day, const char *month, const char *time,
               const char *memo, const char *cat = "Home")
{
    return QByteArray("[r1]\nType=") + type + "\nDay=" + day + "\nMonth=" + month +
           "\nTime=" + time + "\nMemo=" + memo + "\nCat=" + cat + "\n";
}

// Categories, with "Work" twice: the last one's colour counts.
void writeStore(const QByteArray &text)
{
    TestFolder::setData("[Categories]\nc=4\n1=More\n1c=100\n2=Work\n2c=200\n3=Home\n3c=300\n"
                        "4=Work\n4c=400\n" +
                        text);
}

// "2026-03-03 9:00:00.02", or "9:00:00.02" on the date before; "A~B": every 40 ms.
QList<rt::Date> instants(const QString &text, rt::Date &date)
{
    const auto at = [&date](const QString &t) {
        if (t.contains('-'))
            date = rt::CDate(t.section(' ', 0, 0));
        const QString time = t.section(' ', -1);
        return date + rt::CDate(time.section('.', 0, 0)) +
               ("0." + time.section('.', 1)).toDouble() / 86400;
    };
    const rt::Date from = at(text.section('~', 0, 0)), to = at(text.section('~', -1));
    QList<rt::Date> list;
    for (qint64 i = 0; from + i * 40 / 864e5 <= to + 1e-9; ++i)
        list << from + i * 40 / 864e5;
    return list;
}

struct Recorder : ReminderOutput {
    QStringList log;
    bool holdModal = false;      // otherwise each modal alarm is closed at once
    std::function<void()> close; // the open modal alarm's, while held

    void note(const char *how, const Alarm &a)
    {
        log << QStringList{how, a.category, QString::number(a.colour), a.memo, a.when}.join('|');
    }
    void showOneOffAlarm(const Alarm &a) override { note("modeless", a); }
    void showRecurringAlarm(const Alarm &a, std::function<void()> closed) override
    {
        note("modal", a);
        if (holdModal)
            close = std::move(closed);
        else
            closed();
    }
    void launchAction(const QString &path) override { log << "open|" + path; }
};

} // namespace

class TstReminders : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:

    // A tick's mark: 'x' when something fired, '!' on a run-time error, '.' otherwise.
    void timeline_data()
    {
        // ticks: a time alone is on the date before it
        columns<QByteArray, QString, QString, QString>("store", "ticks", "marks", "last");

        const auto row = [](const char *name, const QByteArray &store, const char *ticks,
                            const char *marks, const char *last) {
            QTest::newRow(name) << store << QString(ticks) << QString(marks) << QString(last);
        };
        const QByteArray plain = counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain");
        row("timed one-off: first tick of its minute, never again that day",
            counts(1, 0) + oneOff(1, "3/3/2026", "9:00 AM", "Dentist"),
            "2026-03-03 8:59:59, 9:00:00, 9:00:01, 9:00:59, 9:01, 23:00", ".x....",
            "modeless|Work|400|Dentist|3/3/2026  9:00:00 AM");
        row("all-day one-off: at the first tick, then kept all day",
            counts(1, 0) + oneOff(1, "3/3/2026", "00:00", "Holiday", "Home"),
            "2026-03-03 15:15, 23:59, 2026-03-04 0:00", "x..",
            "modeless|Home|300|Holiday|3/3/2026  12:00:00 AM");
        row("all-day daily: once per run, in an unknown category on black",
            counts(0, 1) + rec("Daily", "", "", "00:00", "Pills", "Gone"),
            "2026-03-03 8:00, 2026-03-04 8:00", "x.", "modal|Gone|0|Pills|Daily");
        row("timed daily: once a day in its minute",
            counts(0, 1) + rec("Daily", "", "", "9:00 AM", "Stretch"),
            "2026-03-03 9:00, 9:00:30, 9:01, 2026-03-04 9:00:10", "x..x",
            "modal|Home|300|Stretch|9:00 AM  Daily");
        row("weekly: by the weekday's name", plain + rec("Weekly", "Tuesday", "", "00:00", "Bins"),
            "2026-03-02 12:00, 2026-03-03 12:00, 18:00, 2026-03-04 12:00, 2026-03-10 12:00",
            ".x..x", "modal|Home|300|Bins|Tuesday  Weekly");
        row("monthly: the day compared as a number",
            plain + rec("Monthly", "03", "", "9:00 AM", "Rent"),
            "2026-03-03 9:00, 2026-03-04 9:00, 2026-04-03 9:00:20", "x.x",
            "modal|Home|300|Rent|03  9:00 AM  Monthly");
        row("yearly: month, day and the current year, shown day first",
            plain + rec("Yearly", "10", "3", "7:30 PM", "Party"),
            "2026-03-10 19:30, 2026-03-11 19:30, 2027-03-10 19:30", "x.x",
            "modal|Home|300|Party|10/3  7:30 PM  Yearly");
        row("a time that is no time: an error once its rule matches",
            plain + rec("Weekly", "Wednesday", "", "noon", "Lunch"),
            "2026-03-03 12:00, 2026-03-04 12:00", ".!", "error 13");
        row("cross-reference: weekly opens the one-off event's path",
            counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "&**/srv/report.pdf") +
                rec("Weekly", "Tuesday", "", "00:00", "Standup"),
            "2026-03-03 12:00", "x", "open|/srv/report.pdf");
        row("cross-reference: monthly shows its own action text as a memo",
            plain + rec("Monthly", "3", "", "00:00", "&**/srv/own.sh"), "2026-03-03 12:00", "x",
            "modal|Home|300|&**/srv/own.sh|3  Monthly");
        row("cross-reference: daily opens its own path",
            counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "&**/srv/other") +
                rec("Daily", "", "", "00:00", "&**/srv/daily"),
            "2026-03-03 12:00", "x", "open|/srv/daily");
        row("cross-reference: no one-off event of that number, once the rule matches",
            counts(0, 1) + rec("Yearly", "3", "3", "00:00", "Bins"),
            "2026-03-02 12:00, 2026-03-03 12:00", ".!", "error 9");
    }
    void timeline()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, ticks);
        writeStore(store);
        const store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        QString marks;
        rt::Date date = 0;
        for (const QString &tick : ticks.split(", ")) {
            const qsizetype before = out.log.size();
            try {
                check.tick(instants(tick, date).first());
                marks += out.log.size() > before ? 'x' : '.';
            } catch (const rt::RuntimeError &error) {
                marks += '!';
                out.log << QStringLiteral("error %1").arg(error.number());
            }
        }
        QTEST(marks, "marks");
        QTEST(out.log.value(out.log.size() - 1), "last");
    }

    // Walking only as a minute begins or after a change acts as walking at every tick.
    void walksOnlyWhenSomethingChanged_data()
    {
        columns<QByteArray, QString, int>("store", "steps", "walks");

        const QByteArray day = counts(2, 2) + oneOff(1, "3/3/2026", "9:00 AM", "Dentist") +
                               oneOff(2, "3/3/2026", "00:00", "Holiday") +
                               rec("Daily", "", "", "9:00 AM", "Stretch") +
                               "[r2]\nType=Weekly\nDay=Tuesday\nTime=9:01 AM\nMemo=Bins\n";
        const auto row = [](const char *name, const QByteArray &store, int walks,
                            const char *steps) {
            QTest::newRow(name) << store << QString(steps) << walks;
        };
        const QByteArray plain = counts(1, 2) + oneOff(1, "1/1/2026", "00:00", "plain");
        row("a walk as each minute begins", day, 4,
            "2026-03-03 8:59:58.02~9:00:01, 9:00:58.02~9:01:01");
        row("a reload and cleared flags within the minute", day, 3,
            "2026-03-03 9:00:00.02~9:00:00.5, reload, 9:00:00.54~9:00:01, clear, "
            "9:00:01.02~9:00:02");
        row("alarm windows closed within the minute",
            plain + rec("Daily", "", "", "9:00 AM", "Stretch") +
                "[r2]\nType=Daily\nTime=9:00 AM\nMemo=Water\n",
            3,
            "2026-03-03 9:00:00.02~9:00:01, close, 9:00:01.02~9:00:02, close, 9:00:02.02~9:00:03");
        row("the clock set back, forward, to the next day and back", day, 5,
            "2026-03-03 9:00:00.02~9:00:00.5, 8:59:59.9, 9:00:00.02, 9:00:10, "
            "2026-03-04 9:00:00.02~9:00:00.5, 2026-03-03 9:00:30");
        row("new day", day, 2, "2026-03-03 23:59:58.02~23:59:59.98, 2026-03-04 0:00:00.02~0:00:01");
        row("an error walks again at every tick",
            counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain") +
                rec("Yearly", "29", "2", "00:00", "Leap"),
            5, "2026-03-03 12:00:00.02~12:00:00.2");
    }
    void walksOnlyWhenSomethingChanged()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, steps);
        writeStore(store);
        const store::Model model = store::loadModel();
        Recorder out, everyOut;
        out.holdModal = everyOut.holdModal = true;
        ReminderCheck check(out), every(everyOut);
        check.setModel(model);
        every.setModel(model);
        const auto errorOf = [](ReminderCheck &c, rt::Date now) {
            try {
                c.tick(now);
            } catch (const rt::RuntimeError &e) {
                return e.description();
            }
            return QString();
        };
        const auto tick = [&](rt::Date now) {
            const QString error = errorOf(check, now);
            every.setModel(model);
            QVERIFY2(error == errorOf(every, now) && out.log == everyOut.log &&
                         check.eventFired() == every.eventFired() &&
                         check.recurringFired() == every.recurringFired(),
                     qPrintable(QString::number(now, 'f', 9)));
        };
        rt::Date date = 0;
        for (const QString &step : steps.split(", ")) {
            if (step == "reload") {
                check.setModel(model);
            } else if (step == "clear") {
                check.clearFlags();
                every.clearFlags();
            } else if (step == "close") {
                std::exchange(out.close, {})();
                std::exchange(everyOut.close, {})();
            } else {
                for (const rt::Date now : instants(step, date)) {
                    tick(now);
                    if (QTest::currentTestFailed())
                        return;
                }
            }
        }
        QVERIFY(!out.log.isEmpty() || steps.contains("12:00"));
        QTEST(int(check.fullChecks()), "walks");
    }

    // Two memos due in one tick: the shared alarm window shows the second.
    void alarmWindowOnTimer1()
    {
        rt::Clock::setSource([] { return rt::CDate("2026-03-03 9:00:05"); });
        writeStore(counts(2, 0) + oneOff(1, "3/3/2026", "9:00 AM", "Dentist") +
                   oneOff(2, "3/3/2026", "9:00 AM", "Pharmacy", "Home"));
        Form1 form;
        form.Form_Load();
        auto *timer1 = form.findChild<QTimer *>("Timer1");
        QTimerEvent tick(timer1->timerId());
        QCoreApplication::sendEvent(timer1, &tick);
        frmalarm *alarm = form.alarmWindow();
        QVERIFY(alarm->isVisible() && !alarm->isModal());
        QCOMPARE(alarm->txtMemo()->toPlainText(), QString("Pharmacy"));
        QCOMPARE(alarm->txttitle()->text(), QString("3/3/2026  9:00:00 AM"));
        // One chime per memo shown, none on reactivation; with no alarm.wav, no sound.
        QCOMPARE(alarm->chimes(), 2);
        QEvent activate(QEvent::WindowActivate);
        QCoreApplication::sendEvent(alarm, &activate);
        QCOMPARE(alarm->chimes(), 2);
        QVERIFY(!alarm->sound());
        rt::Clock::setSource({});
    }
};

QTEST_MAIN(TstReminders)

#include "tst_reminders.moc"
