#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

// Copies of Data.ini kept in the folder "Backups" of the program folder, one file each, named
// by the date and time they were taken: "Data 2026-11-24 09-30-05.ini", with " 2", " 3", ...
// for further copies in the same second.
namespace backup
{

QString folder();

struct Copy {
    QString path;
    QDateTime taken;
    int sequence = 1; // within the second
};

// The copies in the folder, newest first. Files of other names are not copies.
QList<Copy> copies();

QString fileName(const QDateTime &taken, int sequence);
bool parseFileName(const QString &name, Copy &copy);

// Which of the copies (newest first) to delete today: every one that is neither among the
// 50 newest nor the newest of its day within the last 60 days.
QList<int> prunable(const QList<Copy> &newestFirst, const QDate &today);

// Copies Data.ini as it is now, unless it is missing or equal to the newest copy, then
// prunes. The copy is written under a temporary name and renamed, so a copy is whole or
// absent. Returns false with the reason when the copy could not be written.
bool keepCopy(QString *error = nullptr);

// Before the first write of each change a window makes. A failed copy never stops the
// change; the first failure of a run is told in a message box.
void beforeChange();

// Replaces Data.ini with the copy's bytes in one rename, after keeping a copy of the current
// Data.ini. Returns false, Data.ini unchanged, when it could not.
bool restore(const QString &copyPath, QString *error = nullptr);

// Writes a whole copy; returns why it failed, or an empty text. Tests put a failing one in
// place; an empty function restores the real one.
using Writer = std::function<QString(const QString &path, const QByteArray &bytes)>;
void setWriteForTest(Writer write);

} // namespace backup
