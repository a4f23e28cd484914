#include "Fixtures.h"
#include "dialogs/frmDaily.h"

#include <QSignalSpy>
#include <QTreeWidget>

class TestFrmDaily : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:
    void listsDailyEventsOnly()
    {
        TestFolder::setData("[rcount]\nc=5\n"
                            "[r1]\nType=Daily\nTime=7:00 AM\nMemo=Call home\n"
                            "[r2]\nType=Weekly\nDay=Monday\nTime=7:00 AM\nMemo=Gym\n"
                            "[r3]\nType=Daily\nTime=00:00\nMemo=&**C:\\Program Files\\Backup"
                            "\\backup-every-night.exe\n"
                            "[r4]\nType=Daily\nTime=7:00 AM\nMemo=Call home\n"
                            "[r5]\nType=Yearly\nDay=1\nMonth=1\nTime=00:00\nMemo=New year\n");
        frmDaily window;
        auto *list = window.findChild<QTreeWidget *>("ListView1");
        QCOMPARE(list->headerItem()->text(0), "Time");
        QCOMPARE(list->headerItem()->text(1), "Memo");
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(list->topLevelItem(0)->text(1), "Call home...");
        QCOMPARE(list->topLevelItem(1)->text(0), "00:00");
        QCOMPARE(list->topLevelItem(1)->text(1), "C:\\Program Files\\Backup\\backup...");

        // Rows that read alike still open their own events.
        QSignalSpy spy(&window, &frmDaily::RModiRequested);
        window.ListView1_ItemClick(list->topLevelItem(2));
        window.ListView1_ItemClick(list->topLevelItem(0));
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy[0][0].toInt(), 4);
        QCOMPARE(spy[1][0].toInt(), 1);
    }
};

QTEST_MAIN(TestFrmDaily)
#include "tst_frmdaily.moc"
