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

const QString kWrong = "Password is not correct!|Wrong Password|16";

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setStore(const QByteArray &bytes)
{
    QFile::remove(files::passIni());
    QFile file(files::dataIni());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
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

    // OK in frmPassword; change mode starts from the stored "Secret12".
    void passwordWindow_data()
    {
        QTest::addColumn<bool>("change");
        QTest::addColumn<QString>("txtpass");
        QTest::addColumn<QString>("txtpass1");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QByteArray>("passIni");
        QTest::newRow("create: nothing typed") << false << ""
                                               << ""
                                               << "You should type a password!|ORVA Calendar|16"
                                               << "" << QByteArray();
        QTest::newRow("create: not confirmed, by case")
            << false << "Secret"
            << "secret"
            << "Password is not confirmed correctly!|ORVA Calendar|16"
            << "" << QByteArray();
        QTest::newRow("create") << false << "Secret"
                                << "Secret"
                                << ""
                                << "Secret" << QByteArray();
        QTest::newRow("create: outside Windows-1252, '?' on both sides") << false << "\u03a9mega"
                                                                         << "?mega"
                                                                         << ""
                                                                         << "?mega" << QByteArray();
        QTest::newRow("change: old password in the other case")
            << true << "secret12"
            << "abc" << kWrong << "Secret12" << QByteArray();
        QTest::newRow("change: no confirmation; keys 4 to 8 stay") << true << "Secret12"
                                                                   << "abc"
                                                                   << ""
                                                                   << "abc" << QByteArray();
        QTest::newRow("change to empty: only Pass.ini is written")
            << true << "Secret12"
            << ""
            << ""
            << "Secret12" << QByteArray("[count]\r\nc=0\r\n");
    }
    void passwordWindow()
    {
        QFETCH(bool, change);
        setStore(change ? "[pcount]\r\nc=8\r\n[pass]\r\n1=83\r\n2=101\r\n3=99\r\n4=114\r\n"
                          "5=101\r\n6=116\r\n7=49\r\n8=50\r\n"
                        : "");
        const QByteArray before = fileBytes(files::dataIni());
        QString stored = store::readPassword();
        frmPassword window(stored);
        if (change)
            window.chPass();
        window.show();
        QFETCH(QString, txtpass);
        QFETCH(QString, txtpass1);
        window.txtpass()->setText(txtpass);
        window.txtpass1()->setText(txtpass1);
        rt::MsgBoxRecorder recorder;
        window.findChild<QPushButton *>("OKButton")->click();
        QTEST(boxes(recorder), "box");
        QCOMPARE(window.isVisible(), !recorder.calls.isEmpty());
        QTEST(store::readPassword(), "stored");
        QTEST(fileBytes(files::passIni()), "passIni");
        if (store::readPassword() == "abc")
            QCOMPARE(ReadINI(files::dataIni(), "pass", "8", ""), QString("50"));
        else if (change)
            QCOMPARE(fileBytes(files::dataIni()), before);
    }

    void gate_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("typed"); // empty where no prompt may show
        QTest::addColumn<QString>("box");
        const QByteArray secret = "[pcount]\r\nc=6\r\n[pass]\r\n1=83\r\n2=101\r\n3=99\r\n4=114\r\n"
                                  "5=101\r\n6=116\r\n";
        QTest::newRow("no password") << QByteArray() << ""
                                     << "";
        QTest::newRow("count 0") << QByteArray("[pcount]\r\nc=0\r\n") << ""
                                 << "";
        QTest::newRow("right") << secret << "Secret"
                               << "";
        QTest::newRow("other case") << secret << "secret" << kWrong;
        QTest::newRow("one short") << secret << "Secre" << kWrong;
    }
    void gate()
    {
        QFETCH(QByteArray, store);
        QFETCH(QString, typed);
        setStore(store);
        bool prompted = false;
        QTimer answer;
        answer.setSingleShot(true);
        connect(&answer, &QTimer::timeout, [&] {
            if (auto *prompt = qobject_cast<frmpass *>(QApplication::activeModalWidget())) {
                prompted = true;
                QCOMPARE(prompt->txtpass()->echoMode(), QLineEdit::Password);
                prompt->txtpass()->setText(typed);
                prompt->findChild<QPushButton *>("OKButton")->click();
            }
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
        QCOMPARE(ended, !recorder.calls.isEmpty());
        QCOMPARE(form.findChild<QTimer *>("Timer1")->isActive(), !ended);
    }

    void cancelEndsTheProgram()
    {
        QString entered;
        frmpass prompt(entered);
        for (auto cancel : {&frmpass::CancelButton_Click, &frmpass::reject})
            QVERIFY_THROWS_EXCEPTION(Ended, (prompt.*cancel)());
    }

    void optionsMenu_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<QString>("stored"); // empty: "Create Password" is offered
        QTest::newRow("count 0") << QByteArray("[pcount]\r\nc=0\r\n") << "";
        QTest::newRow("empty count") << QByteArray("[pcount]\r\nc=\r\n") << "";
        QTest::newRow("set") << QByteArray("[pcount]\r\nc=2\r\n[pass]\r\n1=79\r\n2=107\r\n")
                             << "Ok";
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
