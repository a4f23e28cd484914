#include "dialogs/frmalarm.h"
#include "mainwindow/ActionLauncher.h"
#include "mainwindow/AlarmOutput.h"
#include "mainwindow/Form1.h"
#include "mainwindow/ReminderCheck.h"
#include "runtime/Application.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "runtime/Locale.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "store/Files.h"

#include <QDesktopServices>
#include <QFile>
#include <QFontInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

namespace
{

struct Ended {
    int exitCode;
};

const QByteArray kCategories = "[Categories]\r\nc=4\r\n1=More\r\n1c=100\r\n2=Work\r\n2c=200\r\n"
                               "3=Home\r\n3c=300\r\n4=Work\r\n4c=400\r\n";

QByteArray counts(int events, int recurring)
{
    return "[count]\r\nc=" + QByteArray::number(events) +
           "\r\n[rcount]\r\nc=" + QByteArray::number(recurring) + "\r\n";
}

QByteArray oneOff(int n, const char *date, const char *time, const QByteArray &memo,
                  const char *cat = "Work")
{
    return "[" + QByteArray::number(n) + "]\r\nDate=" + date + "\r\nTime=" + time +
           "\r\nMemo=" + memo + "\r\nCat=" + cat + "\r\n";
}

QByteArray rec(int n, const char *type, const char *day, const char *month, const char *time,
               const char *memo, const char *cat = "Home")
{
    return "[r" + QByteArray::number(n) + "]\r\nType=" + type + "\r\nDay=" + day +
           "\r\nMonth=" + month + "\r\nTime=" + time + "\r\nMemo=" + memo + "\r\nCat=" + cat +
           "\r\n";
}

void writeStore(const QByteArray &bytes)
{
    QFile file(files::dataIni());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(kCategories + bytes);
}

rt::Date at(const QString &text)
{
    return rt::CDate(text);
}

// Notes every alarm and launch as one line.
struct Recorder : ReminderOutput {
    QStringList log;
    std::function<void()> whileModal;

    static QString line(const char *how, const Alarm &a)
    {
        return QStringLiteral("%1|%2|%3|%4|%5")
            .arg(how, a.category)
            .arg(a.colour)
            .arg(a.memo, a.when);
    }
    void showOneOffAlarm(const Alarm &a) override { log << line("modeless", a); }
    void showRecurringAlarm(const Alarm &a) override
    {
        log << line("modal", a);
        if (whileModal)
            whileModal();
    }
    void launchAction(const QString &path) override { log << "open|" + path; }
};

class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl &url) { opened << url; }
};

} // namespace

class TstReminders : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;

