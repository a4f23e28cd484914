#include "mainwindow/Form1.h"

#include "logo3d/LogoFrames.h"
#include "logo3d/LogoTurn.h"
#include "mainwindow/ActionLauncher.h"
#include "mainwindow/DayView.h"
#include "mainwindow/Legend.h"
#include "mainwindow/MainLayout.h"
#include "mainwindow/MenuItems.h"
#include "mainwindow/OwnActivations.h"
#include "mainwindow/Painters.h"
#include "mainwindow/SpokenNames.h"
#include "mainwindow/ViewMenu.h"
#include "reminders/frmMissed.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"
#include "runtime/Twips.h"
#include "security/Password.h"
#include "security/frmPassword.h"
#include "security/frmpass.h"
#include "store/Files.h"
#include "store/ProfileEngine.h"
#include "yearcalendar/UserControl1.h"

#include <QCloseEvent>
#include <QCursor>
#include <QFontInfo>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QTime>
#include <QTimer>

namespace
{

constexpr int kStartWidth = 12945; // twips
constexpr int kStartHeight = 8145;

int px(double twips)
{
    return rt::twipsToPixels(twips);
}

QRect px(const QRectF &twips)
{
    return QRect(px(twips.left()), px(twips.top()), px(twips.width()), px(twips.height()));
}

class CalAdapter : public CalendarSurface
{
public:
    explicit CalAdapter(UserControl1 &cal) : cal_(cal) {}
    void setDayBackColorAll(rt::WinColor color) override { cal_.setDay_BackColor(color); }
    void SetDayBackColor(rt::Date date, rt::WinColor color) override
    {
        cal_.SetDayBackColor(date, color);
    }
    rt::WinColor GetDayBackcolor(rt::Date date) override { return cal_.GetDayBackcolor(date); }
    rt::Date Selected() const override { return cal_.Selected(); }
    int displayedYear() const override { return cal_.displayedYear(); }

private:
    UserControl1 &cal_;
};

QFont legendTitleFont(double points)
{
    QFont font(QStringLiteral("Impact"));
    if (QFontInfo(font).family() != QLatin1String("Impact")) {
        font = QFont(QStringLiteral("Liberation Sans"), -1, QFont::Bold);
        font.setStretch(QFont::Condensed);
    }
    font.setPointSizeF(points);
    return font;
}

} // namespace

Form1::Form1(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(QStringLiteral("ORVA's Calender"));
    createControls();
    createMenus();
    connect(&missed_, &reminders::MissedPass::missed, this, &Form1::missed_Found);
    connect(new OwnActivations(this), &OwnActivations::activated, this, &Form1::Form_Activate);
}

Form1::~Form1() = default;

void Form1::createControls()
{
    auto *central = new QWidget(this);
    setCentralWidget(central);

    cal_ = new UserControl1(central);
    cal_->setObjectName(QStringLiteral("Cal"));
    connect(cal_, &UserControl1::DateRClick, this,
            [this](rt::Date date) { rt::guarded([&] { Cal_DateRClick(date); }); });
    connect(cal_, &UserControl1::DateDblClick, this, &Form1::Cal_DateDblClick);
    connect(cal_, &UserControl1::YearChanged, this, &Form1::Cal_YearChanged);
    cal_->setAccessibleName(QStringLiteral("Year calendar"));
    cal_->setDayDetails([this](rt::Date date, std::optional<rt::WinColor> painted) {
        return spoken::dayDetails(date, painted, model_, cal_->displayedYear());
    });

    frame1_ = new QGroupBox(QStringLiteral("Legend"), central);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    vScroll1_ = new QScrollBar(Qt::Vertical, central);
    vScroll1_->setObjectName(QStringLiteral("vScroll1"));
    vScroll1_->setAccessibleName(QStringLiteral("Scroll the legend"));
    legend_ = new Legend(vScroll1_, frame1_);
    connect(legend_, &Legend::rowClicked, this, &Form1::lblcat_Click);

    picture1_ = new QLabel(central);
    picture1_->setObjectName(QStringLiteral("Picture1"));
    picture1_->setToolTip(QStringLiteral("Go to Homepage"));
    picture1_->setAccessibleName(QStringLiteral("Logo, go to homepage"));
    picture1_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    picture1_->setAutoFillBackground(true);
    picture1_->setPalette(QPalette(Qt::white));
    picture1_->installEventFilter(this);

    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(40);
    connect(timer1_, &QTimer::timeout, this, rt::guard([this] { Timer1_Timer(); }));
    timer2_ = new QTimer(this);
    timer2_->setObjectName(QStringLiteral("Timer2"));
    timer2_->setInterval(40);
    connect(timer2_, &QTimer::timeout, this, &Form1::Timer2_Timer);

    layout_ = mainLayout(kStartWidth, 0);
    placeControls();
}

