#pragma once

#include "mainwindow/AlarmOutput.h"
#include "mainwindow/MainLayout.h"
#include "mainwindow/ReminderCheck.h"
#include "reminders/MissedPass.h"
#include "runtime/DateTime.h"
#include "store/DataStore.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <memory>

class QAction;
class QGroupBox;
class QLabel;
class QMenu;
class QScrollBar;
class QTimer;
class Legend;
class Painters;
class LogoFrames;
class ViewMenu;
class frmMissed;
class frmPassword;
class UserControl1;

// The main window: the year calendar, the legend of categories, the logo's picture box and
// the menus. It holds the whole store in memory and reloads it whenever it becomes active from
// one of the program's own windows.
//
// Every control and menu item carries its name as its object name; members of the arrays
// v1, n1, shpcat and lblcat are named array, underscore, index ("v1_2", "lblcat_1"). The View
// menu and the legend are classes of their own.
class Form1 : public QMainWindow
{
    Q_OBJECT

public:
    explicit Form1(QWidget *parent = nullptr);
    ~Form1() override;

    void Form_Load();
    void Form_Activate(); // the loader, at each of the program's own activations
    void Form_Resize();

    void repaint();

    // Day events of the calendar.
    void Cal_DateRClick(rt::Date date);
    void Cal_DateDblClick(rt::Date date);
    void Cal_YearChanged();

    // Menus.
    void addevent_Click();
    void n1_Click(int index);
    void lblcat_Click(int index);
    void exit_Click();
    void Picture1_Click(); // the homepage, only while the logo's box is shown

    // The Options menu and the password windows.
    void options_Click();
    void cpass_Click();
    void chPass_Click();

    // The reminder check, run by Timer1 at the clock's current instant, after the pass for
    // the minutes it could not see, whose finds the "Missed reminders" window lists.
    void Timer1_Timer();
    const ReminderCheck &reminders() const { return reminders_; }
    frmalarm *alarmWindow() const { return alarms_.window(); }
    reminders::MissedPass &missedPass() { return missed_; }
    frmMissed *missedWindow() const { return frmMissed_.get(); }

    // The turning logo: Timer2 draws a frame; the tray calls resetLogo when it brings the
    // window back.
    void Timer2_Timer();
    void resetLogo();
    // Frames whose renderer was started before the window, to use in place of its own.
    void setLogo(std::unique_ptr<LogoFrames> logo);

    // The password rebuilt from the store, and the one typed at start-up.
    const QString &storedPassword() const { return storedPassword_; }
    const QString &enteredPassword() const { return enteredPassword_; }

    const store::Model &model() const { return model_; }
    rt::Date selectedDate() const { return selectedDate_; }
    UserControl1 *Cal() const { return cal_; }
    ViewMenu *viewMenu() const { return viewMenu_; }
    QMenu *mPopupSys() const { return mPopupSys_; }

    // Whether minimising hides the window, to live on in the tray.
    void setHideWhenMinimised(bool hide) { hideWhenMinimised_ = hide; }

signals:
    // The event windows: add on the selected date, modify event n, remove, find, customize
    // (with the category to select, or none), and the list of daily events.
    void addEventRequested();
    void modifyRequested(bool recurring, int n);
    void removeRequested();
    void findRequested();
    void customizeRequested(const QString &category);
    void dailyRequested();
    // "Main Window" and "Exit" of the window's own tray menu.
    void mwindowRequested();
    void exitRequested();
    // The File and Help menus, and a click on the logo.
    void printRequested();
    void printCalendarRequested();
    void exportIcalRequested();
    void importIcalRequested();
    void contentsRequested();
    void indexRequested();
    void aboutRequested();
    void homepageRequested();
    // File > "Restore from Backup...".
    void restoreRequested();
    // At start, past the password gate, just before the reminder check begins.
    void remindersStarting();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void createControls();
    void createMenus();
    QAction *addItem(QMenu *menu, const char *name, const QString &caption,
                     const QKeySequence &shortcut = {});
    void placeControls();
    template <typename Paint> void paint(Paint &&paint);
    void paintMonthly();
    void passwordGate();
    QString readStoredPassword();
    frmPassword *passwordWindow();
    void missed_Found(const QList<reminders::MissedReminder> &found);

    store::Model model_;
    MainLayout layout_{};
    rt::Date selectedDate_ = 0;
    rt::Date today_ = 0; // as last handed to the calendar
    bool hideWhenMinimised_ = true;
    AlarmOutput alarms_;
    ReminderCheck reminders_{alarms_};
    reminders::MissedPass missed_;
    std::unique_ptr<frmMissed> frmMissed_;
    QString storedPassword_;
    QString enteredPassword_;
    QPointer<frmPassword> frmPassword_;

    UserControl1 *cal_ = nullptr;
    QGroupBox *frame1_ = nullptr;
    QScrollBar *vScroll1_ = nullptr;
    QLabel *picture1_ = nullptr;
    QTimer *timer1_ = nullptr;
    QTimer *timer2_ = nullptr;
    std::unique_ptr<LogoFrames> logo_;
    Legend *legend_ = nullptr;

    QAction *cpass_ = nullptr;
    QAction *chPass_ = nullptr;
    ViewMenu *viewMenu_ = nullptr;
    QMenu *rclick_ = nullptr;
    QList<QAction *> n1_;
    QStringList popupTexts_;
    QMenu *mPopupSys_ = nullptr;
};
