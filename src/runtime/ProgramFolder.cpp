#include "runtime/ProgramFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace rt
{
namespace
{

QString &pinned()
{
    static QString folder;
    return folder;
}

// The executable's own folder, from the kernel rather than argv[0]. The file a process
// runs cannot change under it, so the kernel is asked once.
QString resolveExecutableFolder()
{
    QString path = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    if (path.isEmpty() && qApp)
        path = QCoreApplication::applicationFilePath();
    QString folder = QFileInfo(path).absolutePath();
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    return QDir::toNativeSeparators(folder);
}

const QString &executableFolder()
{
    static const QString folder = resolveExecutableFolder();
    return folder;
}

} // namespace

QString programFolder()
{
    return pinned().isEmpty() ? executableFolder() : pinned();
}

void setProgramFolderForTest(const QString &folder)
{
    pinned() = folder;
}

} // namespace rt
