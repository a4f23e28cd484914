#pragma once

#include "runtime/Colors.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSoundEffect;

// The reminder window: the memo that has come due, its when-line, on the colour of its
// category, with a chime for each memo it is given.
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
    // audio device, plays nothing and says nothing. Called when a new memo is shown, never
    // on activation: the window manager activates the window again whenever the user
    // switches back to it.
    void chime();
    void OKButton_Click();
    void CancelButton_Click();

    // The player, once a chime has been started; and how many chimes were asked for.
    const QSoundEffect *sound() const { return sound_; }
    int chimes() const { return chimes_; }

private:
    QLabel *label1_ = nullptr;
    QPlainTextEdit *txtMemo_ = nullptr;
    QLineEdit *txttitle_ = nullptr;
    QPushButton *okButton_ = nullptr;
    QPushButton *cancelButton_ = nullptr;
    QSoundEffect *sound_ = nullptr;
    int chimes_ = 0;
};
