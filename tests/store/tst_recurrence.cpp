#include "runtime/Locale.h"
#include "store/Recurrence.h"

#include <QTest>

using rt::DateSerial;

// The same events and dates through every place's rule. Each answer is 'y' (falls on the
// date), 'n' or '!' (raises), in the order: painters, day popup, reminder tick, remove
// window, printed list.
class TstRecurrence : public QObject
{
    Q_OBJECT

private slots:
    void sideBySide_data()
    {
        QTest::addColumn<QStringList>("event"); // type, day, month
        QTest::addColumn<rt::Date>("date");
        QTest::addColumn<int>("year"); // shown by the calendar, and of its selected date
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("answers");
        const auto row = [](const char *name, const QStringList &event, rt::Date date, int year,
                            const char *answers, const char *locale = "en_US") {
            QTest::newRow(name) << event << date << year << QString(locale) << QString(answers);
        };
        const QStringList monday{"Weekly", "Monday"};
        row("weekly on its day", monday, DateSerial(2026, 3, 2), 2026, "yyyyy");
        row("weekly: the locale's names are not the stored ones", monday, DateSerial(2026, 3, 2),
            2026, "ynnny", "de_DE");
        // Weekday numbers count from Sunday, the locale's names from its first day.
        row("weekly: weeks that start on Monday shift the locale's names", monday,
            DateSerial(2026, 3, 1), 2026, "nyyyn", "en_GB");
        row("weekly: a name in another case", {"Weekly", "monday"}, DateSerial(2026, 3, 2), 2026,
            "nnnnn");
        row("weekly: painted only in the selected date's year", monday, DateSerial(2027, 1, 4),
            2026, "nyyyy");
        row("weekly: 2100 walks 366 days, into 2101", {"Weekly", "Saturday"},
            DateSerial(2101, 1, 1), 2100, "yyyyy");
        row("monthly: the day compared as a number", {"Monthly", "05"}, DateSerial(2026, 3, 5),
            2026, "yyyyy");
        row("monthly: a month without the day", {"Monthly", "31"}, DateSerial(2026, 4, 30), 2026,
            "nnnnn");
        row("monthly: a day that is no number", {"Monthly", "first"}, DateSerial(2026, 3, 1), 2026,
            "n!!n!");
        row("yearly: in a year other than the one shown", {"Yearly", "29", "7"},
            DateSerial(2004, 7, 29), 2005, "nnyyy");
        row("yearly: 29 February in a common year", {"Yearly", "29", "2"}, DateSerial(2027, 3, 1),
            2027, "n!!nn");
        row("yearly: 29 February in a leap year", {"Yearly", "29", "2"}, DateSerial(2028, 2, 29),
            2028, "yyyyy");
        row("daily: on every day, never painted", {"Daily"}, DateSerial(1999, 12, 31), 1999,
            "nyyyy");
        row("a kind none knows", {"Hourly"}, DateSerial(2026, 3, 2), 2026, "nnnnn");
    }
    void sideBySide()
    {
        QFETCH(QStringList, event);
        QFETCH(rt::Date, date);
        QFETCH(int, year);
        QFETCH(QString, locale);
        rt::RtLocale::setForTest(QLocale(locale));
        event.resize(3);
        const store::RecurringEvent e{event[0], event[1], event[2], "00:00", "memo", "Home"};
        const auto answer = [](auto fallsOn) {
            try {
                return fallsOn() ? 'y' : 'n';
            } catch (const rt::RuntimeError &) {
                return '!';
            }
        };
        QString answers;
        answers += answer([&] {
            return recurrence::PainterDays(DateSerial(year, 1, 20), year).of(e).contains(date);
        });
        answers += answer([&] { return recurrence::inDayPopup(e, date, year); });
        answers += answer([&] { return recurrence::TickRule(e).fallsOn(recurrence::Today(date)); });
        answers += answer([&] { return recurrence::inRemoveWindow(e, date); });
        answers += answer([&] { return recurrence::inPrintedList(e, date); });
        QTEST(answers, "answers");
    }

    // The tick converts a yearly date once a year, and again when the year turns.
    void tickRuleFollowsTheYear()
    {
        rt::RtLocale::setForTest(QLocale("en_US"));
        const recurrence::TickRule rule({"Yearly", "29", "2", "00:00", "memo", "Home"});
        QVERIFY(rule.fallsOn(recurrence::Today(DateSerial(2028, 2, 29))));
        QVERIFY_THROWS_EXCEPTION(rt::RuntimeError,
                                 rule.fallsOn(recurrence::Today(DateSerial(2029, 3, 1))));
        QVERIFY(!rule.fallsOn(recurrence::Today(DateSerial(2032, 3, 1))));
    }
};

QTEST_GUILESS_MAIN(TstRecurrence)
#include "tst_recurrence.moc"
