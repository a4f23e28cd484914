#include "mainwindow/Form1.h"
#include "runtime/Locale.h"
#include "runtime/MsgBox.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RuntimeError.h"
#include "security/frmPassword.h"
#include "security/frmpass.h"
#include "store/DataStore.h"
#include "store/Files.h"
#include "store/ini.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace
{

struct Ended {
    int exitCode;
};

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setStore(const QByteArray &bytes)
{
    QFile::remove(files::dataIni());
    QFile::remove(files::passIni());
    if (bytes.isNull())
        return;
    QFile file(files::dataIni());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QString boxes(const rt::MsgBoxRecorder &recorder)
{
    QStringList shown;
    for (const rt::MsgBoxCall &call : recorder.calls)
        shown << call.prompt + '|' + call.title + '|' + QString::number(call.style);
    return shown.join('\n');
}

} // namespace

class TstPassword : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;

private slots:
    void initTestCase()
    {
        rt::setProgramFolderForTest(dir.path());
        rt::RtLocale::setForTest(QLocale("en_US"));
        rt::setEndForTest([](int exitCode) { throw Ended{exitCode}; });
    }

    void create_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("confirmation");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("stored");
        QTest::newRow("nothing typed") << ""
                                       << ""
                                       << "You should type a password!|ORVA Calendar|16"
                                       << "";
        QTest::newRow("not confirmed") << "Secret"
                                       << "secret"
                                       << "Password is not confirmed correctly!|ORVA Calendar|16"
                                       << "";
        QTest::newRow("confirmed") << "Secret"
                                   << "Secret"
                                   << ""
                                   << "Secret";
        QTest::newRow("outside Windows-1252: '?' on both sides") << "\u03a9mega"
                                                                 << "?mega"
                                                                 << ""
                                                                 << "?mega";
    }
    void create()
    {
        QFETCH(QString, password);
        QFETCH(QString, confirmation);
        setStore(QByteArray());
        QString stored;
        frmPassword window(stored);
        QCOMPARE(window.windowTitle(), QString("Create Password"));
        QCOMPARE(window.findChild<QLabel *>("Label2")->text(), QString("Confirm Password :"));
        window.show();
        window.txtpass()->setText(password);
        window.txtpass1()->setText(confirmation);
        rt::MsgBoxRecorder recorder;
        window.findChild<QPushButton *>("OKButton")->click();
        QTEST(boxes(recorder), "box");
        QTEST(store::readPassword(), "stored");
        QCOMPARE(window.isVisible(), !recorder.calls.isEmpty());
    }

    // Change mode, over a stored password of eight characters.
    void change_data()
    {
        QTest::addColumn<QString>("old");
        QTest::addColumn<QString>("typedNew");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QByteArray>("passIni");
        QTest::newRow("old password in the other case")
            << "secret12"
            << "abc"
            << "Password is not correct!|Wrong Password|16"
            << "Secret12" << QByteArray();
        QTest::newRow("a new one, without confirmation; keys 4 to 8 stay") << "Secret12"
                                                                           << "abc"
                                                                           << ""
                                                                           << "abc" << QByteArray();
        QTest::newRow("an empty new one only writes Pass.ini")
            << "Secret12"
            << ""
            << ""
            << "Secret12" << QByteArray("[count]\r\nc=0\r\n");
    }
    void change()
    {
        QFETCH(QString, old);
        QFETCH(QString, typedNew);
        setStore(QByteArray());
        store::writePassword("Secret12");
        const QByteArray before = fileBytes(files::dataIni());
        QString stored = store::readPassword();
        frmPassword window(stored);
        window.chPass();
        QCOMPARE(window.windowTitle(), QString("Change Password"));
        QCOMPARE(window.findChild<QLabel *>("Label1")->text(), QString("Enter old Password :"));
        QCOMPARE(window.findChild<QLabel *>("Label2")->text(), QString("Enter new Password :"));
        window.show();
        window.txtpass()->setText(old);
        window.txtpass1()->setText(typedNew);
        rt::MsgBoxRecorder recorder;
        window.OKButton_Click();
        QTEST(boxes(recorder), "box");
        QTEST(store::readPassword(), "stored");
        QTEST(fileBytes(files::passIni()), "passIni");
        QCOMPARE(window.isVisible(), !recorder.calls.isEmpty());
        if (store::readPassword() == "abc")
            QCOMPARE(ReadINI(files::dataIni(), "pass", "8", ""), QString("50"));
        else
            QCOMPARE(fileBytes(files::dataIni()), before);
    }

    void gate_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("typed"); // empty when no prompt is expected
        QTest::addColumn<QString>("box");
        QTest::addColumn<bool>("ended");
        const QByteArray secret = "[pcount]\r\nc=6\r\n[pass]\r\n1=83\r\n2=101\r\n3=99\r\n4=114\r\n"
                                  "5=101\r\n6=116\r\n"; // "Secret"
        QTest::newRow("no password") << QByteArray("") << ""
                                     << "" << false;
        QTest::newRow("count 0") << QByteArray("[pcount]\r\nc=0\r\n") << ""
                                 << "" << false;
        QTest::newRow("right password") << secret << "Secret"
                                        << "" << false;
        QTest::newRow("other case") << secret << "secret"
                                    << "Password is not correct!|Wrong Password|16" << true;
        QTest::newRow("one character short")
            << secret << "Secre"
            << "Password is not correct!|Wrong Password|16" << true;
    }
    void gate()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, typed);
        setStore(store);
        bool prompted = false;
        QTimer answer; // gone with the test when no prompt came
        answer.setSingleShot(true);
        connect(&answer, &QTimer::timeout, [&] {
            auto *prompt = qobject_cast<frmpass *>(QApplication::activeModalWidget());
            if (!prompt)
                return;
            prompted = true;
            QCOMPARE(prompt->windowTitle(), QString("Password"));
            QCOMPARE(prompt->txtpass()->echoMode(), QLineEdit::Password);
            QCOMPARE(prompt->txtpass()->toolTip(), QString("case sensitive."));
            prompt->txtpass()->setText(typed);
            prompt->findChild<QPushButton *>("OKButton")->click();
        });
        answer.start(0);
        rt::MsgBoxRecorder recorder;
        Form1 form;
        bool ended = false;
        try {
            form.Form_Load();
        } catch (const Ended &) {
            ended = true;
        }
        QCOMPARE(prompted, !typed.isEmpty());
        QTEST(boxes(recorder), "box");
        QTEST(ended, "ended");
        QCOMPARE(form.findChild<QTimer *>("Timer1")->isActive(), !ended);
        if (!ended)
            QCOMPARE(form.enteredPassword(), typed);
    }

    void cancelEndsTheProgram()
    {
        QString entered;
        frmpass prompt(entered);
        for (auto cancel : {&frmpass::CancelButton_Click, &frmpass::reject}) {
            int exitCode = -1;
            try {
                (prompt.*cancel)();
            } catch (const Ended &ended) {
                exitCode = ended.exitCode;
            }
            QCOMPARE(exitCode, 0);
        }
    }

    void optionsMenu_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<bool>("set");
        QTest::newRow("no key") << QByteArray("") << false;
        QTest::newRow("count 0") << QByteArray("[pcount]\r\nc=0\r\n") << false;
        QTest::newRow("empty count") << QByteArray("[pcount]\r\nc=\r\n") << false;
        QTest::newRow("a password")
            << QByteArray("[pcount]\r\nc=2\r\n[pass]\r\n1=79\r\n2=107\r\n") << true;
    }
    void optionsMenu()
    {
        QFETCH(QByteArray, store);
        QFETCH(bool, set);
        setStore(store);
        Form1 form;
        emit form.findChild<QMenu *>("options")->aboutToShow();
        QCOMPARE(form.findChild<QAction *>("chPass")->isEnabled(), set);
        QCOMPARE(form.findChild<QAction *>("cpass")->isEnabled(), !set);
        QCOMPARE(form.storedPassword(), set ? QString("Ok") : QString());

        // Create, then change: one window, switched to change mode.
        form.cpass_Click();
        auto *window = form.findChild<frmPassword *>();
        QVERIFY(window && window->isVisible() && !window->isModal() && !window->changeMode());
        form.chPass_Click();
        QCOMPARE(form.findChildren<frmPassword *>().size(), 1);
        QVERIFY(window->changeMode());
        window->CancelButton_Click();
        QTRY_VERIFY(!form.findChild<frmPassword *>());
    }
};

QTEST_MAIN(TstPassword)

#include "tst_password.moc"
