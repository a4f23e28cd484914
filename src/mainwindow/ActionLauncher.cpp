#include "mainwindow/ActionLauncher.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>

namespace
{

QUrl urlOf(const QString &path, const QFileInfo &info)
{
    if (info.exists())
        return QUrl::fromLocalFile(info.absoluteFilePath());
    // Two letters at least, so that "C:\notes.txt" reads as a drive, not as a scheme.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    if (scheme.match(path).hasMatch())
        return QUrl(path, QUrl::TolerantMode);
    if (path.startsWith(QLatin1String("www."), Qt::CaseInsensitive))
        return QUrl(QStringLiteral("http://") + path, QUrl::TolerantMode);
    return QUrl::fromLocalFile(info.absoluteFilePath());
}

} // namespace

bool isProgram(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isExecutable())
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(4);
    return head == QByteArrayLiteral("\x7f"
                                     "ELF") ||
           head.startsWith("#!");
}

void openAction(const QString &path)
{
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    if (isProgram(path)) {
        QProcess::startDetached(info.absoluteFilePath(), {}, info.absolutePath());
        return;
    }
    QDesktopServices::openUrl(urlOf(path, info));
}