QAction *Form1::addItem(QMenu *menu, const char *name, const QString &caption,
                        const QKeySequence &shortcut)
{
    return addMenuItem(menu, QLatin1String(name), caption, shortcut);
}

void Form1::createMenus()
{
    QMenuBar *bar = menuBar();
    auto addMenu = [bar](const char *name, const QString &caption) {
        QMenu *menu = bar->addMenu(caption);
        menu->setObjectName(QLatin1String(name));
        menu->menuAction()->setObjectName(QLatin1String(name) + QLatin1String("Menu"));
        return menu;
    };

    QMenu *file = addMenu("file", QStringLiteral("&File"));
    connect(addItem(file, "printcal", QStringLiteral("Print Calendar...")), &QAction::triggered,
            this, &Form1::printCalendarRequested);
    connect(addItem(file, "print", QStringLiteral("Print...")), &QAction::triggered, this,
            &Form1::printRequested);
    file->addSeparator();
    connect(addItem(file, "exportIcal", QStringLiteral("Export to iCalendar...")),
            &QAction::triggered, this, &Form1::exportIcalRequested);
    connect(addItem(file, "importIcal", QStringLiteral("Import from iCalendar...")),
            &QAction::triggered, this, &Form1::importIcalRequested);
    file->addSeparator();
    connect(addItem(file, "restore", QStringLiteral("Restore from Backup...")), &QAction::triggered,
            this, &Form1::restoreRequested);
    connect(addItem(file, "exit", QStringLiteral("Exit")), &QAction::triggered, this,
            &Form1::exit_Click);

    QMenu *events = addMenu("events", QStringLiteral("&Events"));
    connect(addItem(events, "add", QStringLiteral("Add...")), &QAction::triggered, this,
            &Form1::addevent_Click);
    connect(addItem(events, "remove", QStringLiteral("Remove")), &QAction::triggered, this,
            &Form1::removeRequested);
    connect(addItem(events, "find", QStringLiteral("Find...")), &QAction::triggered, this,
            &Form1::findRequested);

    QMenu *options = addMenu("options", QStringLiteral("&Options"));
    connect(options, &QMenu::aboutToShow, this, &Form1::options_Click);
    cpass_ = addItem(options, "cpass", QStringLiteral("Create Password"));
    connect(cpass_, &QAction::triggered, this, &Form1::cpass_Click);
    chPass_ = addItem(options, "chPass", QStringLiteral("Change Password"));
    connect(chPass_, &QAction::triggered, this, &Form1::chPass_Click);
    connect(addItem(options, "cust", QStringLiteral("Customize")), &QAction::triggered, this,
            [this] { emit customizeRequested(QString()); });

    viewMenu_ = new ViewMenu(addMenu("view", QStringLiteral("&View")));
    connect(viewMenu_, &ViewMenu::repaintRequested, this, &Form1::repaint);
    connect(viewMenu_, &ViewMenu::monthlyRequested, this, &Form1::paintMonthly);
    connect(viewMenu_, &ViewMenu::dailyRequested, this, &Form1::dailyRequested);

    QMenu *help = addMenu("help", QStringLiteral("&Help"));
    connect(addItem(help, "contents", QStringLiteral("Contents"), QKeySequence(Qt::Key_F1)),
            &QAction::triggered, this, &Form1::contentsRequested);
    connect(addItem(help, "index", QStringLiteral("Index")), &QAction::triggered, this,
            &Form1::indexRequested);
    connect(addItem(help, "About", QStringLiteral("About")), &QAction::triggered, this,
            &Form1::aboutRequested);

    rclick_ = new QMenu(QStringLiteral("rclick"), this);
    rclick_->setObjectName(QStringLiteral("rclick"));
    connect(addItem(rclick_, "addevent", QStringLiteral("Add Event...")), &QAction::triggered, this,
            &Form1::addevent_Click);

    mPopupSys_ = new QMenu(QStringLiteral("&SysTray"), this);
    mPopupSys_->setObjectName(QStringLiteral("mPopupSys"));
    connect(addItem(mPopupSys_, "mwindow", QStringLiteral("Main Window")), &QAction::triggered,
            this, &Form1::mwindowRequested);
    connect(addItem(mPopupSys_, "ex", QStringLiteral("Exit")), &QAction::triggered, this,
            &Form1::exitRequested);
}

