#include "DataTable.h"
#include "TextFits.h"
#include "runtime/Clock.h"
#include "runtime/RuntimeError.h"
#include "runtime/Twips.h"
#include "yearcalendar/UserControl1.h"

#include <QAccessible>
#include <QApplication>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace
{

constexpr rt::WinColor kGreen = 0x00FF00;

QString iso(rt::Date d)
{
    return QDate(rt::Year(d), rt::Month(d), rt::Day(d)).toString(Qt::ISODate);
}

QColor back(const QWidget *w)
{
    return w->palette().color(QPalette::Window);
}

// Writes down every event of the control, with the selected date as the host sees it then.
struct EventLog {
    QStringList lines;
    explicit EventLog(UserControl1 &c)
    {
        QObject::connect(&c, &UserControl1::DateClick, [&](rt::Date d) {
            lines << "DateClick " + iso(d) + " selected " + iso(c.Selected());
        });
        QObject::connect(&c, &UserControl1::DateRClick,
                         [&](rt::Date d) { lines << "DateRClick " + iso(d); });
        QObject::connect(&c, &UserControl1::DateDblClick,
                         [&](rt::Date d) { lines << "DateDblClick " + iso(d); });
        QObject::connect(&c, &UserControl1::YearChanged, [&] { lines << "YearChanged"; });
    }
};

QString spokenName(QWidget *w)
{
    return QAccessible::queryAccessibleInterface(w)->text(QAccessible::Name);
}

// Gives the focus to the day cell whose name starts with the date; returns the cell.
QWidget *focusDayCell(UserControl1 &c, const QString &date)
{
    for (QLabel *cell : c.findChildren<QLabel *>()) {
        if (cell->isVisible() && spokenName(cell).startsWith(date)) {
            cell->setFocus();
            return cell;
        }
    }
    return nullptr;
}

} // namespace

