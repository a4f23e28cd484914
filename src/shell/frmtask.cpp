#include "shell/frmtask.h"

#include "mainwindow/Form1.h"
#include "shell/AppIcon.h"
#include "shell/EventDialogs.h"
#include "shell/ShellCommands.h"

#include <QApplication>
#include <QMenu>

frmtask::frmtask(QObject *parent) : QObject(parent)
{
    setObjectName(QStringLiteral("frmtask"));
    mpopupsys_ = new QMenu(QStringLiteral("Systray"));
    mpopupsys_->setObjectName(QStringLiteral("mpopupsys"));
    QAction *mwindow = mpopupsys_->addAction(QStringLiteral("Main Window"));
    mwindow->setObjectName(QStringLiteral("mwindow"));
    QFont bold = mwindow->font();
    bold.setBold(true);
    mwindow->setFont(bold); // the default item
    QAction *exit = mpopupsys_->addAction(QStringLiteral("Exit"));
    exit->setObjectName(QStringLiteral("exit"));
    connect(mwindow, &QAction::triggered, this, &frmtask::mwindow_Click);
    connect(exit, &QAction::triggered, this, &frmtask::exit_Click);
}

frmtask::~frmtask()
{
    del_notif();
    delete form_;
    delete mpopupsys_;
}

void frmtask::Form_Load()
{
    icon_ = new QSystemTrayIcon(appIcon(), this);
    icon_->setObjectName(QStringLiteral("notifyIcon"));
    icon_->setToolTip(QStringLiteral("Calendar"));
    icon_->setContextMenu(mpopupsys_);
    connect(icon_, &QSystemTrayIcon::activated, this, &frmtask::icon_Activated);
    icon_->show();

    form_ = new Form1;
    new EventDialogs(form_);
    new ShellCommands(form_);
    form_->setWindowIcon(appIcon());
    // Without a tray, a minimised window must stay reachable from the task bar.
    form_->setHideWhenMinimised(QSystemTrayIcon::isSystemTrayAvailable());
    connect(form_, &Form1::mwindowRequested, this, &frmtask::mwindow_Click);
    connect(form_, &Form1::exitRequested, this, &frmtask::exit_Click);
    connect(this, &frmtask::restored, form_, &Form1::resetLogo);
    form_->Form_Load();
    form_->show();
}

void frmtask::icon_Activated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::DoubleClick) {
        restoreMainWindow();
        emit restored();
    }
}

void frmtask::restoreMainWindow()
{
    form_->setWindowState(form_->windowState() & ~Qt::WindowMinimized);
    form_->show();
    form_->raise();
    form_->activateWindow();
}

void frmtask::mwindow_Click()
{
    restoreMainWindow();
}

void frmtask::exit_Click()
{
    del_notif();
    QApplication::quit();
}

void frmtask::del_notif()
{
    if (icon_)
        icon_->hide();
}
