#include "Fixtures.h"
#include "dialogs/Dialog.h"
#include "dialogs/frmCust.h"
#include "dialogs/frmDaily.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmRemove.h"
#include "runtime/MsgBox.h"
#include "store/DataStore.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDateEdit>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>

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

QByteArray section(int n, const QByteArray &date, const QByteArray &memo)
{
    return "[" + QByteArray::number(n) + "]\nDate=" + date + "\nTime=9:00 AM\nMemo=" + memo +
           "\nCat=Work\n";
}

// Four events on Thursday 29 July 2004, the first two alike in their first ten characters.
const QByteArray kJuly29 = "[count]\nc=4\n" + section(1, "07/29/2004", "Meeting with Bob") +
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

class TestDialogs : public QObject
{
    Q_OBJECT

    TestFolder folder;
    std::optional<MsgBoxRecorder> boxes;
    store::Model model;
    std::unique_ptr<Dialog> dialog;
    std::unique_ptr<frmFind> finder;

    // n one-off events "lunch 1".., then a recurring action whose path holds "Lunch".
    void openFind(int n)
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
    void cleanup() { dialog.reset(), finder.reset(), boxes.reset(); }

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

    // Event 1 of 3: the memo goes past the end, the count stays, and nothing is checked.
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

    // A new category is kept at once, picked colours only with OK (blue is 0xFF0000 stored).
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

    // Without categories OK asks for one first; "More" goes before it, not to be taken for it.
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

    // The remove window: a date's events, shortened; the chosen one goes, moved ones re-dated.
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
        TestFolder::setData(kJuly29 + kRecurring);
        frmRemove window(DateSerial(2004, 7, 1));
        window.findChild<QDateEdit *>("DTPicker1")->setDate(QDate(2004, 7, 29));
        auto *list = window.findChild<QComboBox *>("Combo1");
        QCOMPARE(entries(list),
                 QStringList({"Meeting wi...", "Meeting wi...", "C:\\Reports...", "Four...",
                              "Gym...", "Rent...", "Anniversar...", "Choir..."}));
        QCOMPARE(list->currentIndex(), 0);
        list->setCurrentIndex(entry);
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
        openFind(events);
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

        // No match, searched from the second page: one text, no page, nothing to open.
        find("dinner");
        QCOMPARE(shown(), QStringList{"No Matches Found"});
        QVERIFY(!enabled("cmdnext") && !enabled("cmdBack"));
        finder->txt1_Click(1);
        QCOMPARE(spy.size(), 1);
    }
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
