#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

// The start-up prompt for the password. OK hands the typed text to the main window; Cancel,
// or closing the prompt, ends the program.
class frmpass : public QDialog
{
    Q_OBJECT

public:
    explicit frmpass(QString &enteredPassword, QWidget *parent = nullptr);

    QLineEdit *txtpass() const { return txtpass_; }

    void OKButton_Click();
    void CancelButton_Click();

    void reject() override;

private:
    QString &enteredPassword_;
    QLabel *label1_ = nullptr;
    QLineEdit *txtpass_ = nullptr;
    QPushButton *okButton_ = nullptr;
    QPushButton *cancelButton_ = nullptr;
};
