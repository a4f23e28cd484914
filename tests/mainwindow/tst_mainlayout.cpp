#include "mainwindow/MainLayout.h"

#include <QTest>

// Sizes in twips. A point is 20 twips, and a line of the legend's face takes 1.15 of its size.
class TestMainLayout : public QObject
{
    Q_OBJECT

private slots:
    void sizes_data()
    {
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("clientHeight");
        QTest::addColumn<double>("vertical");
        QTest::addColumn<double>("labelPoints");
        QTest::addColumn<double>("titlePoints");
        QTest::newRow("start size") << 12945.0 << 7440.0 << 1.0 << 9.99 << 12.0;
        QTest::newRow("shorter than the start") << 12945.0 << 5000.0 << 1.0 << 9.99 << 12.0;
        QTest::newRow("narrow screen's start") << 11580.0 << 7440.0 << 1.0 << 8.937 << 12.0;
        // Rows that keep their height keep their names' size, however wide the window.
        QTest::newRow("wider only") << 28800.0 << 7440.0 << 1.0 << 9.99 << 12.0;
        QTest::newRow("taller only") << 12945.0 << 14880.0 << 2.0 << 9.99 << 12.0;
        QTest::newRow("1366x768 maximised") << 20490.0 << 10845.0 << 1.4577 << 14.562 << 17.492;
        QTest::newRow("1920x1080 maximised") << 28800.0 << 15570.0 << 2.0927 << 20.907 << 25.113;
        QTest::newRow("2560x1440 maximised") << 38400.0 << 20970.0 << 2.8185 << 28.158 << 33.823;
    }

    void sizes()
    {
        QFETCH(double, width);
        QFETCH(double, clientHeight);
        QFETCH(double, vertical);
        QFETCH(double, labelPoints);
        QFETCH(double, titlePoints);
        const MainLayout l = mainLayout(width, clientHeight);

        QCOMPARE_LT(qAbs(l.vertical - vertical), 0.0001);
        QCOMPARE_LT(qAbs(l.labelFontPoints - labelPoints), 0.001);
        QCOMPARE_LT(qAbs(l.titleFontPoints - titlePoints), 0.001);

        // A window taller than the design is filled, and nothing reaches below it.
        const double bottom = std::max(clientHeight, 7440.0);
        QCOMPARE(l.cal.bottom(), bottom);
        for (const QRectF &part : {l.frame, l.scroll, l.picture})
            QCOMPARE_LE(part.bottom(), bottom);
        QCOMPARE_LE(l.frame.bottom(), l.picture.top());
        QCOMPARE_LE(l.rows.bottom(), l.frame.height());
        QCOMPARE(l.scroll.top(), l.frame.top() + l.rows.top());

        // A name's line, descenders and all, fits its row, and the colour box sits inside it.
        QCOMPARE_LE(l.labelFontPoints * 20 * 1.15, l.rowHeight);
        QCOMPARE_GE(l.boxTop, 0.0);
        QCOMPARE_LE(l.boxTop + l.boxHeight, l.rowHeight);
    }
};

QTEST_APPLESS_MAIN(TestMainLayout)
#include "tst_mainlayout.moc"
