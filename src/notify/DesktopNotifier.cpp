#include "notify/DesktopNotifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

namespace
{

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kInterface = QStringLiteral("org.freedesktop.Notifications");

// The name of the running service's connection; empty when none runs.
QString serviceOwner(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return {};
    const QDBusReply<QString> owner = bus.interface()->serviceOwner(kService);
    return owner.isValid() ? owner.value() : QString();
}

} // namespace

bool DesktopNotifier::bodyMarkup()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString owner = serviceOwner(bus);
    if (!bodyMarkup_ || owner != owner_) {
        const QDBusReply<QStringList> caps = bus.call(QDBusMessage::createMethodCall(
            kService, kPath, kInterface, QStringLiteral("GetCapabilities")));
        bodyMarkup_ = caps.isValid() && caps.value().contains(QStringLiteral("body-markup"));
        owner_ = owner;
    }
    return *bodyMarkup_;
}

void DesktopNotifier::notify(const QString &summary, const QString &body)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Asked every time: a notification service may come and go while the calendar runs.
    if (serviceOwner(bus).isEmpty())
        return;
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Notify"));
    const QVariantMap hints{
        {QStringLiteral("suppress-sound"), true},
        {QStringLiteral("desktop-entry"), QStringLiteral("orva-calendar")},
    };
    message << QStringLiteral("ORVA Calendar") << 0u << QStringLiteral("orva-calendar") << summary
            << (bodyMarkup() ? body.toHtmlEscaped() : body) << QStringList() << hints << -1;
    // The reply, a notification number, is of no use to us.
    message.setAutoStartService(false);
    bus.send(message);
}

void DesktopNotifier::notifyMissed(int count)
{
    if (count <= 0)
        return;
    notify(QStringLiteral("Missed reminders"),
           count == 1 ? QStringLiteral("1 reminder came due while the calendar could not show it.")
                      : QStringLiteral("%1 reminders came due while the calendar could not show "
                                       "them.")
                            .arg(count));
}
