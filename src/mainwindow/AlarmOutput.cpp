#include "mainwindow/AlarmOutput.h"

#include "dialogs/frmalarm.h"
#include "mainwindow/ActionLauncher.h"
#include "runtime/RuntimeError.h"

#include <QLineEdit>
#include <QPlainTextEdit>

AlarmOutput::AlarmOutput() = default;
AlarmOutput::~AlarmOutput() = default;

frmalarm &AlarmOutput::fill(const Alarm &alarm)
{
    if (!window_)
        window_ = std::make_unique<frmalarm>();
    window_->setWindowTitle(alarm.category);
    window_->setBackColor(alarm.colour);
    window_->txtMemo()->setPlainText(alarm.memo);
    window_->txttitle()->setText(alarm.when);
    window_->chime();
    // Also in the desktop's history, where memos that share the window are not lost.
    notifier_.notify(alarm.category, alarm.memo + QLatin1Char('\n') + alarm.when);
    return *window_;
}

void AlarmOutput::showOneOffAlarm(const Alarm &alarm)
{
    frmalarm &window = fill(alarm);
    // Over an open modal alarm, the memo takes the window as it is.
    if (!window.isVisible())
        window.setWindowModality(Qt::NonModal);
    window.show();
    window.raise();
    window.activateWindow();
}

void AlarmOutput::showRecurringAlarm(const Alarm &alarm, std::function<void()> closed)
{
    frmalarm &window = fill(alarm);
    // A window already shown modeless only turns modal when it is shown again.
    if (window.isVisible())
        window.hide();
    window.setWindowModality(Qt::ApplicationModal);
    QObject::connect(&window, &QDialog::finished, &window, rt::guard(std::move(closed)),
                     Qt::SingleShotConnection);
    window.show();
    window.raise();
    window.activateWindow();
}

void AlarmOutput::launchAction(const QString &path)
{
    openAction(path);
}
