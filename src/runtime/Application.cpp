#include "runtime/Application.h"

#include "runtime/RuntimeError.h"

#include <QScopedValueRollback>

namespace rt
{

Application::Application(int &argc, char **argv) : QApplication(argc, argv) {}

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeError &error) {
        // The error box keeps the event loop, and so the timers, running; a handler that
        // fails on every tick must not stack up boxes while the first one waits.
        if (reportingError_)
            return false;
        const QScopedValueRollback reporting(reportingError_, true);
        reportFatal(error);
    }
}

} // namespace rt
