#include "StoreFixture.h"
#include "dialogs/Dialog.h"
#include "runtime/MsgBox.h"
#include "store/DataStore.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QRadioButton>

using namespace rt;

namespace
{

const QByteArray kCategories = "[Categories]\nc=3\n1=More\n1c=8421504\n2=Work\n2c=255\n"
                               "3=Health\n3c=65535\n";
const QByteArray kEvents = "[count]\nc=1\n[1]\nDate=7/1/2004\nTime=00:00\nMemo=Lunch with Ann\n"
                           "Cat=Work\n[rcount]\nc=1\n[r1]\nType=Daily\nTime=9:00 AM\n"
                           "Memo=Standup\nCat=Work\n";

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

    StoreFixture fixture;
    MsgBoxRecorder *boxes = nullptr;
    store::Model model;
    Dialog *dialog = nullptr;

    // A dialog over the given store, opened on 29 July 2004 as the main window would.
    void open(const QByteArray &store)
    {
        StoreFixture::setData(store);
        model = store::loadModel();
        delete dialog;
        dialog = new Dialog(model, DateSerial(2004, 7, 29));
    }
    template <typename T = QWidget> T *c(const char *name)
    {
        T *control = dialog->findChild<T *>(QLatin1String(name));
        if (!control)
            qFatal("no control %s", name);
        return control;
    }
    void check(const char *name) { c<QRadioButton>(name)->setChecked(true); }
    void type(const char *name, const QString &text)
    {
        if (auto *box = dialog->findChild<QComboBox *>(QLatin1String(name)))
            box->setCurrentText(text);
        else
            c<QLineEdit>(name)->setText(text);
    }

private slots:
    void init() { boxes = new MsgBoxRecorder; }
    void cleanup()
    {
        delete dialog;
        dialog = nullptr;
        delete boxes;
    }

    // The count comes first, then the new section's keys.
    void addsAOneOffEvent()
    {
        open(kCategories);
        type("cmbtime", "all DAY");
        type("txtmemo", "Dentist");
        type("cmbcat", "Health");
        dialog->OKButton_Click();
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(boxes->calls.isEmpty());
        QCOMPARE(StoreFixture::data(),
                 StoreFixture::crlf(kCategories + "[count]\nc=1\n[1]\nDate=7/29/2004\n"
                                                  "Time=00:00\nMemo=Dentist\nCat=Health\n"));
    }

