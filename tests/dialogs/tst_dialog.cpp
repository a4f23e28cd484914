#include "Fixtures.h"
#include "dialogs/Dialog.h"
#include "dialogs/frmCust.h"
#include "runtime/MsgBox.h"
#include "store/DataStore.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDateEdit>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>

using namespace rt;

namespace
{

const QByteArray kCategories = "[Categories]\nc=3\n1=More\n1c=8421504\n2=Work\n2c=255\n"
                               "3=Health\n3c=65535\n";
const QByteArray kEvents = "[count]\nc=1\n[1]\nDate=7/1/2004\nTime=00:00\nMemo=Lunch with Ann\n"
                           "Cat=Work\n[rcount]\nc=1\n[r1]\nType=Daily\nTime=9:00 AM\n"
                           "Memo=Standup\nCat=Work\n";
// What the first category of an empty store writes: "More" comes first, in a colour of its own.
const QByteArray kFirstCategory = "[Categories]\nc=2\n1=More\n1c=14737632\n2=Work\n2c=0\n";

// Answers the colour dialog the window is about to open.
void pickNext(QObject *context, const QColor &colour)
{
    QTimer::singleShot(0, context, [colour] {
        auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setCurrentColor(colour);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

    TestFolder folder;
    std::optional<MsgBoxRecorder> boxes;
    store::Model model;
    std::unique_ptr<Dialog> dialog;

    // A dialog over the given store, opened on 29 July 2004 as the main window would.
    void open(const QByteArray &store)
    {
        TestFolder::setData(store);
        model = store::loadModel();
        dialog = std::make_unique<Dialog>(model, DateSerial(2004, 7, 29));
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

    static QComboBox *cmbcat(frmCust &window) { return window.findChild<QComboBox *>("cmbcat"); }
    static void choose(frmCust &window, const QString &entry)
    {
        cmbcat(window)->setCurrentText(entry);
        window.cmbcat_Click();
    }

private slots:
    void init() { boxes.emplace(); }
    void cleanup() { dialog.reset(), boxes.reset(); }

    // The dialog opens in the memo, and Shift+Tab goes back over the fields that are enabled.
    void keyboard()
    {
        open(kCategories);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        QStringList path{QApplication::focusWidget()->objectName()};
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
            path << QApplication::focusWidget()->objectName();
        }
        QCOMPARE(path.join(' '), QString("txtmemo Option3 cmbcat Option2 cmbtime"));
    }

    // Which boxes give which texts; the store's write order is tested with the store.
    void addsAnEvent_data()
    {
        QTest::addColumn<QString>("kind"); // empty: a one-off event
        QTest::addColumn<QString>("stored");
        const auto row = [](const char *name, const char *kind, const QString &stored) {
            QTest::newRow(name) << QString(kind) << stored;
        };
        const QString tail = "|10:30 PM|&**C:\\Tools\\run.exe|Health";
        row("one-off", "", "7/29/2004|00:00|Dentist|Health");
        row("daily", "Optdaily", "Daily||" + tail);
        row("weekly", "optWeekly", "Weekly|Friday|" + tail);
        row("monthly", "optMonthly", "Monthly|29|" + tail);
        row("yearly", "optYearly", "Yearly|29|2" + tail);
    }
    void addsAnEvent()
    {
        QFETCH(QString, kind);
        open(kCategories);
        type("cmbtime", "all DAY");
        type("txtmemo", "Dentist");
        type("cmbcat", "Health");
        if (!kind.isEmpty()) {
            check("Option2");
            check(qPrintable(kind));
            type("txtmonth", "2");
            type("txtday", "29");
            type("txtday1", "Friday");
            type("cmbtime2", "10:30 pm");
            check("Option4");
            type("txtaction", "C:\\Tools\\run.exe");
        }
        dialog->OKButton_Click();
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(boxes->calls.isEmpty());
        QCOMPARE(
            store::readCount(kind.isEmpty() ? store::kCountSection : store::kRecurringCountSection),
            1);
        QTEST(kind.isEmpty() ? eventText(1) : recurringText(1), "stored");
    }

    // OK either shows one box and stores nothing, or stores the event.
    void validation_data()
    {
        QTest::addColumn<bool>("recurring");
        QTest::addColumn<bool>("action");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("box"); // empty: accepted
        const auto row = [](const char *name, bool recurring, bool action, const char *text,
                            const char *time, const char *box) {
            QTest::newRow(name) << recurring << action << QString(text) << QString(time)
                                << QString(box);
        };
        const char *noTime = "You should type a valid time!|16";
        const char *exists = "Memo already exists!|0";
        row("single digit minute", false, false, "Dentist", "9:5 pm", "");
        row("no blank", false, false, "Dentist", "12:00AM", "");
        row("no hour", false, false, "Dentist", ":30 AM", noTime);
        row("hour 13", false, false, "Dentist", "13:00 PM", noTime);
        row("minute 60", false, false, "Dentist", "10:60 AM", noTime);
        row("no AM or PM", false, false, "Dentist", "10:30", noTime);
        row("empty memo", false, false, "", "9:00 AM", "You should type a Memo!|0");
        row("empty action", true, true, "", "9:00 AM", "You should type an action!|0");
        row("memo of a one-off event, another day", false, false, "Lunch with Ann", "9:00 AM",
            exists);
        row("memo of a recurring event, with blanks", true, false, " Standup ", "9:00 AM", exists);
        row("other case", false, false, "lunch with ann", "9:00 AM", "");
        row("same text as an action", false, true, "Lunch with Ann", "9:00 AM", "");
    }
    void validation()
    {
        QFETCH(bool, recurring);
        QFETCH(bool, action);
        QFETCH(QString, text);
        QFETCH(QString, time);
        QFETCH(QString, box);
        open(kCategories + kEvents);
        check(recurring ? "Option2" : "Option1");
        check(action ? "Option4" : "Option3");
        type(action ? "txtaction" : "txtmemo", text);
        type(recurring ? "cmbtime2" : "cmbtime", time);
        dialog->OKButton_Click();
        QCOMPARE(shownBoxes(*boxes), box);
        if (box.isEmpty()) {
            QCOMPARE(dialog->result(), int(QDialog::Accepted));
            QCOMPARE(store::readEventRecord(2).time, time.toUpper());
        } else {
            QCOMPARE(dialog->result(), int(QDialog::Rejected));
            QCOMPARE(TestFolder::data(), crlf(kCategories + kEvents));
            QCOMPARE(c<QComboBox>(recurring ? "cmbtime2" : "cmbtime")->currentText(),
                     time.toUpper());
        }
    }

    // The file list of the Browse window shows sizes, kinds and dates whole.
    void browseShowsColumnsWhole()
    {
        // Without the column widths a developer's own file dialogs left behind.
        QStandardPaths::setTestModeEnabled(true);
        const auto restore = qScopeGuard([] { QStandardPaths::setTestModeEnabled(false); });
        QSettings(QSettings::UserScope, QStringLiteral("QtProject")).remove("FileDialog");
        open(kCategories);
        QTemporaryDir dir;
        for (const QString name : {"A rather long name of a report.document", "notes.log"})
            writeBytes(dir.filePath(name), QByteArray(123456, 'x'));
        c<QLineEdit>("txtaction")->setText(dir.path() + "/");

        QList<int> widths, contents;
        int length = 0, room = 0;
        QTimer::singleShot(0, dialog.get(), [&] {
            auto *browse = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            auto *tree = browse->findChild<QTreeView *>();
            QAbstractItemView *list = tree; // where the column's size hint is public
            // The folder is read in the background.
            for (int i = 0; i < 100 && tree->model()->rowCount(tree->rootIndex()) < 2; ++i)
                QTest::qWait(50);
            QApplication::processEvents();
            const QHeaderView *header = tree->header();
            for (int column = 0; column < header->count(); ++column) {
                const QString title = tree->model()->headerData(column, Qt::Horizontal).toString();
                widths << header->sectionSize(column);
                contents << std::max(list->sizeHintForColumn(column),
                                     header->fontMetrics().horizontalAdvance(title));
            }
            length = header->length();
            room = tree->viewport()->width();
            browse->reject();
        });
        dialog->cmdbrowse_Click();
        QCOMPARE(widths.size(), 4);
        for (int column = 0; column < widths.size(); ++column)
            QCOMPARE_GE(widths[column], contents[column]);
        QCOMPARE_LE(length, room);
    }

    // The memo box holds no more than a store value may.
    void longMemoIsCut()
    {
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
        QCOMPARE(store::readCount(store::kCountSection), 3);
        QCOMPARE(eventText(1), "8/5/2004|25:99|&**C:\\a.txt|Health");
        QCOMPARE(eventText(4), "||Two|");
    }

    // Recurring event 2 of 5 writes 2 as the count.
    void modifiesARecurringEvent()
    {
        open(kCategories + "[rcount]\nc=5\n[r2]\nType=Yearly\nDay=29\nMonth=2\nTime=00:00\n"
                           "Memo=m2\nCat=Work\n");
        dialog->RModi(2);
        QVERIFY(c<QRadioButton>("optYearly")->isChecked());
        QCOMPARE(c<QComboBox>("txtday")->currentText(), "29");
        QVERIFY(!c("Option1")->isEnabled());
        check("optWeekly");
        type("txtday1", "Monday");
        dialog->OKButton_Click();
        QCOMPARE(store::readCount(store::kRecurringCountSection), 2);
        QCOMPARE(recurringText(2), "Weekly|Monday|2|00:00|m2|Work");
    }

    void newCategory_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("boxes");
        QTest::addColumn<QByteArray>("added");
        const QString ask = "Enter the new Category|0";
        QTest::newRow("new") << "Sports" << ask << QByteArray("4=Sports\n4c=0\n");
        QTest::newRow("other case")
            << "hEALTH" << ask + "\nCategory already exists!|16" << QByteArray();
        QTest::newRow("no answer") << "" << ask << QByteArray();
    }
    void newCategory()
    {
        QFETCH(QString, answer);
        QFETCH(QByteArray, added);
        open(kCategories);
        type("cmbcat", "Health");
        dialog->cmbcat_Click();
        boxes->nextInputs << answer;
        type("cmbcat", "New..");
        dialog->cmbcat_Click();
        QTEST(shownBoxes(*boxes), "boxes");
        QByteArray expected = kCategories + added;
        if (!added.isEmpty())
            expected.replace("c=3", "c=4");
        QCOMPARE(TestFolder::data(), crlf(expected));
        QStringList refilled{"Work", "Health", "New.."};
        if (!added.isEmpty())
            refilled.insert(2, answer);
        QCOMPARE(entries(c<QComboBox>("cmbcat")), refilled);
        QCOMPARE(c<QComboBox>("cmbcat")->currentText(), added.isEmpty() ? "Health" : "Work");
    }

    // The category window.
    void categoryOneStandsForSeveralEvents()
    {
        TestFolder::setData(kCategories);
        frmCust window;
        QCOMPARE(entries(cmbcat(window)),
                 QStringList({"More than one event", "Work", "Health", "New.."}));
        window.selectByName("health");
        QCOMPARE(cmbcat(window)->currentIndex(), 2);
        window.selectByName("More");
        QCOMPARE(cmbcat(window)->currentIndex(), 0);
    }

    // A new category is kept at once; picked colours only with OK. Blue is 0xFF0000 in the
    // store, red 0x0000FF.
    void closing_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("OK") << true;
        QTest::newRow("Cancel") << false;
    }
    void closing()
    {
        QFETCH(bool, ok);
        TestFolder::setData(kCategories);
        boxes->nextInputs << "Sports";
        {
            frmCust window;
            choose(window, "Work");
            pickNext(this, Qt::blue);
            window.cmdpalette_Click();
            choose(window, "New..");
            QCOMPARE(cmbcat(window)->currentText(), "Sports");
            pickNext(this, Qt::red);
            window.cmdpalette_Click();
            if (ok)
                window.OKButton_Click();
            else
                window.reject();
        }
        QByteArray expected = QByteArray(kCategories).replace("c=3", "c=4") + "4=Sports\n4c=0\n";
        if (ok)
            expected.replace("2c=255", "2c=16711680").replace("4c=0", "4c=255");
        QCOMPARE(TestFolder::data(), crlf(expected));
    }

    // Without any category, OK asks for one before the event is written, never "New..";
    // "More" comes first so that the new one is not taken for it.
    void aStoreWithoutCategories_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("named") << "Work"
                               << kFirstCategory + "[count]\nc=1\n[1]\nDate=7/29/2004\n"
                                                   "Time=00:00\nMemo=Dentist\nCat=Work\n";
        QTest::newRow("no answer") << "" << QByteArray();
    }
    void aStoreWithoutCategories()
    {
        QFETCH(QString, answer);
        QFETCH(QByteArray, stored);
        open("");
        type("txtmemo", "Dentist");
        boxes->nextInputs << answer;
        dialog->OKButton_Click();
        QCOMPARE(shownBoxes(*boxes), "Enter the new Category|0");
        QCOMPARE(TestFolder::data(), crlf(stored));
        QCOMPARE(dialog->result(), int(answer.isEmpty() ? QDialog::Rejected : QDialog::Accepted));
    }
};

QTEST_MAIN(TestDialog)
#include "tst_dialog.moc"
