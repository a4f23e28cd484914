#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QDialog>
#include <QList>

class QComboBox;
class QDateEdit;
class QPushButton;

// The window that removes one event: it lists the events of a date, one-off and recurring,
// and removes the chosen one by moving every later event of its kind down by one.
class frmRemove : public QDialog
{
    Q_OBJECT

public:
    explicit frmRemove(rt::Date selectedDate, QWidget *parent = nullptr);

    void DTPicker1_Change();
    void OKButton_Click();
    void CancelButton_Click();

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Entry {
        bool recurring = false;
        QString memo; // as stored
    };

    // The store as read for the shown date, numbered from 1.
    QList<store::EventRecord> events_;
    QList<rt::Date> dates_;
    QList<store::RecurringEvent> recurring_;
    QList<Entry> entries_; // one per list entry

    QDateEdit *DTPicker1 = nullptr;
    QComboBox *Combo1 = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
};