void Form1::Form_Load()
{
    passwordGate();
    if (!(windowState() & Qt::WindowMinimized)) {
        const QScreen *screen = this->screen();
        const bool narrow = screen && rt::pixelsToTwips(screen->geometry().width()) == 12000;
        const QSize frame = frameGeometry().size() - geometry().size();
        resize(px(narrow ? 11580 : kStartWidth) - frame.width(), px(kStartHeight) - frame.height());
    }
    Form_Activate();
    viewMenu_->allevents_Click();
    reminders_.clearFlags();
    // The renderer may have been started already, while the splash screen showed.
    if (!logo_)
        logo_ = std::make_unique<LogoFrames>();
    logo_->start(files::logoX());
    emit remindersStarting();
    // Started together with Timer1, so that one wake-up serves both.
    timer2_->start();
    timer1_->start();
    // Keys work on today from the start.
    cal_->setFocus();
}

void Form1::passwordGate()
{
    if (store::readPasswordCount() == QLatin1String("0"))
        return;
    storedPassword_ = store::readPassword();
    frmpass prompt(enteredPassword_);
    prompt.exec();
    // One attempt only.
    if (!security::samePassword(enteredPassword_, storedPassword_)) {
        rt::MsgBox(QStringLiteral("Password is not correct!"), rt::vbCritical,
                   QStringLiteral("Wrong Password"));
        rt::End();
    }
}

void Form1::Form_Activate()
{
    model_ = store::loadModel();
    // The model holds the store until the next activation; a parsed copy kept beside it would
    // double the memory the store costs, for a few milliseconds saved at the next load.
    store::profilecache::clear();
    reminders_.setModel(model_);
    viewMenu_->load(model_.categoryNames);
    legend_->setCategories(model_.categoryNames, model_.categoryColours);
    repaint();
}

