#include "Fixtures.h"
#include "dialogs/frmCust.h"
#include "runtime/MsgBox.h"

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QTimer>

namespace
{

const QByteArray kCategories = "[Categories]\nc=3\n1=More\n1c=8421504\n2=Work\n2c=255\n"
                               "3=Health\n3c=65535\n";

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

class TestFrmCust : public QObject
{
    Q_OBJECT

    TestFolder folder;

    static QComboBox *cmbcat(frmCust &window) { return window.findChild<QComboBox *>("cmbcat"); }
    static void choose(frmCust &window, const QString &entry)
    {
        cmbcat(window)->setCurrentText(entry);
        window.cmbcat_Click();
    }

private slots:
    void init() { TestFolder::setData(kCategories); }

    void categoryOneStandsForSeveralEvents()
    {
        frmCust window;
        QStringList entries;
        for (int i = 0; i < cmbcat(window)->count(); ++i)
            entries << cmbcat(window)->itemText(i);
        QCOMPARE(entries, QStringList({"More than one event", "Work", "Health", "New.."}));
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
        rt::MsgBoxRecorder boxes;
        boxes.nextInputs << "Sports";
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

    // The first category of an empty store would be taken for "More".
    void aFirstCategoryComesAfterMore()
    {
        TestFolder::setData("");
        rt::MsgBoxRecorder boxes;
        boxes.nextInputs << "Work";
        frmCust window;
        choose(window, "New..");
        QCOMPARE(TestFolder::data(), crlf("[Categories]\nc=2\n1=More\n1c=0\n2=Work\n2c=0\n"));
        QCOMPARE(cmbcat(window)->currentText(), "Work");
    }
};

QTEST_MAIN(TestFrmCust)
#include "tst_frmcust.moc"
