#pragma once

#include "runtime/Colors.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSoundEffect;

// The reminder window: the memo that has come due, its when-line, on the colour of its
// category, with a chime each time the window is activated.
class frmalarm : public QDialog
{
    Q_OBJECT

public:
    explicit frmalarm(QWidget *parent = nullptr);
    ~frmalarm() override;

    void setBackColor(rt::WinColor colour);
    rt::WinColor backColor() const;

    QPlainTextEdit *txtMemo() const { return txtMemo_; }
    QLineEdit *txttitle() const { return txttitle_; }

    // Plays alarm.wav from the program folder once, in the background. No file, or no
    // audio device, plays nothing and says nothing.
    void Form_Activate();
    void OKButton_Click();
    void CancelButton_Click();

    // The player, once a chime has been started.
    const QSoundEffect *sound() const { return sound_; }

protected:
    bool event(QEvent *event) override;

private:
    QLabel *label1_ = nullptr;
    QPlainTextEdit *txtMemo_ = nullptr;
    QLineEdit *txttitle_ = nullptr;
    QPushButton *okButton_ = nullptr;
    QPushButton *cancelButton_ = nullptr;
    QSoundEffect *sound_ = nullptr;
};
