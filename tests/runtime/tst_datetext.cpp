#include "DataTable.h"
#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "runtime/Locale.h"
#include "runtime/RuntimeError.h"

#include <QTest>

using namespace rt;

class TestDateText : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        Clock::setSource([] { return DateSerial(2026, 11, 22) + 0.5; });
    }
    void cleanup()
    {
        Clock::setSource({});
        RtLocale::resetToSystem();
    }

    void serials_data()
    {
        columns<int, int, int, double, int>("y", "m", "d", "serial", "weekday");
        QTest::newRow("epoch") << 1899 << 12 << 30 << 0.0 << 7;
        QTest::newRow("1900-01-01") << 1900 << 1 << 1 << 2.0 << 2;
        QTest::newRow("1900-03-01") << 1900 << 3 << 1 << 61.0 << 5;
        QTest::newRow("2004-07-29") << 2004 << 7 << 29 << 38197.0 << 5;
        QTest::newRow("2100-03-01") << 2100 << 3 << 1 << 73110.0 << 2;
        QTest::newRow("year 100") << 100 << 1 << 1 << -657434.0 << 6;
        QTest::newRow("9999-12-31") << 9999 << 12 << 31 << 2958465.0 << 6;
    }
    void serials()
    {
        QFETCH(int, y);
        QFETCH(int, m);
        QFETCH(int, d);
        QFETCH(double, serial);
        QCOMPARE(DateSerial(y, m, d), serial);
        QCOMPARE(Year(serial), y);
        QCOMPARE(Month(serial), m);
        // A time of day never moves the date; negative values carry it negated.
        const Date at = serial + (serial < 0 ? -1 : 1) * TimeSerial(18, 5, 59);
        QCOMPARE(Day(at), d);
        QTEST(Weekday(at), "weekday");
        QCOMPARE(QList<int>({Hour(at), Minute(at), Second(at)}), QList<int>({18, 5, 59}));
    }

    void parse_data()
    {
        // expected: NaN for no date
        columns<QString, QString, double>("locale", "text", "expected");
        const double jul29 = 38197;
        const double nine = 0.375;
        const double none = qQNaN();
        const auto row = [](const char *name, const char *text, double expected,
                            const char *locale = "en_US") {
            QTest::newRow(name) << QString(locale) << QString(text) << expected;
        };
        row("m/d/yy", "7/29/04", jul29);
        row("yy 50 is 1950", "1/1/50", DateSerial(1950, 1, 1));
        row("yy 49 is 2049", "1/1/49", DateSerial(2049, 1, 1));
        row("0004 windowed", "1/1/0004", DateSerial(2004, 1, 1));
        row("year 10000", "1/1/10000", none);
        row("day first fallback", "13/1/2004", DateSerial(2004, 1, 13));
        row("29/07/2004 in en_US", "29/07/2004", jul29);
        row("iso everywhere", "2004-07-29", jul29, "en_GB");
        row("5/6 en_US", "5/6/2004", DateSerial(2004, 5, 6));
        row("5/6 en_GB", "5/6/2004", DateSerial(2004, 6, 5), "en_GB");
        row("de dots", "29.07.2004", jul29, "de_DE");
        row("dots fail in en_US", "29.07.2004", none);
        row("feb 30", "2/30/2004", none);
        row("feb 29 2100", "2/29/2100", none);
        row("feb 29 2000", "2/29/2000", DateSerial(2000, 2, 29));
        row("apr 31", "4/31/2004", none);
        row("month day gets this year", "7/29", DateSerial(2026, 7, 29));
        row("month year", "7/2004", DateSerial(2004, 7, 1));
        row("month name", "July 29, 2004", jul29);
        row("short month name", "29-jul-2004", jul29);
        row("day name skipped", "Thursday, July 29, 2004", jul29);
        row("blanks around", "  7 / 29 / 2004 ", jul29);
        row("time seconds", "09:00:30", nine + 30 / 86400.0);
        row("9:5 PM", "9:5 PM", 21 / 24.0 + 5 / 1440.0);
        row("12:00AM", "12:00AM", 0.0);
        row("12 PM noon", "12:00 pm", 0.5);
        row("0 PM noon", "0:00 PM", 0.5);
        row("a alone", "9:00a", nine);
        row("13 PM stays 13", "13:00 PM", 13 / 24.0);
        row("lone hour with AM", "9 AM", nine);
        row("date and time", "7/29/2004 9:00 AM", jul29 + nine);
        row("time then date", "9:00 AM 7/29/2004", jul29 + nine);
        row("comma between", "7/29/2004, 9:00", jul29 + nine);
        row("time before 1899", "1/1/1800 6:00 AM", DateSerial(1800, 1, 1) - 0.25);
        row("24:00", "24:00", none);
        row("10:60 AM", "10:60 AM", none);
        row(":30", ":30", none);
        row("9:", "9:", none);
        row("fractional seconds", "9:00:30.5", none);
        row("lone hour", "9", none);
        row("AM before time", "AM 9:00", none);
        row("blank", "   ", none);
        row("bare number", "38197", none);
        row("ALL DAY", "ALL DAY", none);
        row("extra word", "7/29/2004 x", none);
        row("date both sides of time", "7/29 9:00 2004", none);
        row("leading separator", "/4/2026", none);
        row("leading dash", "-7-29-2004", none);
        row("trailing separator", "7/29/2004/", none);
        row("trailing separator after a time", "7/29/2004 9:00 AM/", none);
        row("c locale is en_US", "7/29/2004", jul29, "C");
    }
    void parse()
    {
        QFETCH(QString, locale);
        QFETCH(QString, text);
        QFETCH(double, expected);
        RtLocale::setForTest(QLocale(locale));
        Date value = -7;
        if (qIsNaN(expected)) {
            QVERIFY2(!tryCDate(text, value), qPrintable(QString::number(value, 'f', 6)));
            QCOMPARE(value, -7.0);
            try {
                CDate(text);
                QFAIL("no error raised");
            } catch (const RuntimeError &e) {
                QCOMPARE(e.number(), 13);
            }
            return;
        }
        QVERIFY(tryCDate(text, value));
        QVERIFY2(qAbs(value - expected) < 1e-9, qPrintable(QString::number(value, 'f', 6)));
    }

    void text_data()
    {
        columns<QString, double, QString>("locale", "value", "expected");
        QTest::newRow("zero") << "en_US" << 0.0 << "12:00:00 AM";
        QTest::newRow("date") << "en_US" << 38197.0 << "7/29/2004";
        QTest::newRow("both") << "en_US" << 38197.375 << "7/29/2004 9:00:00 AM";
        QTest::newRow("pm") << "en_US" << 38197.875 + 5 / 1440.0 << "7/29/2004 9:05:00 PM";
        QTest::newRow("rounds half up") << "en_US" << 0.375 + 0.5 / 86400 << "9:00:01 AM";
        QTest::newRow("year 100") << "en_US" << DateSerial(100, 1, 1) << "1/1/0100";
        QTest::newRow("gb zero") << "en_GB" << 0.0 << "00:00:00";
        QTest::newRow("gb both") << "en_GB" << 38197.375 << "29/07/2004 09:00:00";
        QTest::newRow("de both") << "de_DE" << 38197.375 << "29.07.2004 09:00:00";
    }
    void text()
    {
        QFETCH(QString, locale);
        QFETCH(double, value);
        RtLocale::setForTest(QLocale(locale));
        QTEST(CStr(value), "expected");
    }
};

QTEST_GUILESS_MAIN(TestDateText)
#include "tst_datetext.moc"
