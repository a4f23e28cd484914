#include "store/Files.h"

#include "runtime/ProgramFolder.h"

namespace files
{

QString inProgramFolder(const char *name)
{
    const QLatin1String file(name);
    QString path = rt::programFolder();
    path.reserve(path.size() + 1 + file.size());
    path += QLatin1Char('/');
    path += file;
    return path;
}

QString dataIni()
{
    thread_local QString folder;
    thread_local QString path;
    const QString current = rt::programFolder();
    if (path.isEmpty() || current != folder) {
        folder = current;
        path = inProgramFolder(kDataIni);
    }
    return path;
}

} // namespace files
