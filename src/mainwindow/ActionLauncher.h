#pragma once

#include <QString>

// Opens an action's path the way the Windows shell's "open" verb does: an executable file
// starts as a program of its own, in its own folder; a document, a folder or a web address
// goes to the desktop's handler for it. The path is never handed to a shell, so it opens as
// written whatever it contains. Whether anything opened is not reported.
void openAction(const QString &path);
