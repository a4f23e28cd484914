#include "DataTable.h"
#include "Fixtures.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <utility>

namespace
{

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
        columns<int, int, int, int>("style", "icon", "press", "result");

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

    // A handler failing every tick: one box, the loop runs, the program ends with the status.
    void guardedErrorIsReportedOnce()
    {
        QTimer timer;
        connect(&timer, &QTimer::timeout, rt::guard([] { throw rt::RuntimeError::overflow(); }));
        timer.start(60000);
        rt::MsgBoxRecorder recorder;
        QTimerEvent tick(timer.timerId());
        recorder.onShow = [&, again = true](const rt::MsgBoxCall &) mutable {
            if (std::exchange(again, false))
                QCoreApplication::sendEvent(&timer, &tick);
        };
        QCOMPARE(exitCodeOf([&] { QCoreApplication::sendEvent(&timer, &tick); }),
                 rt::kRuntimeErrorExitCode);
        QCOMPARE(shownBoxes(recorder), "Run-time error '6':\n\nOverflow|16");
        // Once ended, a later error is reported again.
        QCOMPARE(exitCodeOf([] { rt::guarded([] { throw rt::RuntimeError::typeMismatch(); }); }),
                 rt::kRuntimeErrorExitCode);
        QCOMPARE(recorder.calls.size(), 2);
    }
};

QTEST_MAIN(TstRuntimeError)

#include "tst_runtimeerror.moc"
