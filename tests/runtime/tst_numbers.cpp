#include "DataTable.h"
#include "runtime/Locale.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"

#include <QTest>
#include <cmath>

namespace
{

// The value as text, or "E" and the error; the try form agrees and keeps the field.
template <typename T>
QString outcome(T (*convert)(const QString &), bool (*tryConvert)(const QString &, T &),
                const QString &text)
{
    T field = 7;
    const bool converted = tryConvert(text, field);
    try {
        const T value = convert(text);
        const bool agrees = converted && field == value;
        return QString::number(double(value), 'g', 15) + (agrees ? "" : " (try form failed)");
    } catch (const rt::RuntimeError &error) {
        const bool agrees = !converted && field == 7;
        return QStringLiteral("E%1").arg(error.number()) + (agrees ? "" : " (try form converted)");
    }
}

} // namespace

class TstNumbers : public QObject
{
    Q_OBJECT

private slots:
    void cleanupTestCase() { rt::RtLocale::resetToSystem(); }

    void conversions_data()
    {
        columns<QString, QString, QString, QString, QString>("locale", "text", "lng", "integer",
                                                             "dbl");
        const auto row = [](const char *locale, const QString &text, const char *lng,
                            const char *integer, const char *dbl) {
            QTest::addRow("%s '%s'", locale, qPrintable(text))
                << QString(locale) << text << QString(lng) << QString(integer) << QString(dbl);
        };

        row("en_US", " \t007 ", "7", "7", "7");
        row("en_US", " -$1,234.5 ", "-1234", "-1234", "-1234.5");
        row("en_US", "($1,2,34)", "-1234", "-1234", "-1234");
        row("en_US", "1.5E-2", "0", "0", "0.015");
        row("en_US", "-2.5", "-2", "-2", "-2.5");
        row("en_US", "32767.5", "32768", "E6", "32767.5");
        row("en_US", "-32768.5", "-32768", "-32768", "-32768.5");
        row("en_US", "2147483647.5", "E6", "E6", "2147483647.5");
        row("en_US", "1e10", "E6", "E6", "10000000000");
        row("en_US", QString(400, QLatin1Char('9')), "E6", "E6", "E6");
        row("en_US", "&hFFFF", "65535", "-1", "65535");
        row("en_US", "&H10000", "65536", "E6", "65536");
        row("en_US", "&HFFFFFFFF", "-1", "E6", "-1");
        row("en_US", " &O177777 ", "65535", "-1", "65535");
        row("de_DE", "5.5", "55", "55", "55");
        row("de_DE", "-1.234,5 €", "-1234", "-1234", "-1234.5");
        for (const char *text :
             {"",    "  ",    "abc",   "12abc", "0x10",  "1d3",  "5%", "True", "--5",
              "-5-", "(-5)",  "(5",    "5)",    "$5$",   ",5",   "5,", "1,,2", "1.2.3",
              "1e",  "1.5,0", "1 000", "&H",    "-&H10", "&H1G", "&O8"})
            row("en_US", text, "E13", "E13", "E13");
    }
    void conversions()
    {
        QFETCH(QString, locale);
        QFETCH(QString, text);
        rt::RtLocale::setForTest(QLocale(locale));
        QTEST(outcome(&rt::CLng, &rt::tryCLng, text), "lng");
        QTEST(outcome(&rt::CInt, &rt::tryCInt, text), "integer");
        QTEST(outcome(&rt::CDbl, &rt::tryCDbl, text), "dbl");
    }

    void val_data()
    {
        columns<QString, double>("text", "expected");

        QTest::newRow("junk after") << "12abc" << 12.0;
        QTest::newRow("blanks, tabs, line feeds") << " 2\t45\n7" << 2457.0;
        QTest::newRow("carriage return stops") << "1\r2" << 1.0;
        QTest::newRow("comma stops") << "1,5" << 1.0;
        QTest::newRow("d exponent") << "1D+3x" << 1000.0;
        QTest::newRow("bare exponent") << "1e" << 1.0;
        QTest::newRow("hex integer") << "&HFFFF" << -1.0;
        QTest::newRow("hex long") << "&H10000" << 65536.0;
        QTest::newRow("octal stops at 8") << "&O178" << 15.0;
        QTest::newRow("huge") << "-1e999" << -HUGE_VAL;
    }
    void val()
    {
        rt::RtLocale::setForTest(QLocale(QStringLiteral("de_DE"))); // Val reads no locale
        QFETCH(QString, text);
        QTEST(rt::Val(text), "expected");
    }
};

QTEST_GUILESS_MAIN(TstNumbers)
#include "tst_numbers.moc"
