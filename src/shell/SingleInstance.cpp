#include "shell/SingleInstance.h"

#include "runtime/ProgramFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace
{

constexpr int kWaitMs = 2000;

QString currentUser()
{
#ifdef Q_OS_UNIX
    return QString::number(::getuid());
#else
    return qEnvironmentVariable("USERNAME");
#endif
}

} // namespace

SingleInstance::SingleInstance(QObject *parent) : QObject(parent) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverName(const QString &user, const QString &folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    const QByteArray key =
        (user + QLatin1Char('\n') + (canonical.isEmpty() ? folder : canonical)).toUtf8();
    // Hashed: a folder path may be longer than a socket path can be, and needs no escaping.
    const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex();
    return QStringLiteral("orva-calendar-") + QString::fromLatin1(hash.left(24));
}

QString SingleInstance::socketPath() const
{
    const QString name = serverName(currentUser(), rt::programFolder());
#ifdef Q_OS_UNIX
    // The user's private runtime folder where there is one, so that no other user can take
    // the name first; Qt's temporary folder otherwise.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir())
        return runtime + QLatin1Char('/') + name;
    return QDir::tempPath() + QLatin1Char('/') + name;
#else
    return name;
#endif
}

bool SingleInstance::handOver(const QString &path) const
{
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(kWaitMs))
        return false;
    // The connection itself is the request; the first copy needs no words.
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::claim()
{
    const QString path = socketPath();
    // Two copies started at one moment must not both find no server and both listen.
    QLockFile lock(path + QStringLiteral(".lock"));
    lock.tryLock(kWaitMs);
    if (handOver(path))
        return false;
    // A socket left by a copy that was killed answers nobody: it goes.
    QLocalServer::removeServer(path);
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = server_->nextPendingConnection()) {
            socket->deleteLater();
            emit showRequested();
        }
    });
    // A copy that cannot listen still runs: better a second copy than no reminders.
    server_->listen(path);
    return true;
}
