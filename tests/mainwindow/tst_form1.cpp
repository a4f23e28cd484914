#include "mainwindow/Form1.h"
#include "runtime/Clock.h"
#include "runtime/Locale.h"
#include "runtime/ProgramFolder.h"
#include "runtime/Twips.h"
#include "store/Files.h"
#include "yearcalendar/UserControl1.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using rt::DateSerial;

namespace
{

const QByteArray kStore = "[Categories]\r\nc=3\r\n1=More\r\n1c=100\r\n2=Work\r\n2c=200\r\n"
                          "3=Home\r\n3c=300\r\n"
                          "[rcount]\r\nc=3\r\n[r1]\r\nType=Weekly\r\nDay=Monday\r\nTime=00:00\r\n"
                          "Memo=weekly\r\nCat=Home\r\n[r2]\r\nType=Monthly\r\nDay=10\r\n"
                          "Time=00:00\r\nMemo=monthly\r\nCat=Home\r\n[r3]\r\nType=Yearly\r\n"
                          "Day=10\r\nMonth=3\r\nTime=00:00\r\nMemo=yearly\r\nCat=Work\r\n"
                          "[count]\r\nc=1\r\n[1]\r\nDate=3/3/2026\r\nTime=9:00 AM\r\n"
                          "Memo=Dentist\r\nCat=Work\r\n";

void writeStore(const QByteArray &bytes)
{
    QFile file(files::dataIni());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

QAction *item(Form1 &form, const char *name)
{
    return form.findChild<QAction *>(QLatin1String(name));
}

} // namespace

class TestForm1 : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;

