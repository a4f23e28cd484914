#include "recovery/Recovery.h"

#include "backup/Backups.h"
#include "backup/frmRestore.h"
#include "dialogs/Dialog.h"
#include "mainwindow/Form1.h"
#include "recovery/Fault.h"
#include "recovery/frmRecovery.h"
#include "runtime/Clock.h"
#include "store/SaveFailure.h"

namespace recovery
{

void offerAtStart(Form1 *form)
{
    const std::optional<CrashRecord> record = readRecord();
    discardRecord();
    const int year = rt::Year(rt::Clock::Today());
    if (!record || !wouldEndAgain(*record, form->model(), year))
        return;
    const Fault fault = faultOf(form->model(), record->number, year);
    // The main window is not shown yet: the windows here are centred on the screen instead.
    QWidget *parent = form->isVisible() ? form : nullptr;
    frmRecovery window(explanation(*record, fault, form->model().eventCount(), year), parent);
    switch (window.exec()) {
    case frmRecovery::Edit: {
        Dialog dialog(form->model(), rt::Clock::Today(), parent);
        dialog.RModi(record->number);
        dialog.exec();
        break;
    }
    case frmRecovery::Remove:
        backup::beforeChange();
        store::removeRecurring(store::readRecurringEvents(), record->number);
        store::afterChange();
        break;
    case frmRecovery::Restore: {
        frmRestore restore(parent);
        restore.exec();
        break;
    }
    default:
        return;
    }
    form->Form_Activate();
}

} // namespace recovery
