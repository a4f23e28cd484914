#pragma once

#include <QSystemTrayIcon>
#include <QtGlobal>
#include <optional>

// Which activations of the tray icon are the double click that restores the main window.
// An XEmbed tray reports the double click itself. A StatusNotifierItem tray reports every
// click as a single Trigger, so there two Triggers within the double-click interval are one
// double click. A lone Trigger does nothing on either.
class TrayClicks
{
public:
    // msecs: when the activation came, on a clock that never goes back.
    bool isDoubleClick(QSystemTrayIcon::ActivationReason reason, qint64 msecs, int intervalMs);

private:
    std::optional<qint64> lastTrigger_; // a Trigger still waiting for its pair
};
