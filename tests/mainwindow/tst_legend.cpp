#include "DataTable.h"
#include "mainwindow/Legend.h"
#include "runtime/Colors.h"
#include "runtime/Twips.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

namespace
{

// A legend 14.8 rows high between two buttons, as in the main window's frame.
struct Window {
    QWidget window;
    QPushButton *before = new QPushButton(&window);
    QScrollBar *bar = new QScrollBar(Qt::Vertical, &window);
    Legend *legend = new Legend(bar, &window);
    QPushButton *after = nullptr;
    QList<int> clicked;

    explicit Window(int count, const QString &name = {})
    {
        QStringList names{QString(), "More"}, colours{QString(), "255"};
        for (int i = 2; i <= count; ++i) {
            names << (name.isEmpty() ? QStringLiteral("c%1").arg(i) : name);
            colours << QString::number(i);
        }
        legend->setGeometry(0, 40, 120, rt::twipsToPixels(3990));
        legend->setColumns(1900, 10);
        legend->setCategories(names.mid(0, count + 1), colours.mid(0, count + 1));
        after = new QPushButton(&window);
        before->setObjectName("before");
        after->setObjectName("after");
        window.resize(200, 450);
        QObject::connect(legend, &Legend::rowClicked, [this](int i) { clicked << i; });
        window.show();
        window.activateWindow();
    }
    QList<QLabel *> labels() const { return legend->findChildren<QLabel *>(); }
    QLabel *row(int index) const
    {
        return legend->findChild<QLabel *>(QStringLiteral("lblcat_%1").arg(index));
    }
    // The rows wholly in view, top to bottom.
    QList<int> inView() const
    {
        QList<int> rows;
        for (QLabel *label : labels()) {
            if (label->isVisible() && legend->rect().contains(label->geometry()))
                rows << label->objectName().mid(7).toInt();
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }
};

QString span(const QList<int> &rows)
{
    return rows.isEmpty() ? QString() : QStringLiteral("%1-%2").arg(rows.first()).arg(rows.last());
}

} // namespace

class TstLegend : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { rt::setDpiForTest(96); }

    // However many categories, only about a screenful of rows exists.
    void onlyTheRowsInViewExist_data()
    {
        // scrollTo: -1 for the end
        columns<int, int, QString, double>("count", "scrollTo", "inView", "scale");
        QTest::newRow("none") << 0 << 0 << "" << 1.0;
        QTest::newRow("three") << 3 << 0 << "1-3" << 1.0;
        QTest::newRow("100,000, at the top") << 100000 << 0 << "1-14" << 1.0;
        QTest::newRow("100,000, half a row down") << 100000 << 135 << "2-15" << 1.0;
        QTest::newRow("100,000, in the middle") << 100000 << 270 * 50000 << "50001-50014" << 1.0;
        QTest::newRow("100,000, at the end") << 100000 << -1 << "99987-100000" << 1.0;
        QTest::newRow("taller rows, at the end") << 100000 << -1 << "99992-100000" << 1.5;
    }
    void onlyTheRowsInViewExist()
    {
        QFETCH(int, count);
        QFETCH(int, scrollTo);
        QFETCH(double, scale);
        Window w(count);
        w.legend->setRowScale(scale);
        w.bar->setValue(scrollTo < 0 ? w.bar->maximum() : scrollTo);
        QTEST(span(w.inView()), "inView");
        QVERIFY(w.labels().size() <= 16);
        if (count > 0) {
            const int last = w.inView().last();
            QCOMPARE(w.row(last)->height(), rt::twipsToPixels(270 * scale));
            auto *box = w.legend->findChild<QFrame *>(QStringLiteral("shpcat_%1").arg(last),
                                                      Qt::FindDirectChildrenOnly);
            QCOMPARE(box->palette().color(QPalette::Window), rt::toQColor(last == 1 ? 255 : last));
            QCOMPARE(w.row(last)->text(), last == 1 ? "More" : QStringLiteral("c%1").arg(last));
        }
    }

    // A click, Enter or Space opens the category the row shows; the wheel scrolls.
    void clicksKeysAndWheel()
    {
        Window w(100000);
        w.bar->setValue(270 * 500);
        QTest::mouseClick(w.row(503), Qt::LeftButton);
        w.row(504)->setFocus();
        QTest::keyClick(w.row(504), Qt::Key_Return);
        QTest::keyClick(w.row(504), Qt::Key_Space);
        QCOMPARE(w.clicked, QList<int>({503, 504, 504}));
        const QPointF at = w.row(504)->rect().center();
        QWheelEvent down(at, w.row(504)->mapToGlobal(at), {}, {0, -120}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(w.row(504), &down);
        QVERIFY(w.inView().first() > 501);
    }

    // Tab and Shift+Tab walk the rows into view, and leave the legend past its ends.
    void tabGoesRowToRow_data()
    {
        columns<int, int, int, QString>("count", "from", "key", "focused");
        QTest::newRow("down within the view") << 40 << 3 << int(Qt::Key_Tab) << "lblcat_4";
        QTest::newRow("down past the view") << 40 << 14 << int(Qt::Key_Tab) << "lblcat_15";
        QTest::newRow("up past view") << 100000 << 99987 << int(Qt::Key_Backtab) << "lblcat_99986";
        QTest::newRow("out past the last") << 3 << 3 << int(Qt::Key_Tab) << "after";
        QTest::newRow("out before the first") << 40 << 1 << int(Qt::Key_Backtab) << "before";
    }
    void tabGoesRowToRow()
    {
        QFETCH(int, count);
        QFETCH(int, from);
        QFETCH(int, key);
        Window w(count);
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        w.bar->setValue(from > 14 ? w.bar->maximum() : 0);
        w.row(from)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        const QString name = QApplication::focusWidget()->objectName();
        QTEST(name, "focused");
        if (name.startsWith("lblcat_"))
            QVERIFY(w.inView().contains(name.mid(7).toInt()));
    }

    // A long name is cut to the label and given whole in the tool tip and the spoken name.
    void longNames()
    {
        const QString name = "A category with a name far too long for the legend";
        Window w(3, name);
        QVERIFY(w.row(2)->text().endsWith(QChar(0x2026)));
        QCOMPARE(w.row(2)->toolTip(), name + "\nClick to Customize appearance");
        QCOMPARE(w.row(1)->toolTip(), "Click to Customize appearance");
        QVERIFY(w.row(2)->accessibleName().startsWith("Category " + name + ", colour "));
    }
};

QTEST_MAIN(TstLegend)
#include "tst_legend.moc"
