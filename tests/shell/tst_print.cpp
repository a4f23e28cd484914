#include "mainwindow/Form1.h"
#include "runtime/Clock.h"
#include "runtime/Locale.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "shell/EventsText.h"
#include "shell/Printing.h"
#include "shell/ShellCommands.h"
#include "shell/frmPrint.h"
#include "store/Files.h"

#include <QApplication>
#include <QDateEdit>
#include <QFile>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using rt::DateSerial;

namespace
{

const QByteArray kStore =
    "[Categories]\r\nc=3\r\n1=More\r\n1c=100\r\n2=Work\r\n2c=200\r\n3=Home\r\n3c=300\r\n"
    "[count]\r\nc=3\r\n"
    "[1]\r\nDate=3/3/2026\r\nTime=9:00 AM\r\nMemo=Dentist\r\nCat=Work\r\n"
    "[2]\r\nDate=3/3/2026\r\nTime=00:00\r\nMemo=&**/home/me/report.sh\r\nCat=Home\r\n"
    "[3]\r\nDate=3/5/2026\r\nTime=7:30 AM\r\nMemo=Gym\r\nCat=Home\r\n"
    "[rcount]\r\nc=4\r\n"
    "[r1]\r\nType=Weekly\r\nDay=Tuesday\r\nTime=8:00 AM\r\nMemo=Standup\r\nCat=Work\r\n"
    "[r2]\r\nType=Monthly\r\nDay=4\r\nTime=00:00\r\nMemo=Rent\r\nCat=Home\r\n"
    "[r3]\r\nType=Yearly\r\nDay=5\r\nMonth=3\r\nTime=10:00 AM\r\nMemo=Birthday\r\nCat=Home\r\n"
    "[r4]\r\nType=Daily\r\nTime=6:00 PM\r\nMemo=Pills\r\nCat=Home\r\n";

const QString kDayOne = QStringLiteral("Tuesday, 3/3/2026\n"
                                       "    All Day\n    Action: /home/me/report.sh\n"
                                       "    Category: Home\n\n"
                                       "    8:00 AM, every Tuesday\n    Memo: Standup\n"
                                       "    Category: Work\n\n"
                                       "    9:00:00 AM\n    Memo: Dentist\n    Category: Work\n\n"
                                       "    6:00 PM, every day\n    Memo: Pills\n"
                                       "    Category: Home\n");

QString readText(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(f.readAll())
                                                         : QString();
}

// The output of one of poppler's tools, or nothing when it is not installed.
std::optional<QString> poppler(const QString &tool, const QStringList &arguments)
{
    const QString program = QStandardPaths::findExecutable(tool);
    if (program.isEmpty())
        return std::nullopt;
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

store::RecurringEvent recurring(const char *type, const char *day, const char *month = "")
{
    return {type, day, month, "00:00", "memo", "Home"};
}

} // namespace

class TestPrint : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    QString pdf;
    int printed = 0;

