#pragma once

#include "runtime/DateTime.h"

#include <QDialog>

class QDateEdit;
class QLabel;
class QPushButton;
class QRadioButton;

// The window of "Print...": a single date or a range of dates. OK writes the events of
// those days to "Last_Print.txt" in the program folder and prints that text.
class frmPrint : public QDialog
{
    Q_OBJECT

public:
    explicit frmPrint(rt::Date selectedDate, QWidget *parent = nullptr);

    void Option1_Click(); // a single date
    void Option2_Click(); // a range
    void OKButton_Click();
    void CancelButton_Click();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void enableRange(bool range);

    QRadioButton *Option1 = nullptr;
    QRadioButton *Option2 = nullptr;
    QDateEdit *DTPicker1 = nullptr;
    QDateEdit *DTPicker2 = nullptr;
    QDateEdit *DTPicker3 = nullptr;
    QLabel *lblTo = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
};
