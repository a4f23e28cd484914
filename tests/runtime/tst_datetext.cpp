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
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("m");
        QTest::addColumn<int>("d");
        QTest::addColumn<double>("serial");
        QTest::addColumn<int>("weekday");
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
        QFETCH(int, weekday);
        QCOMPARE(DateSerial(y, m, d), serial);
        QCOMPARE(Year(serial), y);
        QCOMPARE(Month(serial), m);
        QCOMPARE(Day(serial), d);
        // A time of day never moves the weekday; negative values carry it as -0.75.
        QCOMPARE(Weekday(serial + (serial < 0 ? -0.75 : 0.75)), weekday);
    }

    void timeParts()
    {
        const Date t = DateSerial(2004, 7, 29) + TimeSerial(21, 5, 59);
        QCOMPARE(Hour(t), 21);
        QCOMPARE(Minute(t), 5);
        QCOMPARE(Second(t), 59);
        // Negative values keep their time of day as a positive fraction.
        QCOMPARE(Day(-1.25), 29);
        QCOMPARE(Hour(-1.25), 6);
    }

    void parse_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected"); // -1: no date
        const double jul29 = 38197;
        const double nine = 0.375;
        QTest::newRow("m/d/yyyy") << "en_US"
                                  << "7/29/2004" << jul29;
        QTest::newRow("m/d/yy") << "en_US"
                                << "7/29/04" << jul29;
        QTest::newRow("yy 50 is 1950") << "en_US"
                                       << "1/1/50" << DateSerial(1950, 1, 1);
        QTest::newRow("yy 49 is 2049") << "en_US"
                                       << "1/1/49" << DateSerial(2049, 1, 1);
        QTest::newRow("0004 windowed") << "en_US"
                                       << "1/1/0004" << DateSerial(2004, 1, 1);
        QTest::newRow("year 10000") << "en_US"
                                    << "1/1/10000" << -1.0;
        QTest::newRow("day first fallback") << "en_US"
                                            << "13/1/2004" << DateSerial(2004, 1, 13);
        QTest::newRow("29/07/2004 in en_US") << "en_US"
                                             << "29/07/2004" << jul29;
        QTest::newRow("iso everywhere") << "en_GB"
                                        << "2004-07-29" << jul29;
        QTest::newRow("5/6 en_US") << "en_US"
                                   << "5/6/2004" << DateSerial(2004, 5, 6);
        QTest::newRow("5/6 en_GB") << "en_GB"
                                   << "5/6/2004" << DateSerial(2004, 6, 5);
        QTest::newRow("de dots") << "de_DE"
                                 << "29.07.2004" << jul29;
        QTest::newRow("dots fail in en_US") << "en_US"
                                            << "29.07.2004" << -1.0;
        QTest::newRow("feb 30") << "en_US"
                                << "2/30/2004" << -1.0;
        QTest::newRow("feb 29 2005") << "en_US"
                                     << "2/29/2005" << -1.0;
        QTest::newRow("feb 29 2100") << "en_US"
                                     << "2/29/2100" << -1.0;
        QTest::newRow("feb 29 2000") << "en_US"
                                     << "2/29/2000" << DateSerial(2000, 2, 29);
        QTest::newRow("apr 31") << "en_US"
                                << "4/31/2004" << -1.0;
        QTest::newRow("month day gets this year") << "en_US"
                                                  << "7/29" << DateSerial(2026, 7, 29);
        QTest::newRow("month year") << "en_US"
                                    << "7/2004" << DateSerial(2004, 7, 1);
        QTest::newRow("month name") << "en_US"
                                    << "July 29, 2004" << jul29;
        QTest::newRow("short month name") << "en_US"
                                          << "29-jul-2004" << jul29;
        QTest::newRow("day name skipped") << "en_US"
                                          << "Thursday, July 29, 2004" << jul29;
        QTest::newRow("blanks around") << "en_US"
                                       << "  7 / 29 / 2004 " << jul29;
        QTest::newRow("time") << "en_US"
                              << "9:00" << nine;
        QTest::newRow("time seconds") << "en_US"
                                      << "09:00:30" << nine + 30 / 86400.0;
        QTest::newRow("9:5 PM") << "en_US"
                                << "9:5 PM" << 21 / 24.0 + 5 / 1440.0;
        QTest::newRow("12:00AM") << "en_US"
                                 << "12:00AM" << 0.0;
        QTest::newRow("12 PM noon") << "en_US"
                                    << "12:00 pm" << 0.5;
        QTest::newRow("0 PM noon") << "en_US"
                                   << "0:00 PM" << 0.5;
        QTest::newRow("am lower") << "en_US"
                                  << "9:00 am" << nine;
        QTest::newRow("a alone") << "en_US"
                                 << "9:00a" << nine;
        QTest::newRow("13 PM stays 13") << "en_US"
                                        << "13:00 PM" << 13 / 24.0;
        QTest::newRow("lone hour with AM") << "en_US"
                                           << "9 AM" << nine;
        QTest::newRow("date and time") << "en_US"
                                       << "7/29/2004 9:00 AM" << jul29 + nine;
        QTest::newRow("time then date") << "en_US"
                                        << "9:00 AM 7/29/2004" << jul29 + nine;
        QTest::newRow("comma between") << "en_US"
                                       << "7/29/2004, 9:00" << jul29 + nine;
        QTest::newRow("24:00") << "en_US"
                               << "24:00" << -1.0;
        QTest::newRow("10:60 AM") << "en_US"
                                  << "10:60 AM" << -1.0;
        QTest::newRow(":30") << "en_US"
                             << ":30" << -1.0;
        QTest::newRow("9:") << "en_US"
                            << "9:" << -1.0;
        QTest::newRow("fractional seconds") << "en_US"
                                            << "9:00:30.5" << -1.0;
        QTest::newRow("lone hour") << "en_US"
                                   << "9" << -1.0;
        QTest::newRow("AM before time") << "en_US"
                                        << "AM 9:00" << -1.0;
        QTest::newRow("empty") << "en_US"
                               << "" << -1.0;
        QTest::newRow("blank") << "en_US"
                               << "   " << -1.0;
        QTest::newRow("bare number") << "en_US"
                                     << "38197" << -1.0;
        QTest::newRow("ALL DAY") << "en_US"
                                 << "ALL DAY" << -1.0;
        QTest::newRow("extra word") << "en_US"
                                    << "7/29/2004 x" << -1.0;
        QTest::newRow("date both sides of time") << "en_US"
                                                 << "7/29 9:00 2004" << -1.0;
        QTest::newRow("c locale is en_US") << "C"
                                           << "7/29/2004" << jul29;
    }
    void parse()
    {
        QFETCH(QString, locale);
        QFETCH(QString, text);
        QFETCH(double, expected);
        RtLocale::setForTest(QLocale(locale));
        const auto value = parseDate(text);
        if (expected < 0) {
            QVERIFY2(!value, qPrintable(QString::number(value.value_or(0), 'f', 6)));
            return;
        }
        QVERIFY(value);
        QVERIFY2(qAbs(*value - expected) < 1e-9, qPrintable(QString::number(*value, 'f', 6)));
    }

    void errors()
    {
        RtLocale::setForTest(QLocale("en_US"));
        double field = 5;
        QVERIFY(!tryCDate("ALL DAY", field));
        QCOMPARE(field, 5.0);
        try {
            CDate("2/30/2004");
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), 13);
        }
    }

    void text_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("zero") << "en_US" << 0.0 << "12:00:00 AM";
        QTest::newRow("time") << "en_US" << 0.375 << "9:00:00 AM";
        QTest::newRow("date") << "en_US" << 38197.0 << "7/29/2004";
        QTest::newRow("both") << "en_US" << 38197.375 << "7/29/2004 9:00:00 AM";
        QTest::newRow("pm") << "en_US" << 38197.0 + 21 / 24.0 + 5 / 1440.0
                            << "7/29/2004 9:05:00 PM";
        QTest::newRow("rounds half up") << "en_US" << 0.375 + 0.5 / 86400 << "9:00:01 AM";
        QTest::newRow("year 100") << "en_US" << DateSerial(100, 1, 1) << "1/1/0100";
        QTest::newRow("gb zero") << "en_GB" << 0.0 << "00:00:00";
        QTest::newRow("gb both") << "en_GB" << 38197.375 << "29/07/2004 09:00:00";
        QTest::newRow("fr date") << "fr_FR" << 38197.0 << "29/07/2004";
        QTest::newRow("de both") << "de_DE" << 38197.375 << "29.07.2004 09:00:00";
    }
    void text()
    {
        QFETCH(QString, locale);
        QFETCH(double, value);
        QFETCH(QString, expected);
        RtLocale::setForTest(QLocale(locale));
        QCOMPARE(CStr(value), expected);
    }

    // Written and read back in one locale, a value keeps its second.
    void roundTrip_data()
    {
        QTest::addColumn<QString>("locale");
        for (const char *locale : {"en_US", "en_GB", "de_DE", "fr_FR", "ja_JP"})
            QTest::newRow(locale) << locale;
    }
    void roundTrip()
    {
        QFETCH(QString, locale);
        RtLocale::setForTest(QLocale(locale));
        for (double v : {38197.0, 0.375, 38197.0 + 45296 / 86400.0, 2.0, 73110.75, 0.999988426}) {
            const auto back = parseDate(CStr(v));
            QVERIFY2(back, qPrintable(CStr(v)));
            QVERIFY2(qAbs(*back - v) < 0.6 / 86400, qPrintable(CStr(v)));
        }
    }

    void weekdayNames()
    {
        RtLocale::setForTest(QLocale("en_US"));
        QCOMPARE(WeekdayName(1), QString("Sunday"));
        QCOMPARE(WeekdayName(Weekday(38197)), QString("Thursday"));
        // Weeks that start on Monday shift the names by a day.
        RtLocale::setForTest(QLocale("de_DE"));
        QCOMPARE(WeekdayName(1), QString("Montag"));
        QCOMPARE(WeekdayName(7), QString("Sonntag"));
    }
};

QTEST_GUILESS_MAIN(TestDateText)
#include "tst_datetext.moc"
