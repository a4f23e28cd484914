#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

// Creates the password, or, in change mode, replaces it after the old one is typed. It
// writes the store and closes itself; a failed check leaves it open with what was typed.
class frmPassword : public QDialog
{
    Q_OBJECT

public:
    // The main window's stored password, read when OK is pressed in change mode.
    explicit frmPassword(const QString &storedPassword, QWidget *parent = nullptr);

    // Switches to change mode: the old password first, then the new one.
    void chPass();
    bool changeMode() const { return changeMode_; }

    QLineEdit *txtpass() const { return txtpass_; }
    QLineEdit *txtpass1() const { return txtpass1_; }

    void OKButton_Click();
    void CancelButton_Click();

private:
    void create();
    void change();

    const QString &storedPassword_;
    bool changeMode_ = false;
    QLabel *label1_ = nullptr;
    QLabel *label2_ = nullptr;
    QLineEdit *txtpass_ = nullptr;
    QLineEdit *txtpass1_ = nullptr;
    QPushButton *okButton_ = nullptr;
    QPushButton *cancelButton_ = nullptr;
};