    // Runs the print window on a date or a range, as OK does.
    void printRange(rt::Date from, rt::Date to)
    {
        frmPrint window(from);
        const bool range = from != to;
        window.findChild<QRadioButton *>(range ? "Option2" : "Option1")->setChecked(true);
        if (range) {
            window.Option2_Click();
            window.findChild<QDateEdit *>("DTPicker2")->setDate(QDate(2026, 3, rt::Day(from)));
            window.findChild<QDateEdit *>("DTPicker3")->setDate(QDate(2026, 3, rt::Day(to)));
        }
        window.OKButton_Click();
    }

private slots:
    void initTestCase()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
        rt::Clock::setSource([] { return DateSerial(2026, 3, 3) + 0.5; });
        pdf = dir.filePath("printed.pdf");
        printing::setChoosePrinterForTest([this](QPrinter &printer) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            ++printed;
            return true;
        });
    }
    void init()
    {
        QFile f(files::dataIni());
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(kStore);
        QFile::remove(files::lastPrintTxt());
        QFile::remove(pdf);
        printed = 0;
    }

    void recurrenceFallsOnTheCalendarsDays_data()
    {
        QTest::addColumn<store::RecurringEvent>("event");
        QTest::addColumn<rt::Date>("date");
        QTest::addColumn<bool>("listed");
        QTest::newRow("weekly") << recurring("Weekly", "Friday") << DateSerial(2026, 3, 6) << true;
        QTest::newRow("weekly, another day")
            << recurring("Weekly", "Friday") << DateSerial(2026, 3, 7) << false;
        QTest::newRow("weekly, no weekday")
            << recurring("Weekly", "friday") << DateSerial(2026, 3, 6) << false;
        QTest::newRow("monthly") << recurring("Monthly", "31") << DateSerial(2026, 5, 31) << true;
        QTest::newRow("monthly, a short month")
            << recurring("Monthly", "31") << DateSerial(2026, 4, 30) << false;
        QTest::newRow("yearly, leap day in a leap year")
            << recurring("Yearly", "29", "2") << DateSerial(2028, 2, 29) << true;
        QTest::newRow("yearly, leap day otherwise")
            << recurring("Yearly", "29", "2") << DateSerial(2027, 3, 1) << false;
        QTest::newRow("daily") << recurring("Daily", "") << DateSerial(1999, 12, 31) << true;
        QTest::newRow("unknown kind") << recurring("Hourly", "") << DateSerial(2026, 3, 6) << false;
    }
    void recurrenceFallsOnTheCalendarsDays()
    {
        QFETCH(store::RecurringEvent, event);
        QFETCH(rt::Date, date);
        QFETCH(bool, listed);
        store::Model model;
        model.recurring = {{}, event};
        QCOMPARE(eventstext::entriesOn(model, date).size(), listed ? 1 : 0);
    }

    void printsOneDate()
    {
        printRange(DateSerial(2026, 3, 3), DateSerial(2026, 3, 3));
        QCOMPARE(readText(files::lastPrintTxt()),
                 "ORVA Calendar: events on 3/3/2026\n\n" + kDayOne);
        QCOMPARE(printed, 1);
        const auto text = poppler("pdftotext", {"-layout", pdf, "-"});
        if (!text)
            QSKIP("pdftotext is not installed");
        QVERIFY(text->contains("Tuesday, 3/3/2026"));
        QVERIFY(text->contains("Action: /home/me/report.sh"));
        QVERIFY(!text->contains("Gym"));
    }

    void printsARange()
    {
        printRange(DateSerial(2026, 3, 3), DateSerial(2026, 3, 6));
        QCOMPARE(readText(files::lastPrintTxt()),
                 "ORVA Calendar: events from 3/3/2026 to 3/6/2026\n\n" + kDayOne +
                     "\nWednesday, 3/4/2026\n"
                     "    All Day, every month on day 4\n    Memo: Rent\n    Category: Home\n\n"
                     "    6:00 PM, every day\n    Memo: Pills\n    Category: Home\n"
                     "\nThursday, 3/5/2026\n"
                     "    7:30:00 AM\n    Memo: Gym\n    Category: Home\n\n"
                     "    10:00 AM, every year on 3/5\n    Memo: Birthday\n    Category: Home\n\n"
                     "    6:00 PM, every day\n    Memo: Pills\n    Category: Home\n"
                     "\nFriday, 3/6/2026\n"
                     "    6:00 PM, every day\n    Memo: Pills\n    Category: Home\n");
        const auto text = poppler("pdftotext", {pdf, "-"});
        if (!text)
            QSKIP("pdftotext is not installed");
        for (const char *memo : {"Dentist", "Rent", "Gym", "Birthday", "Friday, 3/6/2026"})
            QVERIFY2(text->contains(memo), memo);
    }

    void reversedRangeIsRefused()
    {
        rt::MsgBoxRecorder boxes;
        printRange(DateSerial(2026, 3, 6), DateSerial(2026, 3, 3));
        QCOMPARE(boxes.calls.size(), 1);
        QCOMPARE(boxes.calls[0].style, int(rt::vbCritical));
        QVERIFY(!QFile::exists(files::lastPrintTxt()));
        QCOMPARE(printed, 0);
    }

    void nothingToPrint()
    {
        QFile::remove(files::dataIni());
        rt::MsgBoxRecorder boxes;
        printRange(DateSerial(2026, 3, 3), DateSerial(2026, 3, 3));
        QCOMPARE(readText(files::lastPrintTxt()),
                 QStringLiteral("ORVA Calendar: events on 3/3/2026\n\nNo events.\n"));
        QCOMPARE(boxes.calls.size(), 1);
        QCOMPARE(printed, 0);
    }

    // The whole window on one landscape page, as text and shapes: a bitmap of it would be
    // one image of thousands of pixels a side.
    void printsTheCalendarAsVectors()
    {
        // A day on which nothing is due, so that no reminder goes off.
        rt::Clock::setSource([] { return DateSerial(2026, 7, 1) + 0.5; });
        Form1 form;
        auto *commands = new ShellCommands(&form);
        form.Form_Load();
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        commands->printCalendar();
        QCOMPARE(printed, 1);

        const auto info = poppler("pdfinfo", {pdf});
        const auto text = poppler("pdftotext", {pdf, "-"});
        const auto images = poppler("pdfimages", {"-list", pdf});
        if (!info || !text || !images)
            QSKIP("poppler's tools are not installed");
        const auto size = QRegularExpression("Page size:\\s+([\\d.]+) x ([\\d.]+)").match(*info);
        QVERIFY(size.captured(1).toDouble() > size.captured(2).toDouble());
        QVERIFY(QRegularExpression("Pages:\\s+1\\n").match(*info).hasMatch());
        for (const char *word : {"January", "December", "2026", "Legend", "Work"})
            QVERIFY2(text->contains(word), word);
        // Rows after the two heading lines: page, number, type, width, height, ...
        for (const QString &row : images->split('\n').mid(2, -1)) {
            const QStringList columns = row.simplified().split(' ');
            if (columns.size() > 4)
                QVERIFY2(columns[3].toInt() * columns[4].toInt() < 400 * 400, qPrintable(row));
        }
    }
};

QTEST_MAIN(TestPrint)
#include "tst_print.moc"