void Form1::Form_Resize()
{
    // An iconified window's frame reads 1x1 under some window managers, and can still read so
    // as the window is restored: a frame smaller than the window it holds is not taken.
    const QRect frame = frameGeometry();
    const QRect outer = frame.width() >= width() && frame.height() >= height() ? frame : geometry();
    if (windowState() & Qt::WindowMinimized) {
        if (hideWhenMinimised_)
            hide();
    } else if (!(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) {
        // Re-centred on every change of size, by design.
        if (const QScreen *screen = this->screen()) {
            const QRect area = screen->geometry();
            move(area.width() / 2 - outer.width() / 2, area.height() / 2 - outer.height() / 2);
        }
    }
    layout_ =
        mainLayout(rt::pixelsToTwips(outer.width()), rt::pixelsToTwips(centralWidget()->height()));
    placeControls();
}

void Form1::placeControls()
{
    cal_->setGeometry(px(layout_.cal));
    frame1_->setGeometry(px(layout_.frame));
    frame1_->setFont(legendTitleFont(layout_.titleFontPoints));
    vScroll1_->setGeometry(px(layout_.scroll));
    picture1_->setGeometry(px(layout_.picture));
    vScroll1_->raise();
    legend_->setGeometry(px(layout_.rows));
    legend_->setColumns(int(layout_.frame.width()), layout_.labelFontPoints);
    legend_->setRowScale(layout_.vertical);
}

template <typename Paint> void Form1::paint(Paint &&paint)
{
    CalAdapter calendar(*cal_);
    Painters painters(calendar, model_, *viewMenu_);
    paint(painters);
}

void Form1::repaint()
{
    paint([](Painters &p) { p.repaint(); });
}

void Form1::Cal_DateRClick(rt::Date date)
{
    qDeleteAll(n1_);
    n1_.clear();
    popupTexts_.clear();
    for (const dayview::Item &item : dayview::itemsOn(date, model_, cal_->displayedYear())) {
        const int index = int(n1_.size()) + 2;
        QAction *action = addItem(rclick_, qPrintable(QStringLiteral("n1_%1").arg(index)),
                                  menuText(item.caption));
        action->setData(item.caption);
        connect(action, &QAction::triggered, this, rt::guard([this, index] { n1_Click(index); }));
        n1_.append(action);
        popupTexts_.append(item.text);
    }
    rclick_->exec(cal_->popupPosition());
    // Only now, so "Add Event..." in this popup still works on the previous date.
    selectedDate_ = date;
}

void Form1::n1_Click(int index)
{
    const QString caption = n1_.at(index - 2)->data().toString();
    for (const dayview::Target &target :
         dayview::n1Targets(caption, popupTexts_.at(index - 2), model_))
        emit modifyRequested(target.recurring, target.number);
}

void Form1::Cal_DateDblClick(rt::Date date)
{
    selectedDate_ = date;
    addevent_Click();
}

void Form1::Cal_YearChanged()
{
    repaint();
}

void Form1::addevent_Click()
{
    emit addEventRequested();
}

// Monthly days go over what is shown, and yearly days back on top of them.
void Form1::paintMonthly()
{
    paint([this](Painters &p) {
        p.paint_monthly();
        if (viewMenu_->kindShown(ViewFilters::Kind::Yearly))
            p.paint_yearly();
    });
}

void Form1::exit_Click()
{
    emit exitRequested();
}

QString Form1::readStoredPassword()
{
    storedPassword_.clear();
    const QString count = store::readPasswordCount();
    if (count != QLatin1String("0"))
        storedPassword_ = store::readPassword();
    return count;
}

void Form1::options_Click()
{
    const QString count = readStoredPassword();
    const bool set = count != QLatin1String("0") && !count.isEmpty();
    chPass_->setEnabled(set);
    cpass_->setEnabled(!set);
}

frmPassword *Form1::passwordWindow()
{
    if (!frmPassword_) {
        frmPassword_ = new frmPassword(storedPassword_, this);
        frmPassword_->setAttribute(Qt::WA_DeleteOnClose);
    }
    return frmPassword_;
}

void Form1::cpass_Click()
{
    passwordWindow()->show();
}

void Form1::chPass_Click()
{
    readStoredPassword();
    frmPassword *window = passwordWindow();
    window->chPass();
    window->show();
}

void Form1::Timer1_Timer()
{
    const rt::Date now = rt::Clock::Now();
    if (const rt::Date today = rt::DatePart(now); today != today_) {
        today_ = today;
        cal_->moveToday(today);
    }
    missed_.tick(model_, now);
    reminders_.tick(now);
}

void Form1::missed_Found(const QList<reminders::MissedReminder> &found)
{
    if (!frmMissed_) {
        frmMissed_ = std::make_unique<frmMissed>();
        connect(frmMissed_.get(), &frmMissed::openRequested, this, &openAction);
    }
    frmMissed_->add(found);
}

void Form1::Timer2_Timer()
{
    // Nothing is drawn while the window is away in the tray or minimised.
    if (!logo_ || !isVisible() || isMinimized())
        return;
    const qreal ratio = picture1_->devicePixelRatioF();
    const QPixmap frame = logo_->next(logo::timerAngle(QTime::currentTime()),
                                      picture1_->contentsRect().size() * ratio, ratio);
    if (!frame.isNull())
        picture1_->setPixmap(frame);
}

void Form1::resetLogo()
{
    if (logo_)
        logo_->showAgain();
}

void Form1::setLogo(std::unique_ptr<LogoFrames> logo)
{
    logo_ = std::move(logo);
}

void Form1::lblcat_Click(int index)
{
    emit customizeRequested(model_.categoryNames.value(index));
}

void Form1::Picture1_Click()
{
    if (picture1_->isVisible())
        emit homepageRequested();
}

bool Form1::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease && watched == picture1_)
        Picture1_Click();
    return QMainWindow::eventFilter(watched, event);
}

void Form1::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

void Form1::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
}

void Form1::closeEvent(QCloseEvent *event)
{
    // Closing the window ends the program, tray icon and all.
    event->accept();
    emit exitRequested();
}
