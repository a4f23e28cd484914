#include "Fixtures.h"
#include "runtime/Application.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <utility>

namespace
{

QString describe(const rt::MsgBoxCall &box)
{
    return box.title + '|' + QString::number(box.style) + '|' + box.prompt;
}

constexpr char kFailingTimerChild[] = "--failing-timer";

// A timer whose handler fails on every tick, as a damaged store makes the reminder tick fail.
// The boxes go to standard output; the program ends the real way.
int runFailingTimer(int argc, char **argv)
{
    rt::Application app(argc, argv);
    rt::MsgBoxRecorder recorder;
    recorder.onShow = [](const rt::MsgBoxCall &box) { std::puts(qPrintable(describe(box))); };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [] { throw rt::RuntimeError::typeMismatch(); });
    timer.start(40);
    return app.exec();
}

// Runs `act` on the message box once it shows, so that the box's exec() returns.
template <typename Act> void whenShown(Act act)
{
    auto *poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, [poll, act] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            poll->deleteLater();
            poll->stop();
            act(box);
        }
    });
    poll->start(10);
}

} // namespace

class TstRuntimeError : public QObject
{
    Q_OBJECT

private slots:
    void messageBox_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("icon");
        QTest::addColumn<int>("press");
        QTest::addColumn<int>("result");

        QTest::newRow("critical") << 16 << int(QMessageBox::Critical) << int(QMessageBox::Ok) << 1;
        QTest::newRow("yes") << 36 << int(QMessageBox::Question) << int(QMessageBox::Yes) << 6;
        QTest::newRow("cancel") << 49 << int(QMessageBox::Warning) << int(QMessageBox::Cancel) << 2;
        QTest::newRow("ok") << 65 << int(QMessageBox::Information) << int(QMessageBox::Ok) << 1;
    }
    void messageBox()
    {
        QFETCH(int, style);
        QFETCH(int, press);
        int icon = -1;
        QString shown;
        whenShown([&](QMessageBox *box) {
            icon = box->icon();
            shown = box->windowTitle() + '|' + box->text();
            box->button(QMessageBox::StandardButton(press))->click();
        });
        QTEST(rt::MsgBox(QStringLiteral("Saved."), style), "result");
        QTEST(icon, "icon");
        QCOMPARE(shown, QStringLiteral("ORVA Calendar|Saved."));
    }

    void timerErrorIsReportedOnce()
    {
        QTimer timer;
        connect(&timer, &QTimer::timeout, [] { throw rt::RuntimeError::overflow(); });
        timer.start(60000);
        rt::MsgBoxRecorder recorder;
        // The tick comes round once more while the error box is up.
        QTimerEvent tick(timer.timerId());
        recorder.onShow = [&, again = true](const rt::MsgBoxCall &) mutable {
            if (std::exchange(again, false))
                QCoreApplication::sendEvent(&timer, &tick);
        };
        QCOMPARE(exitCodeOf([&] { QCoreApplication::sendEvent(&timer, &tick); }),
                 rt::kRuntimeErrorExitCode);
        QCOMPARE(recorder.calls.size(), 1);
        QCOMPARE(describe(recorder.calls[0]), "ORVA Calendar|16|Run-time error '6':\n\nOverflow");
    }

    void realEndLeavesTheProcess()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QString(kFailingTimerChild)});
        QVERIFY(child.waitForFinished(30000));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), rt::kRuntimeErrorExitCode);
        QCOMPARE(child.readAllStandardOutput(),
                 QByteArray("ORVA Calendar|16|Run-time error '13':\n\nType mismatch\n"));
    }
};

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], kFailingTimerChild) == 0)
        return runFailingTimer(argc, argv);
    rt::Application app(argc, argv);
    TstRuntimeError test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_runtimeerror.moc"
