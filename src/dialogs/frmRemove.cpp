#include "dialogs/frmRemove.h"

#include "backup/Backups.h"
#include "dialogs/DialogSupport.h"
#include "dialogs/ZOrder.h"
#include "runtime/ButtonRow.h"
#include "runtime/DateText.h"
#include "store/Recurrence.h"
#include "store/SaveFailure.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

// How an event is listed: ten characters of its memo, or of its path, and "...".
QString listText(const QString &memo)
{
    const QString shown = store::isAction(memo) ? store::actionPath(memo) : memo;
    return shown.left(10) + QStringLiteral("...");
}

} // namespace

frmRemove::frmRemove(rt::Date selectedDate, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRemove"));
    setWindowTitle(QStringLiteral("Remove..."));

    DTPicker1 = dialogs::newDatePicker(this, "DTPicker1");
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setToolTip(QStringLiteral("Select the Event you want to delete."));
    Combo1->setMinimumWidth(200);
    const rt::ButtonRow buttons = rt::okCancelRow(this);
    OKButton = buttons.ok;
    CancelButton = buttons.cancel;

    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("Date :"), DTPicker1);
    fields->addRow(QStringLiteral("Event :"), Combo1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons.layout);

    dialogs::setPickerDate(DTPicker1, selectedDate);
    DTPicker1_Change();
    connect(DTPicker1, &QDateEdit::dateChanged, this, &frmRemove::DTPicker1_Change);
    connect(OKButton, &QPushButton::clicked, this, &frmRemove::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, &frmRemove::CancelButton_Click);
}

void frmRemove::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

void frmRemove::DTPicker1_Change()
{
    const rt::Date date = dialogs::pickerDate(DTPicker1);
    Combo1->clear();
    entries_.clear();

    const int count = store::readCount(store::kCountSection);
    events_ = {{}};
    dates_ = {0};
    for (int i = 1; i <= count; ++i) {
        store::EventRecord event = store::readEventRecord(i);
        rt::Date eventDate = 0;
        rt::tryCDate(event.date, eventDate);
        // The date is kept as a value, so a removal writes it back in the run-time's form.
        event.date = rt::CStr(eventDate);
        events_.append(event);
        dates_.append(eventDate);
        if (eventDate == date) {
            Combo1->addItem(listText(events_[i].memo));
            entries_.append({false, events_[i].memo});
        }
    }
    recurring_ = store::readRecurringEvents();
    for (int i = 1; i < recurring_.size(); ++i) {
        if (recurrence::inRemoveWindow(recurring_[i], date)) {
            Combo1->addItem(listText(recurring_[i].memo));
            entries_.append({true, recurring_[i].memo});
        }
    }
    if (Combo1->count() > 0)
        Combo1->setCurrentIndex(0);
}

void frmRemove::OKButton_Click()
{
    const int index = Combo1->currentIndex();
    if (index >= 0) {
        backup::beforeChange();
        const Entry &entry = entries_[index];
        const rt::Date date = dialogs::pickerDate(DTPicker1);
        // The list text alone can stand for several events; the full memo decides. Only the
        // first match goes: a second removal would shift from lists the first one outdated.
        if (!entry.recurring) {
            for (int i = 1; i < events_.size(); ++i) {
                if (dates_[i] == date && listText(events_[i].memo) == Combo1->currentText() &&
                    events_[i].memo == entry.memo) {
                    store::removeEvent(events_, i);
                    break;
                }
            }
        } else {
            for (int i = 1; i < recurring_.size(); ++i) {
                if (recurrence::inRemoveWindow(recurring_[i], date) &&
                    listText(recurring_[i].memo) == Combo1->currentText() &&
                    recurring_[i].memo == entry.memo) {
                    store::removeRecurring(recurring_, i);
                    break;
                }
            }
        }
    }
    store::afterChange();
    accept();
}

void frmRemove::CancelButton_Click()
{
    reject();
}
