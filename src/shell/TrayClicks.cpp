#include "shell/TrayClicks.h"

bool TrayClicks::isDoubleClick(QSystemTrayIcon::ActivationReason reason, qint64 msecs,
                               int intervalMs)
{
    if (reason == QSystemTrayIcon::Trigger) {
        if (lastTrigger_ && msecs - *lastTrigger_ <= intervalMs) {
            // A third quick click starts a new pair rather than restoring again.
            lastTrigger_.reset();
            return true;
        }
        lastTrigger_ = msecs;
        return false;
    }
    // The XEmbed tray's own double click ends the press that came before it.
    lastTrigger_.reset();
    return reason == QSystemTrayIcon::DoubleClick;
}