    rt::WinColor colourOn(Form1 &form, int m, int d)
    {
        return form.Cal()->GetDayBackcolor(DateSerial(2026, m, d));
    }

private slots:
    void initTestCase()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
        rt::Clock::setSource([] { return DateSerial(2026, 11, 22) + 0.5; });
        rt::setDpiForTest(96);
    }

    void emptyAndDamagedStores_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("no file") << QByteArray();
        QTest::newRow("garbage") << QByteArray("\xff\x00[[[=\r\n\x80\x81", 10);
        QTest::newRow("counts past the sections") << QByteArray("[count]\r\nc=40\r\n[rcount]\r\n"
                                                                "c=40\r\n[Categories]\r\nc=1\r\n");
    }
    void emptyAndDamagedStores()
    {
        QFETCH(QByteArray, bytes);
        QFile::remove(files::dataIni());
        if (!bytes.isEmpty())
            writeStore(bytes);
        Form1 form;
        form.Form_Load();
        QCOMPARE(colourOn(form, 3, 3), rt::kWhite);
        QVERIFY(!form.findChild<QAction *>("v1_2"));
    }

    void loaderBuildsMenuAndLegend()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        QCOMPARE(form.windowTitle(), QString("ORVA's Calender"));
        QCOMPARE(item(form, "v1_2")->text(), QString("Work"));
        QCOMPARE(item(form, "v1_3")->text(), QString("Home"));
        QVERIFY(item(form, "v1_2")->isChecked());
        QCOMPARE(form.findChild<QLabel *>("lblcat_1")->text(), QString("More"));
        QCOMPARE(form.findChild<QLabel *>("lblcat_3")->text(), QString("Home"));
        QCOMPARE(item(form, "None")->shortcut(), QKeySequence("Ctrl+N"));
        QCOMPARE(item(form, "contents")->shortcut(), QKeySequence("F1"));
    }

    // What the calendar shows for each combination of the View menu.
    void filters_data()
    {
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<rt::WinColor>("march3");  // one-off, Work
        QTest::addColumn<rt::WinColor>("march2");  // weekly Monday, Home
        QTest::addColumn<rt::WinColor>("march10"); // monthly Home and yearly Work: "More"
        QTest::newRow("start: every category") << QStringList() << 200u << 300u << 100u;
        QTest::newRow("none") << QStringList{"None"} << rt::kWhite << rt::kWhite << rt::kWhite;
        QTest::newRow("none, then weekly")
            << QStringList{"None", "weekly"} << rt::kWhite << 300u << rt::kWhite;
        QTest::newRow("none, then yearly")
            << QStringList{"None", "yearly"} << rt::kWhite << rt::kWhite << 200u;
        QTest::newRow("none, yearly, then monthly paints over the yearly day")
            << QStringList{"None", "yearly", "mon"} << rt::kWhite << rt::kWhite << 100u;
        QTest::newRow("none, then Home")
            << QStringList{"None", "v1_3"} << rt::kWhite << 300u << 300u;
        QTest::newRow("Work toggled off") << QStringList{"v1_2"} << rt::kWhite << 300u << 300u;
    }
    void filters()
    {
        QFETCH(QStringList, clicks);
        QFETCH(rt::WinColor, march3);
        QFETCH(rt::WinColor, march2);
        QFETCH(rt::WinColor, march10);
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        for (const QString &name : clicks)
            item(form, qPrintable(name))->trigger();
        QCOMPARE(colourOn(form, 3, 3), march3);
        QCOMPARE(colourOn(form, 3, 2), march2);
        QCOMPARE(colourOn(form, 3, 10), march10);
    }

    // Reloading rebuilds the category items, which take their check from the hidden first one.
    void reloadResetsCategoryChecks()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        form.v1_Click(2);
        QVERIFY(!item(form, "v1_2")->isChecked());
        form.Form_Activate();
        QVERIFY(item(form, "v1_2")->isChecked());
        form.None_Click();
        form.Form_Activate();
        QVERIFY(!item(form, "v1_3")->isChecked());
    }

    // The popup lists the day's events; the date is selected only after it closes.
    void dayPopup()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        QStringList captions;
        QTimer::singleShot(0, &form, [&] {
            auto *popup = form.findChild<QMenu *>("rclick");
            for (QAction *a : popup->actions())
                captions << a->text();
            QVERIFY(form.selectedDate() != DateSerial(2026, 3, 10));
            popup->close();
        });
        form.Cal_DateRClick(DateSerial(2026, 3, 10));
        QCOMPARE(captions, QStringList({"Add Event...", "monthly...", "yearly..."}));
        QCOMPARE(form.selectedDate(), DateSerial(2026, 3, 10));

        QList<int> opened;
        connect(&form, &Form1::modifyRequested, this,
                [&opened](bool recurring, int n) { opened << (recurring ? -n : n); });
        item(form, "n1_3")->trigger();
        QCOMPARE(opened, QList<int>{-3});
    }

    void doubleClickSelectsAndAsksToAdd()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        int asked = 0;
        connect(&form, &Form1::addEventRequested, this, [&asked] { ++asked; });
        form.Cal_DateDblClick(DateSerial(2026, 6, 1));
        QCOMPARE(asked, 1);
        QCOMPARE(form.selectedDate(), DateSerial(2026, 6, 1));
    }

    void resizeIsProportional()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        form.resize(667, 540);
        form.Form_Resize();
        const double w = rt::pixelsToTwips(form.frameGeometry().width());
        QCOMPARE(form.Cal()->width(), rt::twipsToPixels(w * 0.834));
        auto *frame = form.findChild<QWidget *>("Frame1");
        QCOMPARE(frame->x(), rt::twipsToPixels(w * 0.841));
        QCOMPARE(frame->width(), rt::twipsToPixels(w * 0.147));
    }

    void minimisingHidesOnlyWithATray()
    {
        writeStore(kStore);
        Form1 form;
        form.Form_Load();
        form.show();
        form.setHideWhenMinimised(false);
        form.setWindowState(Qt::WindowMinimized);
        QVERIFY(form.isVisible());
        form.setHideWhenMinimised(true);
        form.setWindowState(Qt::WindowNoState);
        form.setWindowState(Qt::WindowMinimized);
        QVERIFY(!form.isVisible());
    }
};

QTEST_MAIN(TestForm1)
#include "tst_form1.moc"
