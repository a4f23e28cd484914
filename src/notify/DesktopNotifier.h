#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// Sends standard desktop notifications (org.freedesktop.Notifications on the session bus),
// so that reminders stay in the desktop's notification history. Where no notification
// service runs, or there is no session bus, nothing is sent and nothing is said.
class DesktopNotifier
{
public:
    // One notification, without a sound of its own: the alarm window chimes.
    void notify(const QString &summary, const QString &body);

    // The one notification for reminders that came due while the calendar could not show
    // them.
    void notifyMissed(int count);

private:
    // Whether the service shows markup in the body: plain text must then be escaped.
    bool bodyMarkup();

    std::optional<bool> bodyMarkup_; // asked once per service start
    QString owner_;                  // the service's unique name when bodyMarkup_ was asked
};
