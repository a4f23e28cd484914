#include "DataTable.h"
#include "Fixtures.h"
#include "mainwindow/Form1.h"
#include "runtime/MsgBox.h"
#include "security/frmPassword.h"
#include "security/frmpass.h"
#include "store/DataStore.h"
#include "store/ini.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace
{

const QString kWrong = "Password is not correct!|16|Wrong Password";
// "Secret12", one character code per key.
const QByteArray kSecret12 =
    "[pcount]\nc=8\n[pass]\n1=83\n2=101\n3=99\n4=114\n5=101\n6=116\n7=49\n8=50\n";

void setStore(const QByteArray &text)
{
    QFile::remove(files::passIni());
    TestFolder::setData(text);
}

} // namespace

class TstPassword : public QObject
{
    Q_OBJECT

    TestFolder folder;

private slots:
    // OK in frmPassword; change mode starts from the stored "Secret12".
    void passwordWindow_data()
    {
        columns<bool, QString, QString, QString, QString, QByteArray>(
            "change", "txtpass", "txtpass1", "box", "stored", "passIni");
        const auto row = [](const char *name, bool change, const QString &txtpass,
                            const QString &txtpass1, const QString &box, const QString &stored,
                            const QByteArray &passIni = {}) {
            QTest::newRow(name) << change << txtpass << txtpass1 << box << stored << passIni;
        };
        row("create: nothing typed", false, "", "", "You should type a password!|16", "");
        row("create: not confirmed, by case", false, "Secret", "secret",
            "Password is not confirmed correctly!|16", "");
        row("create: outside Windows-1252, '?' on both sides", false, "\u03a9mega", "?mega", "",
            "?mega");
        row("change: old password one short", true, "Secret1", "abc", kWrong, "Secret12");
        row("change: no confirmation; keys 4 to 8 stay", true, "Secret12", "abc", "", "abc");
        row("change to empty: only Pass.ini is written", true, "Secret12", "", "", "Secret12",
            "[count]\r\nc=0\r\n");
    }
    void passwordWindow()
    {
        QFETCH(bool, change);
        QFETCH(QString, txtpass);
        QFETCH(QString, txtpass1);
        setStore(change ? kSecret12 : "");
        const QByteArray before = TestFolder::data();
        const QString stored = store::readPassword();
        frmPassword window(stored);
        if (change)
            window.chPass();
        window.show();
        window.txtpass()->setText(txtpass);
        window.txtpass1()->setText(txtpass1);
        rt::MsgBoxRecorder recorder;
        window.findChild<QPushButton *>("OKButton")->click();
        QTEST(shownBoxes(recorder), "box");
        QCOMPARE(window.isVisible(), !recorder.calls.isEmpty());
        QTEST(store::readPassword(), "stored");
        QTEST(readBytes(files::passIni()), "passIni");
        if (store::readPassword() == "abc")
            QCOMPARE(ReadINI(files::dataIni(), "pass", "8", ""), QString("50"));
        else if (change)
            QCOMPARE(TestFolder::data(), before);
    }

    // Cancel ends the program as a wrong password does (that one is tried end to end).
    void cancelEndsTheProgram()
    {
        QString entered;
        frmpass prompt(entered);
        for (auto cancel : {&frmpass::CancelButton_Click, &frmpass::reject})
            QVERIFY(exitCodeOf([&] { (prompt.*cancel)(); }) >= 0);
    }

    void optionsMenu_data()
    {
        // stored: empty where "Create Password" is offered
        columns<QByteArray, QString>("store", "stored");
        QTest::newRow("count 0") << QByteArray("[pcount]\nc=0\n") << "";
        QTest::newRow("empty count") << QByteArray("[pcount]\nc=\n") << "";
        QTest::newRow("set") << QByteArray("[pcount]\nc=2\n[pass]\n1=79\n2=107\n") << "Ok";
    }
    void optionsMenu()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, stored);
        setStore(store);
        Form1 form;
        emit form.findChild<QMenu *>("options")->aboutToShow();
        QCOMPARE(form.findChild<QAction *>("chPass")->isEnabled(), !stored.isEmpty());
        QCOMPARE(form.findChild<QAction *>("cpass")->isEnabled(), stored.isEmpty());
        QCOMPARE(form.storedPassword(), stored);

        // One window: created modeless, then switched to change mode.
        form.cpass_Click();
        auto *window = form.findChild<frmPassword *>();
        QVERIFY(window->isVisible() && !window->isModal() && !window->changeMode());
        form.chPass_Click();
        QCOMPARE(form.findChildren<frmPassword *>().size(), 1);
        QVERIFY(window->changeMode());
    }
};

QTEST_MAIN(TstPassword)
#include "tst_password.moc"
