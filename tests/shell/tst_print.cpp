#include "Fixtures.h"
#include "mainwindow/Form1.h"
#include "runtime/Clock.h"
#include "shell/EventsText.h"
#include "shell/Printing.h"
#include "shell/ShellCommands.h"
#include "shell/frmPrint.h"
#include "store/Files.h"

#include <QDateEdit>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

using rt::DateSerial;

namespace
{

const QByteArray kStore =
    "[Categories]\nc=3\n1=More\n2=Work\n3=Home\n[count]\nc=3\n"
    "[1]\nDate=3/3/2026\nTime=9:00 AM\nMemo=Dentist\nCat=Work\n"
    "[2]\nDate=3/3/2026\nTime=00:00\nMemo=&**/home/me/report.sh\nCat=Home\n"
    "[3]\nDate=3/5/2026\nTime=7:30 AM\nMemo=Gym\nCat=Home\n[rcount]\nc=3\n"
    "[r1]\nType=Weekly\nDay=Tuesday\nTime=8:00 AM\nMemo=Standup\nCat=Work\n"
    "[r2]\nType=Monthly\nDay=4\nTime=00:00\nMemo=Rent\nCat=Home\n"
    "[r3]\nType=Yearly\nDay=5\nMonth=3\nTime=10:00 AM\nMemo=Birthday\nCat=Home\n";

// All-day first, then by time; one-off times written as the recurring ones are.
const QString kTuesday = "Tuesday, 3/3/2026\n"
                         "    All Day - Action: /home/me/report.sh (Home)\n"
                         "    9:00 AM - Memo: Dentist (Work)\n";
const QString kWeekly = "Weekly events\n    every Tuesday at 8:00 AM - Memo: Standup (Work)\n";

QString readText(const QString &path)
{
    return QString::fromUtf8(readBytes(path)).remove('\r');
}

// The output of one of poppler's tools; empty when it is not installed.
QString poppler(const QString &tool, const QStringList &arguments)
{
    QProcess process;
    process.start(QStandardPaths::findExecutable(tool), arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

class TestPrint : public QObject
{
    Q_OBJECT

    TestFolder folder;
    QString pdf;
    int printed = 0;

    // A field of what pdfinfo tells of the printed file.
    QString pdfInfo(const QString &field) const
    {
        return QRegularExpression(field + ":\\s+(.*)\n")
            .match(poppler("pdfinfo", {pdf}))
            .captured(1);
    }
    void print(rt::Date from, rt::Date to)
    {
        frmPrint window(from);
        if (from != to) {
            window.findChild<QRadioButton *>("Option2")->setChecked(true);
            window.Option2_Click();
            window.findChild<QDateEdit *>("DTPicker3")
                ->setDate(QDate(rt::Year(to), rt::Month(to), rt::Day(to)));
        }
        window.OKButton_Click();
    }

private slots:
    void initTestCase()
    {
        pdf = folder.dir.filePath("printed.pdf");
        printing::setChoosePrinterForTest([this](QPrinter &printer) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            ++printed;
            return true;
        });
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("poppler's tools are not installed");
    }
    void init()
    {
        TestFolder::setData(kStore);
        QFile::remove(files::lastPrintTxt());
        printed = 0;
    }

    void printsADateAndARange_data()
    {
        QTest::addColumn<rt::Date>("to");
        QTest::addColumn<QString>("text");
        QTest::newRow("a date") << DateSerial(2026, 3, 3)
                                << "ORVA Calendar: events on 3/3/2026\n\n" + kWeekly + "\n" +
                                       kTuesday;
        QTest::newRow("a range")
            << DateSerial(2026, 3, 6)
            << "ORVA Calendar: events from 3/3/2026 to 3/6/2026\n\n" + kWeekly +
                   "\nMonthly events\n    monthly on day 4 - Memo: Rent (Home)\n"
                   "\nYearly events\n    yearly on 3/5 at 10:00 AM - Memo: Birthday (Home)\n\n" +
                   kTuesday + "\nThursday, 3/5/2026\n    7:30 AM - Memo: Gym (Home)\n";
    }
    void printsADateAndARange()
    {
        QFETCH(rt::Date, to);
        QFETCH(QString, text);
        print(DateSerial(2026, 3, 3), to);
        QCOMPARE(readText(files::lastPrintTxt()), text);
        QCOMPARE(printed, 1);
        // What is on the page is the file's text, word for word.
        QCOMPARE(poppler("pdftotext", {pdf, "-"}).simplified(), text.simplified() + " 1");
    }

    // A daily event is listed once, and no page break parts a day's events from its date.
    void longRangesKeepDaysTogether()
    {
        QByteArray store = "[Categories]\nc=2\n1=More\n2=Work\n[rcount]\nc=1\n[r1]\n"
                           "Type=Daily\nTime=8:00 AM\nMemo=Pills\nCat=Work\n[count]\nc=120\n";
        for (int n = 0; n < 120; ++n)
            store +=
                QString::asprintf("[%d]\nDate=4/%d/2026\nTime=9:00 AM\nMemo=E%d-%d\nCat=Work\n",
                                  n + 1, n / 4 + 1, n / 4 + 1, n % 4)
                    .toUtf8();
        TestFolder::setData(store);
        print(DateSerial(2026, 3, 1), DateSerial(2026, 4, 30));
        QCOMPARE(readText(files::lastPrintTxt()).count("Pills"), 1);
        const int pages = pdfInfo("Pages").toInt();
        QVERIFY(pages > 1);
        for (int page = 1; page <= pages; ++page) {
            const QString number = QString::number(page);
            const QString text = poppler("pdftotext", {"-f", number, "-l", number, pdf, "-"});
            for (int day = 1; day <= 30; ++day) {
                const bool dated = text.contains(QString(", 4/%1/2026").arg(day));
                for (int k = 0; k < 4; ++k)
                    QVERIFY2(text.contains(QString("E%1-%2").arg(day).arg(k)) == dated,
                             qPrintable(QString("page %1, day %2").arg(page).arg(day)));
            }
        }
    }

    void refusesAReversedRangeAndPrintsNoEmptyPage()
    {
        rt::MsgBoxRecorder boxes;
        print(DateSerial(2026, 3, 6), DateSerial(2026, 3, 3));
        QVERIFY(!QFile::exists(files::lastPrintTxt()));
        print(DateSerial(2026, 3, 6), DateSerial(2026, 3, 6));
        QCOMPARE(readText(files::lastPrintTxt()),
                 QStringLiteral("ORVA Calendar: events on 3/6/2026\n\nNo events.\n"));
        QCOMPARE(printed, 0);
        QCOMPARE(shownBoxes(boxes), "The range must not end before it starts!|16\n"
                                    "There are no events to print on these dates.|64");
    }

    // The whole window on one landscape page, as text and shapes rather than one big bitmap.
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

        const QStringList size = pdfInfo("Page size").split(' '); // "842 x 595 pts (A4)"
        QVERIFY(size[0].toDouble() > size[2].toDouble());
        QCOMPARE(pdfInfo("Pages"), "1");
        const QString text = poppler("pdftotext", {pdf, "-"});
        for (const char *word : {"January", "December", "2026", "Legend", "Work"})
            QVERIFY2(text.contains(word), word);
        // After two heading lines, one image a row: page, number, type, width, height, ...
        for (const QString &row : poppler("pdfimages", {"-list", pdf}).split('\n').mid(2)) {
            const QStringList columns = row.simplified().split(' ');
            if (columns.size() > 4)
                QVERIFY2(columns[3].toInt() * columns[4].toInt() < 400 * 400, qPrintable(row));
        }
        rt::Clock::setSource({});
    }
};

QTEST_MAIN(TestPrint)
#include "tst_print.moc"
