#include "shell/frmtask.h"

#include "backup/Backups.h"
#include "dialogs/EventDialogs.h"
#include "dialogs/frmalarm.h"
#include "ical/IcalCommands.h"
#include "logo3d/LogoFrames.h"
#include "mainwindow/Form1.h"
#include "recovery/CrashRecord.h"
#include "recovery/Recovery.h"
#include "shell/AppIcon.h"
#include "shell/ShellCommands.h"

#include <QApplication>
#include <QMenu>
#include <QStyleHints>

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

void frmtask::Form_Load(std::unique_ptr<LogoFrames> logo)
{
    icon_ = new QSystemTrayIcon(appIcon(), this);
    icon_->setObjectName(QStringLiteral("notifyIcon"));
    icon_->setToolTip(QStringLiteral("Calendar"));
    icon_->setContextMenu(mpopupsys_);
    connect(icon_, &QSystemTrayIcon::activated, this, &frmtask::icon_Activated);
    icon_->show();

    backup::beforeChange(); // the copy kept at every start
    form_ = new Form1;
    new EventDialogs(form_);
    new ShellCommands(form_);
    new IcalCommands(form_);
    form_->setWindowIcon(appIcon());
    // Without a tray, a minimised window must stay reachable from the task bar.
    form_->setHideWhenMinimised(QSystemTrayIcon::isSystemTrayAvailable());
    connect(form_, &Form1::mwindowRequested, this, &frmtask::mwindow_Click);
    connect(form_, &Form1::exitRequested, this, &frmtask::exit_Click);
    connect(this, &frmtask::restored, form_, &Form1::resetLogo);
    connect(&form_->missedPass(), &reminders::MissedPass::missedFound, this,
            [this](int count) { notifier_.notifyMissed(count); });
    recovery::recordErrors(form_->reminders(), form_->model());
    connect(form_, &Form1::remindersStarting, form_, [this] { recovery::offerAtStart(form_); });
    if (logo)
        form_->setLogo(std::move(logo));
    form_->Form_Load();
    form_->show();
    loaded_ = true;
}

void frmtask::icon_Activated(QSystemTrayIcon::ActivationReason reason)
{
    if (!clickClock_.isValid())
        clickClock_.start();
    if (clicks_.isDoubleClick(reason, clickClock_.elapsed(),
                              QGuiApplication::styleHints()->mouseDoubleClickInterval())) {
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

void frmtask::instance_ShowRequested()
{
    if (loaded_)
        mwindow_Click();
    // A window waiting for an answer (the password prompt, a recurring memo's alarm) stays in
    // front of the main window, and a shown alarm stays in view.
    if (QWidget *modal = QApplication::activeModalWidget()) {
        modal->raise();
        modal->activateWindow();
    } else if (QWidget *alarm = loaded_ ? form_->alarmWindow() : nullptr;
               alarm && alarm->isVisible()) {
        alarm->raise();
    }
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
