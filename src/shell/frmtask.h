#pragma once

#include "notify/DesktopNotifier.h"
#include "shell/TrayClicks.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSystemTrayIcon>
#include <memory>

class Form1;
class LogoFrames;
class QMenu;

// The program's icon in the notification area, with its "Systray" menu. It owns the main
// window: loading it loads the window, and its "Exit" ends the program.
class frmtask : public QObject
{
    Q_OBJECT

public:
    explicit frmtask(QObject *parent = nullptr);
    ~frmtask() override;

    // With `logo`, the main window turns the logo whose renderer is already set up.
    void Form_Load(std::unique_ptr<LogoFrames> logo = {});
    void mwindow_Click();
    void exit_Click();
    void del_notif();

    Form1 *form() const { return form_; }
    QSystemTrayIcon *icon() const { return icon_; }
    QMenu *mpopupsys() const { return mpopupsys_; }

    // A double click on the icon restores the main window; the menu opens on the right
    // button by itself.
    void icon_Activated(QSystemTrayIcon::ActivationReason reason);

    // Another start of the program handed over to this one: the main window comes forward
    // as by "Main Window", once the password (if any) has been given.
    void instance_ShowRequested();

signals:
    // After the main window is back from the tray; the 3D logo resumes here.
    void restored();

private:
    void restoreMainWindow();

    QSystemTrayIcon *icon_ = nullptr;
    QMenu *mpopupsys_ = nullptr;
    Form1 *form_ = nullptr;
    bool loaded_ = false; // the main window has passed its password gate and is shown
    TrayClicks clicks_;
    DesktopNotifier notifier_;
    QElapsedTimer clickClock_;
};
