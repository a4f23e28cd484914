#pragma once

#include <QString>

// WriteINI tells its caller nothing; the user still hears when a write is lost. The first write
// that fails is kept (until a later write succeeds), and the window that made the change
// reports it once, after the change.
namespace store
{

// Every WriteINI notes how its write went: errno's reason, 0 for success.
void noteWrite(const QString &fileName, int error);

// What every window that writes the store calls once after its change: a message box names
// the file whose write failed and why, and the failure is forgotten.
void afterChange();

// "ORVA could not save to /path/Data.ini: the disk is full"
QString saveFailureMessage(const QString &fileName, int error);

} // namespace store
