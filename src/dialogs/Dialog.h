#pragma once

#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QDialog>
#include <QStringList>

class QComboBox;
class QDateEdit;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

// The window that adds an event, one-off or recurring, or changes one. It checks a new
// event's time and memo and writes the event into the store; a changed event is written as
// it stands. The main window's model is only read, to tell whether a memo is taken.
class Dialog : public QDialog
{
    Q_OBJECT

public:
    Dialog(const store::Model &mainWindowModel, rt::Date selectedDate, QWidget *parent = nullptr);

    // Modify mode for one-off event n or recurring event n.
    void modi(int n);
    void RModi(int n);

    void Fill_Cmbtime();
    void Fill_Cmbtime2();
    void Fill_cmbCat();
    void Fill_Weekly();

    void Option1_Click();
    void Option2_Click();
    void Optdaily_Click();
    void optWeekly_Click();
    void optMonthly_Click();
    void optYearly_Click();
    void Option3_Click();
    void Option4_Click();
    void txtmonth_Click();
    void cmbcat_Click();
    void cmdbrowse_Click();
    void OKButton_Click();
    void CancelButton_Click();

protected:
    void showEvent(QShowEvent *event) override;
    void done(int result) override;

private:
    void enableRecurrence(bool recurring);
    void createControls();
    void Form_Load(rt::Date selectedDate);
    void fillDays(int days);
    bool isValidTime(const QString &time);
    bool inputIsValid(QComboBox *time);
    bool hasCategory();
    QString timeToStore(const QComboBox *time) const;
    QString memoToStore() const;
    QString recurrenceType() const;
    void showTime(QComboBox *time, const QString &stored);
    void showMemo(const QString &stored);
    void showCategory(const QString &name);

    const store::Model &mainWindowModel_;
    bool modiMode_ = false;
    bool rmodiMode_ = false;
    int number_ = 0;
    QStringList categoryNames_; // the names offered, key 2 onward
    int categoryCount_ = 0;
    int shownCategory_ = 0; // the entry to go back to when no category is added

    QRadioButton *Option1 = nullptr;
    QDateEdit *DTPicker1 = nullptr;
    QComboBox *cmbtime = nullptr;
    QRadioButton *Option2 = nullptr;
    QGroupBox *Frame1 = nullptr;
    QRadioButton *Optdaily = nullptr;
    QRadioButton *optWeekly = nullptr;
    QRadioButton *optMonthly = nullptr;
    QRadioButton *optYearly = nullptr;
    QComboBox *txtday = nullptr;
    QComboBox *txtday1 = nullptr;
    QComboBox *txtmonth = nullptr;
    QComboBox *cmbtime2 = nullptr;
    QComboBox *cmbcat = nullptr;
    QComboBox *cmbcat1 = nullptr;
    QGroupBox *Frame2 = nullptr;
    QRadioButton *Option3 = nullptr;
    QRadioButton *Option4 = nullptr;
    QLineEdit *txtmemo = nullptr;
    QLineEdit *txtaction = nullptr;
    QPushButton *cmdbrowse = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
};
