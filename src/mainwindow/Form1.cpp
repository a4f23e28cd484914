#include "mainwindow/Form1.h"

#include "logo3d/LogoFrames.h"
#include "logo3d/LogoTurn.h"
#include "mainwindow/ActionLauncher.h"
#include "mainwindow/DayView.h"
#include "mainwindow/LegendKeys.h"
#include "mainwindow/LegendNames.h"
#include "mainwindow/MainLayout.h"
#include "mainwindow/OwnActivations.h"
#include "mainwindow/Painters.h"
#include "mainwindow/SpokenNames.h"
#include "reminders/frmMissed.h"
#include "runtime/Clock.h"
#include "runtime/Colors.h"
#include "runtime/MsgBox.h"
#include "runtime/Numbers.h"
#include "runtime/RuntimeError.h"
#include "runtime/Twips.h"
#include "security/Password.h"
#include "security/frmPassword.h"
#include "security/frmpass.h"
#include "store/Files.h"
#include "yearcalendar/UserControl1.h"

#include <QCloseEvent>
#include <QCoreApplication>
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

const QString kLegendToolTip = QStringLiteral("Click to Customize appearance");

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

// A check item whose handler does the toggling itself, as a direct call would.
void onToggle(QAction *action, std::function<void()> handler)
{
    QObject::connect(action, &QAction::triggered, action, [action, handler] {
        action->setChecked(!action->isChecked());
        handler();
    });
}

QString menuText(const QString &caption)
{
    return QString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

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
    connect(cal_, &UserControl1::DateRClick, this, &Form1::Cal_DateRClick);
    connect(cal_, &UserControl1::DateDblClick, this, &Form1::Cal_DateDblClick);
    connect(cal_, &UserControl1::YearChanged, this, &Form1::Cal_YearChanged);
    cal_->setAccessibleName(QStringLiteral("Year calendar"));
    cal_->setDayDetails([this](rt::Date date, std::optional<rt::WinColor> painted) {
        return spoken::dayDetails(date, painted, model_, cal_->displayedYear());
    });

    frame1_ = new QGroupBox(QStringLiteral("Legend"), central);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    auto *legendArea = new QWidget(frame1_);
    legendArea->setObjectName(QStringLiteral("legendArea"));
    legendArea->installEventFilter(this);

    vScroll1_ = new QScrollBar(Qt::Vertical, central);
    vScroll1_->setObjectName(QStringLiteral("vScroll1"));
    vScroll1_->setSingleStep(kLegendRowHeight);
    connect(vScroll1_, &QScrollBar::valueChanged, this, &Form1::vScroll1_Change);
    vScroll1_->setAccessibleName(QStringLiteral("Scroll the legend"));
    legendKeys_ = new LegendKeys(
        vScroll1_, kLegendRowHeight, [this](int i) { lblcat_Click(i); }, this);

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
    connect(timer1_, &QTimer::timeout, this, &Form1::Timer1_Timer);
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
    QAction *action = menu->addAction(caption);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
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

    view_ = addMenu("view", QStringLiteral("&View"));
    connect(addItem(view_, "allevents", QStringLiteral("All Events")), &QAction::triggered, this,
            &Form1::allevents_Click);
    connect(addItem(view_, "None", QStringLiteral("None"), QKeySequence(Qt::CTRL | Qt::Key_N)),
            &QAction::triggered, this, &Form1::None_Click);
    QMenu *rec = view_->addMenu(QStringLiteral("Recurrence"));
    rec->setObjectName(QStringLiteral("rec"));
    connect(addItem(rec, "Daily", QStringLiteral("Daily"), QKeySequence(Qt::CTRL | Qt::Key_D)),
            &QAction::triggered, this, &Form1::dailyRequested);
    weekly_ = addItem(rec, "weekly", QStringLiteral("Weekly"), QKeySequence(Qt::CTRL | Qt::Key_W));
    mon_ = addItem(rec, "mon", QStringLiteral("Monthly"), QKeySequence(Qt::CTRL | Qt::Key_M));
    yearly_ = addItem(rec, "yearly", QStringLiteral("Yearly"), QKeySequence(Qt::CTRL | Qt::Key_Y));
    for (QAction *item : {weekly_, mon_, yearly_})
        item->setCheckable(true);
    onToggle(weekly_, [this] { weekly_Click(); });
    onToggle(mon_, [this] { mon_Click(); });
    onToggle(yearly_, [this] { yearly_Click(); });
    QAction *v1Template = addItem(view_, "v1_1", QString());
    v1Template->setCheckable(true);
    v1Template->setVisible(false);
    v1_.insert(1, v1Template);

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
    allevents_Click();
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
    reminders_.setModel(model_);
    loadCategoryItems();
    loadLegend();
    repaint();
}

