#pragma once

#include <QWidget>
#include <memory>

class LogoFrames;
class QLabel;
class QTimer;
class frmtask;

// The splash screen the program starts with. After two seconds it goes and the tray form
// takes over, which loads the main window.
class frmSplash : public QWidget
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget *parent = nullptr);
    ~frmSplash() override;

    void Form_Load();
    void Timer1_Timer();

    QTimer *Timer1() const { return timer1_; }
    frmtask *task() const { return task_.get(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void prepare();

    QLabel *Label1 = nullptr;
    QLabel *Image1 = nullptr;
    QTimer *timer1_ = nullptr;
    bool prepared_ = false;
    std::unique_ptr<LogoFrames> logo_;
    std::unique_ptr<frmtask> task_;
};
