#include "Fixtures.h"
#include "dialogs/frmDaily.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmRemove.h"
#include "store/DataStore.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>

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
                           section(3, "07/29/2004", "&**C:\\Reports\\weekly.doc") +
                           section(4, "7/29/2004", "Four");
const QByteArray kRecurring =
    "[rcount]\nc=5\n[r1]\nType=Weekly\nDay=Friday\nTime=1:00 PM\nMemo=Pay day\nCat=Work\n"
    "[r2]\nType=Daily\nDay=\nMonth=\nTime=7:00 AM\nMemo=Gym\nCat=Work\n"
    "[r3]\nType=Monthly\nDay=29\nTime=1:00 PM\nMemo=Rent\nCat=Work\n"
    "[r4]\nType=Yearly\nDay=29\nMonth=7\nTime=1:00 PM\nMemo=Anniversary\nCat=Work\n"
    "[r5]\nType=Weekly\nDay=Thursday\nTime=1:00 PM\nMemo=Choir\nCat=Work\n";

template <typename Items> QStringList memos(const Items &items)
{
    QStringList texts;
    for (qsizetype n = 1; n < items.size(); ++n)
        texts << items[n].memo;
    return texts;
}

} // namespace

// The windows that list events: remove, daily events and find.
class TestEventLists : public QObject
{
    Q_OBJECT

    TestFolder folder;
    store::Model model;
    std::unique_ptr<frmFind> finder;

    // n one-off events "lunch 1".., then a recurring action whose path holds "Lunch".
    void open(int n)
    {
        model.events = {{}};
        for (int i = 1; i <= n; ++i)
            model.events.append({0, 0, QStringLiteral("lunch %1").arg(i), "Work"});
        model.recurring = {{}, {"Daily", "", "", "00:00", "&**C:\\Lunch\\menu.txt", "Work"}};
        finder = std::make_unique<frmFind>(model);
    }
    void find(const QString &keyword)
    {
        finder->findChild<QLineEdit *>("txtkeyword")->setText(keyword);
        finder->cmdFind_Click();
    }
    QStringList shown() const
    {
        QStringList texts;
        for (int k = 1; k <= frmFind::kPageSize; ++k) {
            auto *box = finder->findChild<QLineEdit *>(QStringLiteral("txt1_%1").arg(k));
            if (!box->isHidden())
                texts << box->text();
        }
        return texts;
    }
    bool enabled(const char *name) const
    {
        return finder->findChild<QPushButton *>(name)->isEnabled();
    }

private slots:
    void init() { TestFolder::setData(kEvents + kRecurring); }
    void cleanup() { finder.reset(); }

    void listsTheEventsOfTheDate()
    {
        frmRemove window(DateSerial(2004, 7, 1));
        window.findChild<QDateEdit *>("DTPicker1")->setDate(QDate(2004, 7, 29));
        auto *list = window.findChild<QComboBox *>("Combo1");
        QCOMPARE(entries(list),
                 QStringList({"Meeting wi...", "Meeting wi...", "C:\\Reports...", "Four...",
                              "Gym...", "Rent...", "Anniversar...", "Choir..."}));
        QCOMPARE(list->currentIndex(), 0);
    }

    // The entry chosen is the item removed; moved events get their dates in the run-time's
    // form.
    void removesTheChosenEntry_data()
    {
        QTest::addColumn<int>("entry");
        QTest::addColumn<QStringList>("events");
        QTest::addColumn<QStringList>("recurring");
        const QStringList events{"Meeting with Bob", "Meeting with Bobby",
                                 "&**C:\\Reports\\weekly.doc", "Four"};
        const QStringList recurring{"Pay day", "Gym", "Rent", "Anniversary", "Choir"};
        QTest::newRow("second one-off")
            << 1 << QStringList{"Meeting with Bob", "&**C:\\Reports\\weekly.doc", "Four"}
            << recurring;
        QTest::newRow("recurring 2 of 5, after one not listed")
            << 4 << events << QStringList{"Pay day", "Rent", "Anniversary", "Choir"};
    }
    void removesTheChosenEntry()
    {
        QFETCH(int, entry);
        frmRemove window(DateSerial(2004, 7, 29));
        window.findChild<QComboBox *>("Combo1")->setCurrentIndex(entry);
        window.OKButton_Click();
        const store::Model model = store::loadModel();
        QTEST(memos(model.events), "events");
        QTEST(memos(model.recurring), "recurring");
        QCOMPARE(store::readEventRecord(1).date, "07/29/2004");
        QCOMPARE(store::readEventRecord(2).date, "7/29/2004");
    }

    // The list of daily events.
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
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(list->topLevelItem(0)->text(1), "Call home...");
        QCOMPARE(list->topLevelItem(1)->text(0), "00:00");
        QCOMPARE(list->topLevelItem(1)->text(1), "C:\\Program Files\\Backup\\backup...");

        // Rows that read alike still open their own events.
        QSignalSpy spy(&window, &frmDaily::RModiRequested);
        window.ListView1_ItemClick(list->topLevelItem(2));
        window.ListView1_ItemClick(list->topLevelItem(0));
        QCOMPARE(spy, (QList<QVariantList>{{4}, {1}}));
    }

    // The find window, seven results a page.
    void pages_data()
    {
        QTest::addColumn<int>("events");
        QTest::addColumn<bool>("next");
        QTest::newRow("seven") << 6 << false;
        QTest::newRow("eight") << 7 << true;
    }
    void pages()
    {
        QFETCH(int, events);
        QFETCH(bool, next);
        open(events);
        find("LUNCH");
        QCOMPARE(shown().size(), 7);
        QCOMPARE(shown().first(), "lunch 1");
        QCOMPARE(enabled("cmdnext"), next);
        QVERIFY(!enabled("cmdBack"));
        if (!next)
            return;
        finder->cmdnext_Click();
        QCOMPARE(shown(), QStringList{"C:\\Lunch\\menu.txt"});
        QVERIFY(!enabled("cmdnext") && enabled("cmdBack"));

        // A click hands on the text as shown.
        QSignalSpy spy(finder.get(), &frmFind::modiRequested);
        QTest::mouseClick(finder->findChild<QLineEdit *>("txt1_1"), Qt::LeftButton);
        QCOMPARE(spy, QList<QVariantList>{{"C:\\Lunch\\menu.txt"}});
    }

    void noMatchStartsAgainOnPageOne()
    {
        open(8);
        find("lunch");
        finder->cmdnext_Click();
        find("dinner");
        QCOMPARE(shown(), QStringList{"No Matches Found"});
        QVERIFY(!enabled("cmdnext") && !enabled("cmdBack"));
        QSignalSpy spy(finder.get(), &frmFind::modiRequested);
        finder->txt1_Click(1);
        QVERIFY(spy.isEmpty());
    }
};

QTEST_MAIN(TestEventLists)
#include "tst_eventlists.moc"