class TestUserControl1 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        rt::setDpiForTest(144); // 10 twips to the pixel
        rt::Clock::setSource([] { return rt::DateSerial(2024, 3, 15) + 0.25; });
    }
    void cleanup()
    {
        rt::Clock::setSource({});
        rt::setDpiForTest(0);
    }

    // A year button clicks January's cell 20 before YearChanged, the old selection still on.
    void mouse_data()
    {
        columns<QString, QStringList, QString, int>("action", "events", "selected", "year");
        const QString click = "DateClick 2024-03-15 selected 2024-01-20";
        const auto row = [](const char *name, const char *action, const QStringList &events,
                            const char *selected, int year = 2024) {
            QTest::newRow(name) << QString(action) << events << QString(selected) << year;
        };
        row("left click", "left", {click}, "2024-03-15");
        row("left released elsewhere", "drag", {}, "2024-01-20");
        row("right press", "right", {"DateRClick 2024-03-15"}, "2024-01-20");
        row("middle press", "middle", {}, "2024-01-20");
        row("double click", "double", {click, "DateDblClick 2024-03-15"}, "2024-03-15");
        row("cmdRight goes back", "cmdRight",
            {"DateClick 2023-01-21 selected 2024-01-20", "YearChanged"}, "2023-01-21", 2023);
    }
    void mouse()
    {
        QFETCH(QString, action);
        QFETCH(QString, selected);
        QFETCH(int, year);
        UserControl1 c;
        c.show();
        auto *day = c.findChild<QLabel *>("f1_61");
        EventLog log(c);
        if (action == "left") {
            QTest::mouseClick(day, Qt::LeftButton);
        } else if (action == "drag") {
            QTest::mousePress(day, Qt::LeftButton);
            QTest::mouseRelease(day, Qt::LeftButton, {}, QPoint(-5, -5));
        } else if (action == "right") {
            QTest::mousePress(day, Qt::RightButton);
        } else if (action == "middle") {
            QTest::mousePress(day, Qt::MiddleButton);
        } else if (action == "double") {
            QTest::mouseClick(day, Qt::LeftButton);
            QTest::mouseDClick(day, Qt::LeftButton);
            QTest::mouseRelease(day, Qt::LeftButton);
        } else {
            QTest::mouseClick(c.findChild<QPushButton *>(action), Qt::LeftButton);
        }
        QTEST(log.lines, "events");
        QCOMPARE(iso(c.Selected()), selected);
        QCOMPARE(c.displayedYear(), year);
        QCOMPARE(c.findChild<QLineEdit *>("Label12")->text(), QString::number(year));
        // Today's red stays with 15 March of its own year.
        QCOMPARE(day->palette().color(QPalette::WindowText) == QColor(Qt::red), year == 2024);
        const bool moved = selected == "2024-03-15";
        QCOMPARE(back(day) == QColor(157, 157, 157), moved);
        QCOMPARE(back(c.findChild<QLabel *>("j1_20")) == QColor(157, 157, 157), !moved);
    }

    // Keys take the mouse's paths; Ctrl+PageUp/Down press the year buttons, the day kept.
    void keys_data()
    {
        // key: with its modifiers
        columns<QString, int, QStringList, QString>("from", "key", "events", "focused");
        const QString today = "Friday 15 March 2024";
        const auto row = [&](const char *name, int key, const QStringList &events,
                             const QString &focused, const QString &from = {}) {
            QTest::newRow(name) << (from.isEmpty() ? today : from) << key << events << focused;
        };
        const QString next = "DateClick 2025-01-18 selected 2024-01-20";
        row("space clicks", Qt::Key_Space, {"DateClick 2024-03-15 selected 2024-01-20"},
            today + ", today, selected");
        row("ctrl+page down", (Qt::ControlModifier | Qt::Key_PageDown).toCombined(),
            {next, "YearChanged"}, "Saturday 15 March 2025");
        row("down a week", Qt::Key_Down, {}, "Friday 22 March 2024");
        row("end of the month", Qt::Key_End, {}, "Sunday 31 March 2024");
        row("right past the year", Qt::Key_Right, {next, "YearChanged"}, "Wednesday 1 January 2025",
            "Tuesday 31 December 2024");
    }
    void keys()
    {
        QFETCH(QString, from);
        QFETCH(int, key);
        UserControl1 c;
        c.show();
        QVERIFY(QTest::qWaitForWindowActive(&c));
        QWidget *cell = focusDayCell(c, from);
        EventLog log(c);
        QTest::keyClick(cell, Qt::Key(key & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
        QTEST(log.lines, "events");
        QTEST(spokenName(QApplication::focusWidget()), "focused");
    }

    // A cell's name: its date spoken, the grid's marks, and the host's words for its colour.
    void names()
    {
        UserControl1 c;
        c.SetDayBackColor(rt::DateSerial(2024, 3, 16), kGreen);
        QList<std::optional<rt::WinColor>> painted;
        c.setDayDetails([&](rt::Date d, std::optional<rt::WinColor> colour) {
            painted << colour;
            return rt::Day(d) == 16 ? QString("Work: Payday, all day") : QString();
        });
        QCOMPARE(c.dayName(yearcal::f1(62)), "Saturday 16 March 2024, Work: Payday, all day");
        QCOMPARE(c.dayName(yearcal::j1(20)), QString("Saturday 20 January 2024, selected"));
        QCOMPARE(painted, (QList<std::optional<rt::WinColor>>{kGreen, std::nullopt}));
        QCOMPARE(c.dayName(yearcal::j1(0)), QString()); // an unused cell
    }

    // Typing a year and Enter only refills the grid: no event; selection and colours stay.
    void enterRefillsOnly()
    {
        UserControl1 c;
        c.show();
        c.SetDayBackColor(rt::DateSerial(2024, 3, 3), kGreen);
        auto *march3 = c.findChild<QLabel *>("f1_49");
        QCOMPARE(back(march3), rt::toQColor(kGreen));
        EventLog log(c);
        auto *box = c.findChild<QLineEdit *>("Label12");
        box->selectAll();
        QTest::keyClicks(box, "2028");
        QCOMPARE(c.displayedYear(), 2024);
        QTest::keyClick(box, Qt::Key_Return);

        QCOMPARE(c.displayedYear(), 2028);
        QVERIFY(log.lines.isEmpty());
        QCOMPARE(iso(c.Selected()), "2024-01-20");
        QCOMPARE(back(march3), rt::toQColor(kGreen));
        QCOMPARE(march3->text(), "5");
        QCOMPARE(back(c.findChild<QLabel *>("j1_20")), QColor(157, 157, 157));

        c.j1_Click(20);
        QCOMPARE(back(march3), QColor(Qt::white));

        c.Label12_KeyPress('a');
        for (const char *text : {"next", "99", "10000"}) {
            box->setText(text);
            QVERIFY_THROWS_EXCEPTION(rt::RuntimeError, c.Label12_KeyPress(13));
        }
    }

    // At any size the grids reach down to the control's bottom edge, and no text is cut.
    void fillsAndFits_data()
    {
        QTest::addColumn<QSize>("size"); // at 10 twips to the pixel
        QTest::newRow("as designed") << QSize(1084, 744);
        QTest::newRow("lower") << QSize(1084, 500);
        QTest::newRow("1366x768 maximised") << QSize(1709, 1085);
        QTest::newRow("2560x1440 maximised") << QSize(3203, 2097);
    }

    void fillsAndFits()
    {
        QFETCH(QSize, size);
        UserControl1 c;
        c.show();
        c.resize(size);
        const QRect used = c.childrenRect();
        QCOMPARE_LT(used.bottom(), size.height());
        QCOMPARE_GT(used.bottom(), size.height() * 0.95);
        QCOMPARE_LT(used.right(), size.width());
        for (const QLabel *label : c.findChildren<QLabel *>())
            QVERIFY2(!label->isVisible() || textFits(label),
                     qPrintable(label->objectName() + " cuts " + label->text()));
        const auto *year = c.findChild<QLineEdit *>("Label12");
        QCOMPARE_LE(year->fontMetrics().height(), year->contentsRect().height());
        QCOMPARE_LE(year->fontMetrics().horizontalAdvance(year->text()), year->width());
        // The buttons flank the year box without touching it, their signs whole.
        const auto *forward = c.findChild<QPushButton *>("cmdLeft");
        const auto *back = c.findChild<QPushButton *>("cmdRight");
        const int before = year->x() - (forward->x() + forward->width());
        const int after = back->x() - (year->x() + year->width());
        QCOMPARE_GT(before, 0);
        QCOMPARE_LE(qAbs(before - after), 1); // pixels rounded apart
        for (const QPushButton *button : {forward, back}) {
            QCOMPARE_LE(button->fontMetrics().height(), button->height());
            QCOMPARE_LE(button->fontMetrics().horizontalAdvance(button->text()), button->width());
        }
    }
};

QTEST_MAIN(TestUserControl1)
#include "tst_usercontrol1.moc"
