#include "DataTable.h"
#include "Fixtures.h"
#include "TextFits.h"
#include "mainwindow/Form1.h"
#include "runtime/Clock.h"
#include "yearcalendar/UserControl1.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>
#include <QTimer>

using rt::DateSerial;

namespace
{

// Category 2 on 3 March, weekly Home on 2 March, monthly Home and yearly Work on 10 March.
const QByteArray kStore =
    "[Categories]\nc=3\n1=More\n1c=100\n2=Work\n2c=200\n3=Home\n3c=300\n"
    "[rcount]\nc=3\n[r1]\nType=Weekly\nDay=Monday\nTime=00:00\nMemo=weekly\n"
    "Cat=Home\n[r2]\nType=Monthly\nDay=10\nTime=00:00\nMemo=monthly\nCat=Home\n"
    "[r3]\nType=Yearly\nDay=10\nMonth=3\nTime=00:00\nMemo=yearly\nCat=Work\n"
    "[count]\nc=1\n[1]\nDate=3/3/2026\nTime=9:00 AM\nMemo=Dentist\nCat=Work\n";

// A count of a billion, read as 100,000; category 2 on 3 March, 1001 on 4 March.
const QByteArray kDamaged = "[Categories]\nc=1e9\n2=Work\n2c=200\n1001=Late\n1001c=300\n"
                            "[count]\nc=2\n[1]\nDate=3/3/2026\nTime=9:00 AM\nMemo=a\nCat=Work\n"
                            "[2]\nDate=3/4/2026\nTime=9:00 AM\nMemo=b\nCat=Late\n";

} // namespace

class TestForm1 : public QObject
{
    Q_OBJECT

    TestFolder folder;
    std::unique_ptr<Form1> form_;

    Form1 &load(const QByteArray &store = kStore)
    {
        TestFolder::setData(store);
        form_ = std::make_unique<Form1>();
        form_->Form_Load();
        return *form_;
    }
    QAction *item(const char *name) { return form_->findChild<QAction *>(QLatin1String(name)); }

private slots:
    void initTestCase()
    {
        rt::Clock::setSource([] { return DateSerial(2026, 11, 22) + 0.5; });
    }
    void cleanup() { form_.reset(); }

    // A damaged count: menu items stop at 1,000, the rest share the hidden first one's check.
    void damagedCategoryCount()
    {
        load(kDamaged);
        QCOMPARE(form_->model().categoryCount(), 100000);
        QVERIFY(form_->findChildren<QLabel *>(QRegularExpression("^lblcat_")).size() < 20);
        QCOMPARE(form_->findChildren<QAction *>(QRegularExpression("^v1_")).size(), 1000);
        QStringList asked;
        connect(form_.get(), &Form1::customizeRequested, this,
                [&asked](const QString &name) { asked << name; });
        QTest::mouseClick(form_->findChild<QLabel *>("lblcat_2"), Qt::LeftButton);
        QCOMPARE(asked, QStringList{"Work"});
    }

    // What the calendar shows for each combination of the View menu: "day=colour" of March.
    void filters_data()
    {
        columns<QByteArray, QStringList, QString>("store", "clicks", "march");
        const auto row = [](const char *name, const QByteArray &store, const QStringList &clicks,
                            const char *march) {
            QTest::newRow(name) << store << clicks << QString(march);
        };
        row("start: every category", kStore, {}, "3=200 2=300 10=100");
        row("none", kStore, {"None"}, "3=white 2=white 10=white");
        row("none, then weekly", kStore, {"None", "weekly"}, "3=white 2=300 10=white");
        row("none, then yearly", kStore, {"None", "yearly"}, "3=white 2=white 10=200");
        row("none, yearly, then monthly paints over the yearly day", kStore,
            {"None", "yearly", "mon"}, "3=white 2=white 10=100");
        row("none, then Home", kStore, {"None", "v1_3"}, "3=white 2=300 10=300");
        row("Work toggled off", kStore, {"v1_2"}, "3=white 2=300 10=300");
        row("damaged: none, then Work", kDamaged, {"None", "v1_2"}, "3=200 4=white");
        row("damaged: none, then all", kDamaged, {"None", "allevents"}, "3=200 4=300");
        row("damaged: Work off", kDamaged, {"v1_2"}, "3=white 4=300");
    }
    void filters()
    {
        QFETCH(QByteArray, store);
        QFETCH(QStringList, clicks);
        QFETCH(QString, march);
        load(store);
        for (const QString &name : clicks)
            item(qPrintable(name))->trigger();
        QStringList shown;
        for (const QString &day : march.split(' ')) {
            const QString d = day.section('=', 0, 0);
            const rt::WinColor c = form_->Cal()->GetDayBackcolor(DateSerial(2026, 3, d.toInt()));
            shown << d + '=' + (c == rt::kWhite ? "white" : QString::number(c));
        }
        QCOMPARE(shown.join(' '), march);
    }

    // Reloading rebuilds the category items, which take their check from the hidden first one.
    void reloadResetsCategoryChecks()
    {
        Form1 &form = load();
        QCOMPARE(item("v1_3")->text(), "Home");
        item("v1_2")->trigger();
        QVERIFY(!item("v1_2")->isChecked());
        form.Form_Activate();
        QVERIFY(item("v1_2")->isChecked());
        item("None")->trigger();
        form.Form_Activate();
        QVERIFY(!item("v1_3")->isChecked());
    }

    // The popup lists the day's events; the date is selected only after it closes.
    void dayPopup()
    {
        Form1 &form = load();
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
    }

    // Without a tray to come back from, a minimised window stays one.
    void minimisingWithoutATrayKeepsTheWindow()
    {
        Form1 &form = load();
        form.show();
        form.setHideWhenMinimised(false);
        form.setWindowState(Qt::WindowMinimized);
        QVERIFY(form.isVisible());
    }

    // Maximised: the calendar reaches the bottom, legend above logo inside, no name cut.
    void fillsTheScreen_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("start") << QSize(863, 543);
        QTest::newRow("1366x768") << QSize(1366, 768);
        QTest::newRow("wider only") << QSize(1920, 543);
        QTest::newRow("2560x1440") << QSize(2560, 1440);
    }

    void fillsTheScreen()
    {
        QFETCH(QSize, size);
        load("[Categories]\nc=3\n1=More\n2=Birthday\n3=Holiday\n").show();
        form_->resize(size);
        const QWidget *client = form_->centralWidget();
        const auto box = [client](const char *name) {
            return client->findChild<QWidget *>(name)->geometry();
        };
        QCOMPARE_GT(box("Cal").y() + form_->Cal()->childrenRect().bottom(), client->height() * 0.9);
        for (const char *name : {"Cal", "Frame1", "vScroll1", "Picture1"})
            QCOMPARE_LT(box(name).bottom(), client->height());
        QVERIFY(box("Frame1").contains(box("vScroll1")));
        QCOMPARE_LT(box("Frame1").bottom(), box("Picture1").top());
        for (const char *name : {"lblcat_1", "lblcat_2", "lblcat_3"})
            QVERIFY2(textFits(form_->findChild<QLabel *>(name)), name);
    }
};

QTEST_MAIN(TestForm1)
#include "tst_form1.moc"
