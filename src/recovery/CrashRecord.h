#pragma once

#include "runtime/RuntimeError.h"
#include "store/DataStore.h"

#include <QString>
#include <optional>

class ReminderCheck;

// What the program keeps of the run-time error that ended it, in "LastError.json" of the
// program folder, for the next start to act on.
namespace recovery
{

struct CrashRecord {
    int error = 0;
    QString description;
    int number = 0;              // the recurring event the reminder check was at; 0 for none
    store::RecurringEvent event; // its texts as loaded
};

QString recordPath();
bool writeRecord(const CrashRecord &record); // whole or not at all
std::optional<CrashRecord> readRecord();     // none when missing or damaged
void discardRecord();

CrashRecord recordOf(const rt::RuntimeError &error, int evaluating, const store::Model &model);

// From now on, a run-time error that ends the program is recorded first, with the event the
// reminder check was at. Both must outlive the program's run.
void recordErrors(const ReminderCheck &reminders, const store::Model &model);

} // namespace recovery
