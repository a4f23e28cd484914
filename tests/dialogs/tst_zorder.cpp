#include "dialogs/ZOrder.h"

#include <QTest>
#include <QWidget>

class TestZOrder : public QObject
{
    Q_OBJECT

private slots:
    // Every place shows the window where it was; only the top-most places change whether it
    // stays on top.
    void placesAndShows_data()
    {
        QTest::addColumn<bool>("wasOnTop");
        QTest::addColumn<InsertAfter>("place");
        QTest::addColumn<bool>("onTop");
        QTest::newRow("top") << false << InsertAfter::Top << false;
        QTest::newRow("top, kept on top") << true << InsertAfter::Top << true;
        QTest::newRow("bottom") << false << InsertAfter::Bottom << false;
        QTest::newRow("top-most") << false << InsertAfter::TopMost << true;
        QTest::newRow("no longer top-most") << true << InsertAfter::NoTopMost << false;
    }
    void placesAndShows()
    {
        QFETCH(bool, wasOnTop);
        QFETCH(InsertAfter, place);
        QFETCH(bool, onTop);
        QWidget window;
        window.setWindowFlag(Qt::WindowStaysOnTopHint, wasOnTop);
        window.setGeometry(40, 50, 200, 100);
        const QRect geometry = window.geometry();
        SetZOrder(&window, place);
        QVERIFY(window.isVisible());
        QCOMPARE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint), onTop);
        QCOMPARE(window.geometry(), geometry);
    }
};

QTEST_MAIN(TestZOrder)
#include "tst_zorder.moc"