void Form1::loadCategoryItems()
{
    for (auto it = v1_.begin(); it != v1_.end();) {
        if (it.key() > 1) {
            delete it.value();
            it = v1_.erase(it);
        } else {
            ++it;
        }
    }
    const bool checked = v1_.value(1)->isChecked();
    for (int i = 2; i <= model_.categoryCount(); ++i) {
        const QString name = model_.categoryNames[i];
        QAction *item = addItem(view_, qPrintable(QStringLiteral("v1_%1").arg(i)), menuText(name));
        item->setData(name);
        item->setCheckable(true);
        item->setChecked(checked);
        onToggle(item, [this, i] { v1_Click(i); });
        v1_.insert(i, item);
    }
}

void Form1::loadLegend()
{
    auto *area = frame1_->findChild<QWidget *>(QStringLiteral("legendArea"));
    for (int i = 1; i <= model_.categoryCount(); ++i) {
        QLabel *&label = lblcat_[i];
        QFrame *&box = shpcat_[i];
        if (!label) {
            label = new QLabel(area);
            label->setObjectName(QStringLiteral("lblcat_%1").arg(i));
            label->setToolTip(kLegendToolTip);
            label->setProperty("index", i);
            label->installEventFilter(this);
            legendKeys_->attach(label);
            box = new QFrame(area);
            box->setObjectName(QStringLiteral("shpcat_%1").arg(i));
            box->setFrameStyle(QFrame::Box | QFrame::Plain);
            box->setAutoFillBackground(true);
        }
        std::int32_t colour = 0;
        rt::tryCLng(model_.categoryColours.value(i), colour);
        QPalette palette = box->palette();
        palette.setColor(QPalette::Window, rt::toQColor(rt::WinColor(colour)));
        box->setPalette(palette);
        label->setAccessibleName(
            spoken::legendRowName(model_.categoryNames[i], rt::WinColor(colour)));
        label->show();
        box->show();
    }
    for (auto it = lblcat_.begin(); it != lblcat_.end(); ++it) {
        if (it.key() > model_.categoryCount()) {
            it.value()->hide();
            shpcat_[it.key()]->hide();
        }
    }
    // The scroll bar counts in rows of the design height, whatever the rows' height on screen.
    const int rowsHeight = model_.categoryCount() * int(kLegendRowHeight);
    const int visible = int(rt::pixelsToTwips(area->height()) / layout_.vertical);
    vScroll1_->setRange(0, std::max(0, rowsHeight - visible));
    vScroll1_->setPageStep(visible);
    layOutLegend();
    vScroll1_Change();
}

void Form1::layOutLegend()
{
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPointSizeF(std::max(1.0, layout_.labelFontPoints));
    for (auto it = lblcat_.begin(); it != lblcat_.end(); ++it) {
        QLabel *label = it.value();
        label->setFont(font);
        label->setGeometry(px(layout_.labelLeft), label->y(), px(layout_.labelWidth),
                           px(layout_.rowHeight));
        showLegendName(label, model_.categoryNames.value(it.key()), kLegendToolTip);
        QFrame *box = shpcat_[it.key()];
        box->setGeometry(px(layout_.boxLeft), box->y(), px(layout_.boxWidth),
                         px(layout_.boxHeight));
    }
}

