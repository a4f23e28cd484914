#pragma once

#include <QString>

// Opens an action's path the way the Windows shell's "open" verb does: a program starts as
// one of its own, in its own folder; a document, a folder or a web address goes to the
// desktop's handler for it. The path is never handed to a shell, so it opens as
// written whatever it contains. Whether anything opened is not reported.
void openAction(const QString &path);

// Whether a path is a program of this system: an executable file that is a binary or a script
// with a "#!" line. Documents on FAT, NTFS or network mounts often carry the execute bit too.
bool isProgram(const QString &path);
