#include "store/Files.h"

#include "runtime/ProgramFolder.h"

namespace files {

QString inProgramFolder(const char *name)
{
    return rt::programFolder() + QLatin1Char('/') + QLatin1String(name);
}

} // namespace files