    void addsARecurringEvent_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("keys");
        QTest::newRow("daily") << "Optdaily" << QByteArray("Type=Daily\n");
        QTest::newRow("weekly") << "optWeekly" << QByteArray("Type=Weekly\nDay=Friday\n");
        QTest::newRow("monthly") << "optMonthly" << QByteArray("Type=Monthly\nDay=29\n");
        QTest::newRow("yearly") << "optYearly" << QByteArray("Type=Yearly\nDay=29\nMonth=2\n");
    }
    void addsARecurringEvent()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, keys);
        open(kCategories);
        check("Option2");
        check(qPrintable(kind));
        type("txtmonth", "2");
        type("txtday", "29");
        type("txtday1", "Friday");
        type("cmbtime2", "10:30 pm");
        check("Option4");
        type("txtaction", "C:\\Tools\\run.exe");
        dialog->OKButton_Click();
        QCOMPARE(StoreFixture::data(),
                 StoreFixture::crlf(kCategories + "[rcount]\nc=1\n[r1]\n" + keys +
                                    "Time=10:30 PM\nMemo=&**C:\\Tools\\run.exe\nCat=Work\n"));
    }

    void timeCheck_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored"); // empty: rejected
        // clang-format off
        QTest::newRow("single digit minute") << "9:5 pm" << "9:5 PM";
        QTest::newRow("no blank") << "12:00AM" << "12:00AM";
        QTest::newRow("no hour") << ":30 AM" << "";
        QTest::newRow("hour 0") << "0:30 AM" << "";
        QTest::newRow("hour 13") << "13:00 PM" << "";
        QTest::newRow("minute 60") << "10:60 AM" << "";
        QTest::newRow("no AM or PM") << "10:30" << "";
        QTest::newRow("hour no number") << "a:30 AM" << "";
        // clang-format on
    }
    void timeCheck()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        open(kCategories);
        type("cmbtime", typed);
        type("txtmemo", "Dentist");
        dialog->OKButton_Click();
        if (stored.isEmpty()) {
            QCOMPARE(boxes->calls.size(), 1);
            QCOMPARE(boxes->calls[0].prompt, "You should type a valid time!");
            QCOMPARE(boxes->calls[0].style, int(vbCritical));
            QCOMPARE(StoreFixture::data(), StoreFixture::crlf(kCategories));
            QCOMPARE(dialog->result(), int(QDialog::Rejected));
            QCOMPARE(c<QComboBox>("cmbtime")->currentText(), typed.toUpper());
            QCOMPARE(c<QLineEdit>("txtmemo")->text(), "Dentist");
        } else {
            QVERIFY(boxes->calls.isEmpty());
            QCOMPARE(store::readEventRecord(1).time, stored);
        }
    }

    void memoChecks_data()
    {
        QTest::addColumn<bool>("recurring");
        QTest::addColumn<bool>("action");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message"); // empty: accepted

        QTest::newRow("empty memo") << false << false << ""
                                    << "You should type a Memo!";
        QTest::newRow("empty action") << true << true << ""
                                      << "You should type an action!";
        QTest::newRow("memo of a one-off event, another day") << false << false << "Lunch with Ann"
                                                              << "Memo already exists!";
        QTest::newRow("memo of a recurring event, with blanks") << true << false << " Standup "
                                                                << "Memo already exists!";
        QTest::newRow("other case") << false << false << "lunch with ann"
                                    << "";
        QTest::newRow("same text as an action") << false << true << "Lunch with Ann"
                                                << "";
    }
    void memoChecks()
    {
        QFETCH(bool, recurring);
        QFETCH(bool, action);
        QFETCH(QString, text);
        QFETCH(QString, message);
        open(kCategories + kEvents);
        check(recurring ? "Option2" : "Option1");
        check(action ? "Option4" : "Option3");
        type(action ? "txtaction" : "txtmemo", text);
        dialog->OKButton_Click();
        if (message.isEmpty()) {
            QVERIFY(boxes->calls.isEmpty());
            QCOMPARE(store::readCount(store::kCountSection), 2);
        } else {
            QCOMPARE(boxes->calls.size(), 1);
            QCOMPARE(boxes->calls[0].prompt, message);
            QCOMPARE(boxes->calls[0].style, int(vbOKOnly));
            QCOMPARE(StoreFixture::data(), StoreFixture::crlf(kCategories + kEvents));
        }
    }

    // Whatever the memo holds, the store stays readable; what the code page lacks is "?".
    void awkwardMemosAreStoredRaw()
    {
        open(kCategories);
        type("txtmemo", QStringLiteral("a=b; \"q\" \u03a8\r\n[count]\r\nc=9"));
        dialog->OKButton_Click();
        QVERIFY(
            StoreFixture::data().endsWith("Memo=a=b; \"q\" ?\r\nCat=Work\r\n[count]\r\nc=9\r\n"));
        const store::Model after = store::loadModel();
        QCOMPARE(after.eventCount(), 1);
        QCOMPARE(after.events[1].cat, "Work");

        open(kCategories);
        type("txtmemo", QString(40000, u'x'));
        dialog->OKButton_Click();
        QCOMPARE(store::readEventRecord(1).memo, QString(254, u'x'));
    }

    // Event 1 of 3: date, time and category in place, the memo past the end, the count kept,
    // and nothing checked.
    void modifiesAOneOffEvent()
    {
        const QByteArray events = "[count]\nc=3\n[1]\nDate=7/1/2004\nTime=00:00\n"
                                  "Memo=&**C:\\a.txt\nCat=Work\n[2]\nDate=7/2/2004\n"
                                  "Time=9:00 AM\nMemo=Two\nCat=Work\n[3]\nDate=7/3/2004\n"
                                  "Time=9:00 AM\nMemo=Three\nCat=Work\n";
        open(kCategories + events);
        dialog->modi(1);
        QCOMPARE(dialog->windowTitle(), "Modify...");
        QCOMPARE(c<QComboBox>("cmbtime")->currentText(), "All Day");
        QVERIFY(c<QRadioButton>("Option4")->isChecked());
        QCOMPARE(c<QLineEdit>("txtaction")->text(), "C:\\a.txt");
        QCOMPARE(c<QDateEdit>("DTPicker1")->date(), QDate(2004, 7, 1));

        c<QDateEdit>("DTPicker1")->setDate(QDate(2004, 8, 5));
        type("cmbtime", "25:99");
        type("cmbcat", "Health");
        check("Option3");
        type("txtmemo", "Two");
        dialog->OKButton_Click();
        QVERIFY(boxes->calls.isEmpty());
        QCOMPARE(StoreFixture::data(),
                 StoreFixture::crlf(
                     kCategories +
                     QByteArray(events)
                         .replace("Date=7/1/2004\nTime=00:00", "Date=8/5/2004\nTime=25:99")
                         .replace("a.txt\nCat=Work", "a.txt\nCat=Health") +
                     "[4]\nMemo=Two\n"));
    }

    // Recurring event 2 of 5 writes 2 as the count.
    void modifiesARecurringEvent()
    {
        QByteArray recurring = "[rcount]\nc=5\n";
        for (int n = 1; n <= 5; ++n)
            recurring += "[r" + QByteArray::number(n) +
                         "]\nType=Yearly\nDay=29\nMonth=2\n"
                         "Time=00:00\nMemo=m" +
                         QByteArray::number(n) + "\nCat=Work\n";
        open(kCategories + recurring);
        dialog->RModi(2);
        QVERIFY(c<QRadioButton>("optYearly")->isChecked());
        QCOMPARE(c<QComboBox>("txtday")->currentText(), "29");
        QVERIFY(!c("Option1")->isEnabled());
        check("optWeekly");
        type("txtday1", "Monday");
        dialog->OKButton_Click();
        QByteArray expected = recurring;
        expected.replace("c=5", "c=2")
            .replace("[r2]\nType=Yearly\nDay=29\nMonth=2\n", "[r2]\nType=Weekly\nDay=Monday\n"
                                                             "Month=2\n");
        QCOMPARE(StoreFixture::data(), StoreFixture::crlf(kCategories + expected));
    }

    void newCategory_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QByteArray>("added");
        QTest::newRow("new") << "Sports"
                             << "" << QByteArray("4=Sports\n4c=0\n");
        QTest::newRow("other case") << "hEALTH"
                                    << "Category already exists!" << QByteArray();
        QTest::newRow("no answer") << ""
                                   << "" << QByteArray();
    }
    void newCategory()
    {
        QFETCH(QString, answer);
        QFETCH(QString, message);
        QFETCH(QByteArray, added);
        open(kCategories);
        type("cmbcat", "Health");
        dialog->cmbcat_Click();
        boxes->nextInputs << answer;
        type("cmbcat", "New..");
        dialog->cmbcat_Click();
        QCOMPARE(boxes->calls.first().prompt, "Enter the new Category");
        QCOMPARE(boxes->calls.size(), message.isEmpty() ? 1 : 2);
        if (!message.isEmpty()) {
            QCOMPARE(boxes->calls[1].prompt, message);
            QCOMPARE(boxes->calls[1].style, int(vbCritical));
        }
        QByteArray expected = kCategories + added;
        if (!added.isEmpty())
            expected.replace("c=3", "c=4");
        QCOMPARE(StoreFixture::data(), StoreFixture::crlf(expected));
        auto *cmbcat = c<QComboBox>("cmbcat");
        QCOMPARE(cmbcat->itemText(cmbcat->count() - 1), "New..");
        QCOMPARE(cmbcat->count(), added.isEmpty() ? 3 : 4);
        QCOMPARE(cmbcat->currentText(), added.isEmpty() ? "Health" : "Work");
    }
};

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
