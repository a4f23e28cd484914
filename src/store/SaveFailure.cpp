#include "store/SaveFailure.h"

#include "runtime/MsgBox.h"

#include <QDir>
#include <cerrno>
#include <cstring>

namespace store
{
namespace
{

struct Failure {
    QString fileName;
    int error = 0;
};

Failure g_first;

QString reason(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("the disk is full");
    case EROFS:
        return QStringLiteral("the disk is read-only");
    case EACCES:
    case EPERM:
        return QStringLiteral("it may not be written to");
    case ENOENT:
    case ENOTDIR:
        return QStringLiteral("its folder is not there");
    case EISDIR:
        return QStringLiteral("it is not a file");
    case EIO:
        return QStringLiteral("the disk reported an error");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

} // namespace

void noteWrite(const QString &fileName, int error)
{
    if (error == 0)
        g_first = {};
    else if (g_first.error == 0)
        g_first = {fileName, error};
}

void afterChange()
{
    const Failure failure = g_first;
    g_first = {};
    if (failure.error != 0)
        rt::MsgBox(saveFailureMessage(failure.fileName, failure.error), rt::vbExclamation);
}

QString saveFailureMessage(const QString &fileName, int error)
{
    return QStringLiteral("ORVA could not save to %1: %2")
        .arg(QDir::toNativeSeparators(fileName), reason(error));
}

} // namespace store
