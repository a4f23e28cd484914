#pragma once

#include <QString>

namespace rt
{

// The folder of the executable, without a trailing separator. Callers ask for it at every
// use and keep no path of their own.
// It never comes from the command line or the environment; tests set it.
QString programFolder();
void setProgramFolderForTest(const QString &folder); // empty restores the real one

} // namespace rt
