#include "StoreFixture.h"
#include "dialogs/frmRemove.h"

#include <QComboBox>
#include <QDateEdit>

using namespace rt;

namespace
{

QByteArray section(int n, const QByteArray &date, const QByteArray &memo)
{
    return "[" + QByteArray::number(n) + "]\nDate=" + date + "\nTime=9:00 AM\nMemo=" + memo +
           "\nCat=Work\n";
}

// Four events on Thursday 29 July 2004, the first two alike in their first ten characters.
const QByteArray kEvents = "[count]\nc=4\n" + section(1, "07/29/2004", "Meeting with Bob") +
                           section(2, "7/29/2004", "Meeting with Bobby") +
                           section(3, "7/29/2004", "&**C:\\Reports\\weekly.doc") +
                           section(4, "7/29/2004", "Four");
const QByteArray kRecurring =
    "[rcount]\nc=5\n[r1]\nType=Weekly\nDay=Friday\nTime=1:00 PM\nMemo=Pay day\nCat=Work\n"
    "[r2]\nType=Daily\nDay=\nMonth=\nTime=7:00 AM\nMemo=Gym\nCat=Work\n"
    "[r3]\nType=Monthly\nDay=29\nTime=1:00 PM\nMemo=Rent\nCat=Work\n"
    "[r4]\nType=Yearly\nDay=29\nMonth=7\nTime=1:00 PM\nMemo=Anniversary\nCat=Work\n"
    "[r5]\nType=Weekly\nDay=Thursday\nTime=1:00 PM\nMemo=Choir\nCat=Work\n";

} // namespace

class TestFrmRemove : public QObject
{
    Q_OBJECT

    StoreFixture fixture;

    static QStringList entries(frmRemove &window)
    {
        auto *list = window.findChild<QComboBox *>("Combo1");
        QStringList texts;
        for (int i = 0; i < list->count(); ++i)
            texts << list->itemText(i);
        return texts;
    }
    static void choose(frmRemove &window, int entry)
    {
        window.findChild<QComboBox *>("Combo1")->setCurrentIndex(entry);
        window.OKButton_Click();
    }

private slots:
    void init() { StoreFixture::setData(kEvents + kRecurring); }

    void listsTheEventsOfTheDate_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QStringList>("listed");
        QTest::newRow("thursday the 29th")
            << QDate(2004, 7, 29)
            << QStringList{"Meeting wi...", "Meeting wi...", "C:\\Reports...", "Four...",
                           "Gym...",        "Rent...",       "Anniversar...",  "Choir..."};
        QTest::newRow("friday the 30th")
            << QDate(2004, 7, 30) << QStringList{"Pay day...", "Gym..."};
    }
    void listsTheEventsOfTheDate()
    {
        QFETCH(QDate, date);
        QFETCH(QStringList, listed);
        frmRemove window(DateSerial(2004, 7, 1));
        window.findChild<QDateEdit *>("DTPicker1")->setDate(date);
        QCOMPARE(entries(window), listed);
        QCOMPARE(window.findChild<QComboBox *>("Combo1")->currentIndex(), 0);
    }

    // Later events move down one by one, dates in the run-time's form; the old last section
    // stays behind.
    void removesTheSecondOfFour()
    {
        frmRemove window(DateSerial(2004, 7, 29));
        choose(window, 1);
        QCOMPARE(StoreFixture::data(),
                 StoreFixture::crlf("[count]\nc=3\n" +
                                    section(1, "07/29/2004", "Meeting with Bob") +
                                    section(2, "7/29/2004", "&**C:\\Reports\\weekly.doc") +
                                    section(3, "7/29/2004", "Four") +
                                    section(4, "7/29/2004", "Four") + kRecurring));
    }

    void removesTheLastOnlyByTheCount()
    {
        frmRemove window(DateSerial(2004, 7, 29));
        choose(window, 3);
        QCOMPARE(StoreFixture::data(),
                 StoreFixture::crlf(QByteArray(kEvents).replace("c=4", "c=3") + kRecurring));
    }

    void removesARecurringEvent()
    {
        frmRemove window(DateSerial(2004, 7, 29));
        choose(window, 4); // Gym, recurring event 2 of 5
        // Every key is written, so a section that lacked one gets it at its end.
        const QByteArray expected =
            "[rcount]\nc=4\n[r1]\nType=Weekly\nDay=Friday\nTime=1:00 PM\nMemo=Pay day\nCat=Work\n"
            "[r2]\nType=Monthly\nDay=29\nMonth=\nTime=1:00 PM\nMemo=Rent\nCat=Work\n"
            "[r3]\nType=Yearly\nDay=29\nTime=1:00 PM\nMemo=Anniversary\nCat=Work\nMonth=7\n"
            "[r4]\nType=Weekly\nDay=Thursday\nMonth=\nTime=1:00 PM\nMemo=Choir\nCat=Work\n"
            "[r5]\nType=Weekly\nDay=Thursday\nTime=1:00 PM\nMemo=Choir\nCat=Work\n";
        QCOMPARE(StoreFixture::data(), StoreFixture::crlf(kEvents + expected));
    }
};

QTEST_MAIN(TestFrmRemove)
#include "tst_frmremove.moc"