void Form1::Form_Resize()
{
    if (windowState() & Qt::WindowMinimized) {
        if (hideWhenMinimised_)
            hide();
    } else if (!(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) {
        // Re-centred on every change of size, by design.
        if (const QScreen *screen = this->screen()) {
            const QRect area = screen->geometry();
            move(area.width() / 2 - frameGeometry().width() / 2,
                 area.height() / 2 - frameGeometry().height() / 2);
        }
    }
    layout_ = mainLayout(rt::pixelsToTwips(frameGeometry().width()),
                         rt::pixelsToTwips(centralWidget()->height()));
    placeControls();
}

void Form1::placeControls()
{
    cal_->setGeometry(px(layout_.cal));
    frame1_->setGeometry(px(layout_.frame));
    frame1_->setFont(legendTitleFont(layout_.titleFontPoints));
    frame1_->findChild<QWidget *>(QStringLiteral("legendArea"))->setGeometry(px(layout_.rows));
    vScroll1_->setGeometry(px(layout_.scroll));
    picture1_->setGeometry(px(layout_.picture));
    vScroll1_->raise();
    layOutLegend();
    vScroll1_Change();
}

ViewFilters Form1::filtersFromMenu() const
{
    ViewFilters filters;
    filters.v1.resize(v1_.isEmpty() ? 0 : v1_.lastKey() + 1);
    for (auto it = v1_.begin(); it != v1_.end(); ++it)
        filters.v1[it.key()] = {it.value()->data().toString(), it.value()->isChecked()};
    filters.weekly = weekly_->isChecked();
    filters.mon = mon_->isChecked();
    filters.yearly = yearly_->isChecked();
    return filters;
}

void Form1::menuFromFilters(const ViewFilters &filters)
{
    for (auto it = v1_.begin(); it != v1_.end(); ++it)
        it.value()->setChecked(filters.v1[it.key()].checked);
    weekly_->setChecked(filters.weekly);
    mon_->setChecked(filters.mon);
    yearly_->setChecked(filters.yearly);
}

template <typename Paint> void Form1::paint(Paint &&paint)
{
    ViewFilters filters = filtersFromMenu();
    CalAdapter calendar(*cal_);
    Painters painters(calendar, model_, filters);
    paint(painters);
    menuFromFilters(filters);
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
        connect(action, &QAction::triggered, this, [this, index] { n1_Click(index); });
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

void Form1::allevents_Click()
{
    for (QAction *item : v1_)
        item->setChecked(true);
    repaint();
}

void Form1::None_Click()
{
    for (QAction *item : v1_)
        item->setChecked(false);
    for (QAction *item : {weekly_, mon_, yearly_})
        item->setChecked(false);
    repaint();
}

void Form1::v1_Click(int index)
{
    QAction *item = v1_.value(index);
    item->setChecked(!item->isChecked());
    repaint();
}

void Form1::weekly_Click()
{
    weekly_->setChecked(!weekly_->isChecked());
    repaint();
}

void Form1::yearly_Click()
{
    yearly_->setChecked(!yearly_->isChecked());
    repaint();
}

void Form1::mon_Click()
{
    if (mon_->isChecked()) {
        mon_->setChecked(false);
        repaint();
        return;
    }
    // Monthly days go over what is shown, and yearly days back on top of them.
    paint([this](Painters &p) {
        p.paint_monthly();
        if (yearly_->isChecked())
            p.paint_yearly();
    });
}

void Form1::vScroll1_Change()
{
    const auto top = [this](int row) {
        return ((row - 1) * kLegendRowHeight - vScroll1_->value()) * layout_.vertical;
    };
    for (auto it = lblcat_.begin(); it != lblcat_.end(); ++it)
        it.value()->move(it.value()->x(), px(top(it.key())));
    for (auto it = shpcat_.begin(); it != shpcat_.end(); ++it)
        it.value()->move(it.value()->x(), px(top(it.key()) + layout_.boxTop));
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
    cal_->moveToday(rt::DatePart(now));
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
    // The wheel over the legend scrolls it, as over its scroll bar.
    if (event->type() == QEvent::Wheel && watched != picture1_)
        return QCoreApplication::sendEvent(vScroll1_, event);
    if (event->type() == QEvent::MouseButtonRelease && watched == picture1_)
        Picture1_Click();
    else if (event->type() == QEvent::MouseButtonRelease &&
             watched->objectName().startsWith(QLatin1String("lblcat_")))
        lblcat_Click(watched->property("index").toInt());
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