private slots:
    void init()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
    }

    // Each tick is marked 'x' when something fired in it.
    void timeline_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QStringList>("ticks");
        QTest::addColumn<QString>("fired");
        QTest::addColumn<QString>("last");

        const QByteArray plainOneOff = oneOff(1, "1/1/2026", "00:00", "plain");
        QTest::newRow("timed one-off: first tick of its minute, never again that day")
            << counts(1, 0) + oneOff(1, "3/3/2026", "9:00 AM", "Dentist") << "en_US"
            << QStringList{"2026-03-03 8:59:59", "2026-03-03 9:00:00", "2026-03-03 9:00:01",
                           "2026-03-03 9:00:59", "2026-03-03 9:01",    "2026-03-03 23:00"}
            << ".x...."
            << "modeless|Work|400|Dentist|3/3/2026  9:00:00 AM";
        QTest::newRow("all-day one-off: at the first tick, then kept all day")
            << counts(1, 0) + oneOff(1, "3/3/2026", "00:00", "Holiday", "Home") << "en_US"
            << QStringList{"2026-03-03 15:15", "2026-03-03 15:16", "2026-03-03 23:59",
                           "2026-03-04 0:00"}
            << "x..."
            << "modeless|Home|300|Holiday|3/3/2026  12:00:00 AM";
        QTest::newRow("all-day daily: once per run, in an unknown category on black")
            << counts(0, 1) + rec(1, "Daily", "", "", "00:00", "Vitamins", "Gone") << "en_US"
            << QStringList{"2026-03-03 8:00", "2026-03-04 8:00", "2026-04-01 8:00"} << "x.."
            << "modal|Gone|0|Vitamins|Daily";
        QTest::newRow("timed daily: once a day in its minute")
            << counts(0, 1) + rec(1, "Daily", "", "", "9:00 AM", "Stretch") << "en_US"
            << QStringList{"2026-03-03 9:00", "2026-03-03 9:00:30", "2026-03-03 9:01",
                           "2026-03-04 9:00:10"}
            << "x..x"
            << "modal|Home|300|Stretch|9:00 AM  Daily";
        QTest::newRow("weekly: by the weekday's name")
            << counts(1, 1) + plainOneOff + rec(1, "Weekly", "Tuesday", "", "00:00", "Bins")
            << "en_US"
            << QStringList{"2026-03-02 12:00", "2026-03-03 12:00", "2026-03-03 18:00",
                           "2026-03-04 12:00", "2026-03-10 12:00"}
            << ".x..x"
            << "modal|Home|300|Bins|Tuesday  Weekly";
        QTest::newRow("weekly: an English name on a German system")
            << counts(1, 1) + plainOneOff + rec(1, "Weekly", "Monday", "", "00:00", "Bins")
            << "de_DE" << QStringList{"2026-03-02 12:00"} << "."
            << "";
        QTest::newRow("weekly: the German name on a German system")
            << counts(1, 1) + plainOneOff + rec(1, "Weekly", "Montag", "", "00:00", "Bins")
            << "de_DE" << QStringList{"2026-03-02 12:00"} << "x"
            << "modal|Home|300|Bins|Montag  Weekly";
        QTest::newRow("monthly: the day compared as a number")
            << counts(1, 1) + plainOneOff + rec(1, "Monthly", "03", "", "9:00 AM", "Rent")
            << "en_US" << QStringList{"2026-03-03 9:00", "2026-03-04 9:00", "2026-04-03 9:00:20"}
            << "x.x"
            << "modal|Home|300|Rent|03  9:00 AM  Monthly";
        QTest::newRow("yearly: month, day and the current year")
            << counts(1, 1) + plainOneOff + rec(1, "Yearly", "10", "3", "00:00", "Birthday")
            << "en_US" << QStringList{"2026-03-10 7:00", "2026-03-11 7:00", "2027-03-10 7:00"}
            << "x.x"
            << "modal|Home|300|Birthday|10/3  Yearly";
        QTest::newRow("yearly, timed")
            << counts(1, 1) + plainOneOff + rec(1, "Yearly", "10", "3", "7:30 PM", "Party")
            << "en_US" << QStringList{"2026-03-10 19:29", "2026-03-10 19:30"} << ".x"
            << "modal|Home|300|Party|10/3  7:30 PM  Yearly";
        QTest::newRow("another kind is skipped")
            << counts(0, 1) + rec(1, "Hourly", "", "", "00:00", "x") << "en_US"
            << QStringList{"2026-03-03 12:00"} << "."
            << "";
    }
    void timeline()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, locale);
        QFETCH(QStringList, ticks);
        QList<rt::Date> instants;
        for (const QString &tick : ticks)
            instants << at(tick);
        rt::RtLocale::setForTest(QLocale(locale));
        writeStore(store);
        const store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        QString fired;
        for (rt::Date instant : instants) {
            const qsizetype before = out.log.size();
            check.tick(instant);
            fired += out.log.size() > before ? 'x' : '.';
        }
        QTEST(fired, "fired");
        QTEST(out.log.isEmpty() ? QString() : out.log.last(), "last");
    }

    // Weekly, monthly and yearly events are told memo from action by the one-off event of
    // their number; daily events by their own text.
    void crossReference_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("log");
        QTest::newRow("weekly opens the one-off event's path")
            << counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "&**/srv/report.pdf") +
                   rec(1, "Weekly", "Tuesday", "", "00:00", "Standup")
            << "open|/srv/report.pdf";
        QTest::newRow("monthly shows its own action text as a memo")
            << counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain") +
                   rec(1, "Monthly", "3", "", "00:00", "&**/srv/own.sh")
            << "modal|Home|300|&**/srv/own.sh|3  Monthly";
        QTest::newRow("daily opens its own path")
            << counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "&**/srv/other") +
                   rec(1, "Daily", "", "", "00:00", "&**/srv/daily")
            << "open|/srv/daily";
    }
    void crossReference()
    {
        QFETCH(QByteArray, store);
        writeStore(store);
        const store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        check.tick(at("2026-03-03 12:00"));
        QTEST(out.log.join('\n'), "log");
    }

    void untrappedErrors_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("tick");
        QTest::addColumn<int>("error");
        const QByteArray feb29 = counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain") +
                                 rec(1, "Yearly", "29", "2", "00:00", "Leap");
        QTest::newRow("29 February in a common year") << feb29 << "2026-03-03 12:00" << 13;
        QTest::newRow("29 February in a leap year") << feb29 << "2028-03-03 12:00" << 0;
        QTest::newRow("a time that is no time")
            << counts(0, 1) + rec(1, "Daily", "", "", "noon", "Lunch") << "2026-03-03 12:00" << 13;
        QTest::newRow("a time that is no time, on a day its rule does not match")
            << counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain") +
                   rec(1, "Weekly", "Friday", "", "noon", "Lunch")
            << "2026-03-03 12:00" << 0;
        QTest::newRow("a monthly day that is no number")
            << counts(0, 1) + rec(1, "Monthly", "first", "", "00:00", "Rent") << "2026-03-03 12:00"
            << 13;
        QTest::newRow("no one-off event of the weekly event's number")
            << counts(0, 1) + rec(1, "Weekly", "Tuesday", "", "00:00", "Bins") << "2026-03-03 12:00"
            << 9;
        QTest::newRow("no one-off event, on a day the rule does not match")
            << counts(0, 1) + rec(1, "Weekly", "Tuesday", "", "00:00", "Bins") << "2026-03-04 12:00"
            << 0;
    }
    void untrappedErrors()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, tick);
        writeStore(store);
        const store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        // Converted once, the failure still surfaces at every tick.
        for (int round = 0; round < 2; ++round) {
            int error = 0;
            try {
                check.tick(at(tick));
            } catch (const rt::RuntimeError &e) {
                error = e.number();
            }
            QTEST(error, "error");
        }
    }

    void recurringFlagIsSetWhenTheModalAlarmCloses()
    {
        writeStore(counts(0, 2) + rec(1, "Daily", "", "", "00:00", "First") +
                   rec(2, "Daily", "", "", "00:00", "Second"));
        const store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        const rt::Date now = at("2026-03-03 12:00");
        QList<bool> flagWhileOpen;
        out.whileModal = [&] {
            flagWhileOpen << check.recurringFired()[out.log.size()];
            check.tick(now); // the timer keeps ticking under a modal window
        };
        check.tick(now);
        QCOMPARE(flagWhileOpen, QList<bool>({false, false}));
        QCOMPARE(out.log.size(), 2);
        QVERIFY(check.recurringFired()[1] && check.recurringFired()[2]);
    }

    void reloadKeepsFlags()
    {
        writeStore(counts(1, 0) + oneOff(1, "3/3/2026", "9:00 AM", "One"));
        store::Model model = store::loadModel();
        Recorder out;
        ReminderCheck check(out);
        check.setModel(model);
        check.tick(at("2026-03-03 9:00"));
        writeStore(counts(2, 0) + oneOff(1, "3/3/2026", "9:00 AM", "One") +
                   oneOff(2, "3/3/2026", "9:00 AM", "Two"));
        model = store::loadModel();
        check.setModel(model);
        check.tick(at("2026-03-03 9:00:30"));
        QCOMPARE(out.log.size(), 2);
        QVERIFY(out.log[1].contains("|Two|"));
        check.clearFlags();
        check.tick(at("2026-03-03 9:00:40"));
        QCOMPARE(out.log.size(), 4);
    }

    void actionPathOpensAsWritten()
    {
        // Every character a shell would act on, in the name of a script that notes how it
        // was started.
        const QString path = dir.path() + "/it's a \"test\"; $(touch pwned) `touch pwned2` & |.sh";
        QFile script(path);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s\\n' \"$0\" \"$#\" \"$PWD\" > \"${0%/*}/started.tmp\"\n"
                     "mv \"${0%/*}/started.tmp\" \"${0%/*}/started.log\"\n");
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        writeStore(counts(1, 0) + oneOff(1, "3/3/2026", "00:00", ("&**" + path).toUtf8()));
        const store::Model model = store::loadModel();
        AlarmOutput out;
        ReminderCheck check(out);
        check.setModel(model);
        check.tick(at("2026-03-03 12:00"));
        QFile log(dir.path() + "/started.log");
        QTRY_VERIFY_WITH_TIMEOUT(log.exists(), 10000);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(log.readAll()), path + "\n0\n" + dir.path() + "\n");
        QVERIFY(!QFile::exists(dir.path() + "/pwned") && !QFile::exists("pwned"));
        QVERIFY(!QFile::exists(dir.path() + "/pwned2") && !QFile::exists("pwned2"));
        QVERIFY(!out.window());
    }

    void openActionTargets_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("url");
        QTest::newRow("document") << "DIR/notes; rm -rf ~.txt"
                                  << "file://DIR/notes; rm -rf ~.txt";
        QTest::newRow("folder") << "DIR"
                                << "file://DIR";
        QTest::newRow("web address") << "https://example.com/a b"
                                     << "https://example.com/a b";
        QTest::newRow("www") << "www.example.com"
                             << "http://www.example.com";
    }
    void openActionTargets()
    {
        QFETCH(QString, path);
        QFile(dir.path() + "/notes; rm -rf ~.txt").open(QIODevice::WriteOnly);
        UrlCatcher catcher;
        const QStringList schemes{"file", "http", "https"};
        for (const QString &scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, &catcher, "open");
        openAction(path.replace("DIR", dir.path()));
        for (const QString &scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
        QCOMPARE(catcher.opened.size(), 1);
        QFETCH(QString, url);
        QCOMPARE(catcher.opened[0].toString(), url.replace("DIR", dir.path()));
    }

    // The running window: two memos due in the same tick leave the shared alarm window
    // showing the second, in its category's colour.
    void alarmWindowOnTimer1()
    {
        rt::Clock::setSource([] { return at("2026-03-03 9:00:05"); });
        writeStore(counts(2, 0) + oneOff(1, "3/3/2026", "9:00 AM", "Dentist") +
                   oneOff(2, "3/3/2026", "9:00 AM", "Pharmacy", "Home"));
        Form1 form;
        form.Form_Load();
        auto *timer1 = form.findChild<QTimer *>("Timer1");
        QVERIFY(timer1->isActive());
        QCOMPARE(timer1->interval(), 40);
        QTimerEvent tick(timer1->timerId());
        QCoreApplication::sendEvent(timer1, &tick);
        frmalarm *alarm = form.alarmWindow();
        QVERIFY(alarm && alarm->isVisible() && !alarm->isModal());
        QCOMPARE(alarm->windowTitle(), QString("Home"));
        QCOMPARE(alarm->backColor(), 300u);
        QCOMPARE(alarm->txtMemo()->toPlainText(), QString("Pharmacy"));
        QCOMPARE(alarm->txttitle()->text(), QString("3/3/2026  9:00:00 AM"));
        QVERIFY(QStringList({"Times New Roman", "Liberation Serif"})
                    .contains(QFontInfo(alarm->txtMemo()->font()).family()));
        QCOMPARE(form.reminders().eventFired(), std::vector<bool>({false, true, true}));
        // No alarm.wav in this program folder: nothing plays, nothing is said.
        rt::MsgBoxRecorder boxes;
        alarm->Form_Activate();
        QVERIFY(!alarm->sound() && boxes.calls.isEmpty());
        rt::Clock::setSource({});
    }

    // The tick traps nothing: the run-time's handler shows the error and ends the program.
    void yearlyErrorEndsTheProgram()
    {
        rt::Clock::setSource([] { return at("2026-03-03 12:00"); });
        writeStore(counts(1, 1) + oneOff(1, "1/1/2026", "00:00", "plain") +
                   rec(1, "Yearly", "29", "2", "00:00", "Leap"));
        Form1 form;
        form.Form_Load();
        rt::MsgBoxRecorder boxes;
        rt::setEndForTest([](int exitCode) { throw Ended{exitCode}; });
        auto *timer1 = form.findChild<QTimer *>("Timer1");
        QTimerEvent tick(timer1->timerId());
        int exitCode = -1;
        try {
            QCoreApplication::sendEvent(timer1, &tick);
        } catch (const Ended &ended) {
            exitCode = ended.exitCode;
        }
        rt::setEndForTest({});
        rt::Clock::setSource({});
        QCOMPARE(exitCode, rt::kRuntimeErrorExitCode);
        QCOMPARE(boxes.calls.size(), 1);
        QCOMPARE(boxes.calls[0].prompt, QString("Run-time error '13':\n\nType mismatch"));
        QCOMPARE(boxes.calls[0].title, QString("ORVA Calendar"));
    }
};

int main(int argc, char **argv)
{
    rt::Application app(argc, argv);
    TstReminders test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_reminders.moc"
