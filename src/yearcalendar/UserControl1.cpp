#include "yearcalendar/UserControl1.h"

#include "runtime/Clock.h"
#include "runtime/DateText.h"
#include "runtime/RuntimeError.h"
#include "runtime/Twips.h"
#include "yearcalendar/DayLabel.h"

#include <QCursor>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScopeGuard>

using namespace yearcal;

namespace
{

constexpr rt::WinColor kHeaderGrey = 0x808080;

const char *const kMonths[] = {"January",   "February", "March",    "April",
                               "May",       "June",     "July",     "August",
                               "September", "October",  "November", "December"};

QRect pixels(double left, double top, double width, double height)
{
    return QRect(rt::twipsToPixels(left), rt::twipsToPixels(top), rt::twipsToPixels(width),
                 rt::twipsToPixels(height));
}

QRect pixels(const Box &box)
{
    return pixels(box.left, box.top, box.width, box.height);
}

template <typename Widget> Widget *named(Widget *widget, const QString &name, int index)
{
    widget->setObjectName(name + '_' + QString::number(index));
    widget->setProperty("index", index);
    return widget;
}

void setColour(QWidget *widget, QPalette::ColorRole role, rt::WinColor colour)
{
    QPalette p = widget->palette();
    p.setColor(role, rt::toQColor(colour));
    widget->setPalette(p);
}

QFrame *line(QWidget *parent, QFrame::Shape shape)
{
    auto *frame = new QFrame(parent);
    frame->setFrameShape(shape);
    frame->setFrameShadow(QFrame::Plain);
    return frame;
}

} // namespace

UserControl1::UserControl1(QWidget *parent) : QWidget(parent)
{
    const rt::Date today = rt::Clock::Now();
    focusDay_ = {rt::Year(today), rt::Month(today), rt::Day(today)};
    createChildren();
    resize(rt::twipsToPixels(kDesignWidth), rt::twipsToPixels(kDesignHeight));
    paintMonths();
    for (int cell = 0; cell < kCells; ++cell)
        cells_[cell]->display(model_.grid()[cell]);
    showCells();
    j1_Click(20);
}

void UserControl1::createChildren()
{
    label12_ = new QLineEdit(this);
    label12_->setObjectName("Label12");
    label12_->setAccessibleName("Year");
    label12_->setFont(calendarFont(kYearFontPoints, true));
    label12_->setAlignment(Qt::AlignCenter);
    label12_->setGeometry(pixels(yearBox()));
    connect(label12_, &QLineEdit::returnPressed, this, rt::guard([this] { Label12_KeyPress(13); }));

    // The left button goes a year forward and the right one a year back; the captions say
    // so, where arrows would promise the opposite.
    cmdLeft_ = new QPushButton("+", this);
    cmdLeft_->setObjectName("cmdLeft");
    cmdLeft_->setToolTip("Next year");
    cmdLeft_->setAccessibleName("Next year");
    cmdLeft_->setGeometry(pixels(leftButtonBox()));
    connect(cmdLeft_, &QPushButton::clicked, this, rt::guard([this] { cmdLeft_Click(); }));
    cmdRight_ = new QPushButton(QString(QChar(0x2212)), this);
    cmdRight_->setObjectName("cmdRight");
    cmdRight_->setToolTip("Previous year");
    cmdRight_->setAccessibleName("Previous year");
    cmdRight_->setGeometry(pixels(rightButtonBox()));
    connect(cmdRight_, &QPushButton::clicked, this, rt::guard([this] { cmdRight_Click(); }));
    for (QPushButton *button : {cmdLeft_, cmdRight_})
        button->setFont(calendarFont(kButtonFontPoints, true));

    for (int m = 0; m < 12; ++m) {
        mon_[m] = named(new QLabel(kMonths[m], this), "mon", m);
        mon_[m]->setFont(calendarFont(kMonthFontPoints, true));
        mon_[m]->setAlignment(Qt::AlignCenter);
        mon_[m]->setAutoFillBackground(true);
        mon_[m]->setGeometry(pixels(monthBox(m)));
    }

    static const char *const weekdays[] = {"Su", "Mo", "Tu", "We", "Th", "Fr", "Sa"};
    for (int i = 0; i < 84; ++i) {
        w_[i] = named(new QLabel(weekdays[i % 7], this), "w", i);
        w_[i]->setAccessibleName(rt::kEnglishWeekdays[i % 7]);
        w_[i]->setFont(calendarFont(kDayFontPoints, true));
        w_[i]->setAlignment(Qt::AlignCenter);
        setColour(w_[i], QPalette::WindowText, kHeaderGrey);
        w_[i]->setGeometry(pixels(weekdayBox(i)));
    }

    createDayCells();

    for (int i = 0; i < 3; ++i) {
        line1_[i] = named(line(this, QFrame::VLine), "Line1", i);
        const VLine l = monthSeparator(i);
        line1_[i]->setGeometry(pixels(l.x, l.top, rt::twipsPerPixel(), l.bottom - l.top));
    }
    const char *const rowLines[] = {"Line4", "Line5"};
    for (int i = 0; i < 2; ++i) {
        QFrame *frame = rowLines_[i] = line(this, QFrame::HLine);
        frame->setObjectName(rowLines[i]);
        const HLine l = rowSeparator(i);
        frame->setGeometry(pixels(l.left, l.y, l.right - l.left, rt::twipsPerPixel()));
    }
}

void UserControl1::createDayCells()
{
    for (int k = 0; k < kJanuaryCells; ++k) {
        auto *cell = named(new DayLabel(this), "j1", k);
        cell->setGeometry(pixels(dayCellBox(true, k)));
        connectDayCell(cell, true, k);
        cells_[j1(k)] = cell;
        cell->setDescriber([this, k] { return dayName(j1(k)); });
    }
    for (int i = 0; i < kLaterCells; ++i) {
        auto *cell = named(new DayLabel(this), "f1", i);
        cell->setGeometry(pixels(dayCellBox(false, i)));
        connectDayCell(cell, false, i);
        cells_[f1(i)] = cell;
        cell->setDescriber([this, i] { return dayName(f1(i)); });
    }
}

// The cells outlive this object's own part of destruction: a focused cell that loses its
// focus while QWidget deletes it must not call back into a control that is already gone.
UserControl1::~UserControl1()
{
    for (DayLabel *cell : findChildren<DayLabel *>())
        cell->disconnect(this);
}

void UserControl1::connectDayCell(DayLabel *cell, bool inJanuary, int index)
{
    connect(cell, &DayLabel::clicked, this, [=, this] { dayClick(inJanuary, index); });
    connect(cell, &DayLabel::focusChanged, this,
            [=, this] { cellFocused(inJanuary ? j1(index) : f1(index)); });
    connect(cell, &DayLabel::doubleClicked, this,
            [=, this] { inJanuary ? j1_DblClick(index) : f1_DblClick(index); });
    connect(cell, &DayLabel::mouseDown, this,
            [=, this](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF pos) {
                const int code = button == Qt::LeftButton     ? 1
                                 : button == Qt::RightButton  ? 2
                                 : button == Qt::MiddleButton ? 4
                                                              : 0;
                const int shift = (modifiers & Qt::ShiftModifier ? 1 : 0) |
                                  (modifiers & Qt::ControlModifier ? 2 : 0) |
                                  (modifiers & Qt::AltModifier ? 4 : 0);
                const double x = rt::pixelsToTwips(pos.x());
                const double y = rt::pixelsToTwips(pos.y());
                inJanuary ? j1_MouseDown(index, code, shift, x, y)
                          : f1_MouseDown(index, code, shift, x, y);
            });
}

// Runs a change of the model and then brings the labels up to date, also when the change
// fails half-way: the cells then show what the model was left with.
template <typename Change> auto UserControl1::change(Change &&apply)
{
    struct Refresh {
        UserControl1 *control;
        ~Refresh() { control->showCells(); }
    } refresh{this};
    return apply();
}

void UserControl1::showCells()
{
    // A refill may hide the focused cell or give its day to another; the focus follows the day.
    const bool focused = tabStop_ >= 0 && cells_[tabStop_]->hasFocus();
    for (const int cell : model_.grid().takeChanged())
        cells_[cell]->display(model_.grid()[cell]);
    if (model_.takeYearTextRefresh())
        label12_->setText(QString::number(model_.displayedYear()));
    placeTabStop(focused);
}

void UserControl1::placeTabStop(bool takeFocus)
{
    focusDay_ = inYear(focusDay_, model_.displayedYear());
    const int cell = cellOfDay(model_.grid(), focusDay_.month, focusDay_.day);
    if (cell < 0)
        return;
    if (cell != tabStop_) {
        if (tabStop_ >= 0) {
            cells_[tabStop_]->setFocusPolicy(Qt::ClickFocus);
            update(focusFrame(tabStop_));
        }
        tabStop_ = cell;
        cells_[cell]->setFocusPolicy(Qt::StrongFocus);
        // Focus given to the control goes to its day.
        setFocusProxy(cells_[cell]);
    }
    if (takeFocus)
        cells_[cell]->setFocus(Qt::OtherFocusReason);
}

// A cell that takes the focus by the mouse or from a screen reader becomes the focused day.
void UserControl1::cellFocused(int cell)
{
    if (cells_[cell]->hasFocus() && cell != tabStop_) {
        focusDay_ = {model_.displayedYear(), monthOfGridCell(cell), model_.grid()[cell].caption};
        placeTabStop(false);
    }
    update(focusFrame(cell));
}

QRect UserControl1::focusFrame(int cell) const
{
    return cells_[cell]->geometry().adjusted(-2, -2, 2, 2);
}

// The frame goes around the cell, on the control's own background, so that neither a
// category's colour nor today's red is touched and it shows on every one of them.
void UserControl1::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (tabStop_ < 0 || !cells_[tabStop_]->hasFocus())
        return;
    QPainter painter(this);
    painter.fillRect(focusFrame(tabStop_), palette().color(QPalette::WindowText));
}

void UserControl1::keyPressEvent(QKeyEvent *event)
{
    bool handled = false;
    if (tabStop_ >= 0 && cells_[tabStop_]->hasFocus())
        rt::guarded([&] { handled = dayKey(event->key(), event->modifiers()); });
    if (!handled)
        QWidget::keyPressEvent(event);
}

// Keys take the mouse's paths, so the host cannot tell them apart.
bool UserControl1::dayKey(int key, Qt::KeyboardModifiers modifiers)
{
    const bool inJanuary = tabStop_ < kJanuaryCells;
    const int index = inJanuary ? tabStop_ : tabStop_ - kJanuaryCells;
    const bool ctrl = modifiers & Qt::ControlModifier;
    if (ctrl && key == Qt::Key_PageDown) {
        cmdLeft_Click();
    } else if (ctrl && key == Qt::Key_PageUp) {
        cmdRight_Click();
    } else if (key == Qt::Key_Space) {
        inJanuary ? j1_Click(index) : f1_Click(index);
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        inJanuary ? j1_DblClick(index) : f1_DblClick(index);
    } else if (key == Qt::Key_Menu || (key == Qt::Key_F10 && modifiers & Qt::ShiftModifier)) {
        keyboardCell_ = tabStop_;
        const auto done = qScopeGuard([this] { keyboardCell_ = -1; });
        inJanuary ? j1_MouseDown(index, 2, 0, 0, 0) : f1_MouseDown(index, 2, 0, 0, 0);
    } else if (const std::optional<DayStep> step = stepForKey(key, modifiers)) {
        moveFocus(stepDay(focusDay_, *step));
    } else {
        return false;
    }
    return true;
}

// A day of another year brings that year in with the year buttons.
void UserControl1::moveFocus(GridDay day)
{
    if (!yearInRange(day.year))
        return;
    if (day.year > model_.displayedYear())
        cmdLeft_Click();
    else if (day.year < model_.displayedYear())
        cmdRight_Click();
    focusDay_ = day;
    placeTabStop(true);
}

QPoint UserControl1::popupPosition() const
{
    if (keyboardCell_ < 0)
        return QCursor::pos();
    const DayLabel *cell = cells_[keyboardCell_];
    return cell->mapToGlobal(QPoint(0, cell->height()));
}

QString UserControl1::dayName(int cell) const
{
    const DayCell &c = model_.grid()[cell];
    if (c.caption == 0)
        return {};
    const int month = monthOfGridCell(cell);
    const int column = (cell < kJanuaryCells ? cell : cell - kJanuaryCells) % 7;
    QString name = QStringLiteral("%1 %2 %3 %4")
                       .arg(rt::kEnglishWeekdays[column])
                       .arg(c.caption)
                       .arg(QLatin1String(kMonths[month - 1]))
                       .arg(model_.displayedYear());
    // Bold marks today, and only today.
    if (c.bold)
        name += QStringLiteral(", today");
    if (c.back == kSelectionGrey)
        name += QStringLiteral(", selected");
    if (!details_)
        return name;
    const bool painted = c.back != model_.dayBackColor() && c.back != kSelectionGrey;
    try {
        const QString details = details_(gridDate(month, c.caption, model_.displayedYear()),
                                         painted ? std::optional(c.back) : std::nullopt);
        if (!details.isEmpty())
            name += QStringLiteral(", ") + details;
    } catch (const rt::RuntimeError &) {
        // A year the grid cannot date: the name stays with what the cell shows.
    }
    return name;
}

void UserControl1::paintMonths()
{
    for (QLabel *title : mon_) {
        QPalette p = title->palette();
        p.setColor(QPalette::Window, rt::toQColor(model_.monthBackColor()));
        p.setColor(QPalette::WindowText, rt::toQColor(model_.monthForeColor()));
        title->setPalette(p);
    }
}

void UserControl1::setDay_ForeColor(rt::WinColor colour)
{
    change([&] { model_.setDayForeColor(colour); });
}

void UserControl1::setDay_BackColor(rt::WinColor colour)
{
    change([&] { model_.setDayBackColor(colour); });
}

void UserControl1::setMonth_ForeColor(rt::WinColor colour)
{
    model_.setMonthForeColor(colour);
    paintMonths();
}

void UserControl1::setMonth_BackColor(rt::WinColor colour)
{
    model_.setMonthBackColor(colour);
    paintMonths();
}

void UserControl1::SetDayBackColor(rt::Date date, rt::WinColor colour)
{
    change([&] { model_.SetDayBackColor(date, colour); });
}

void UserControl1::SetDayForeColor(rt::Date date, rt::WinColor colour)
{
    change([&] { model_.SetDayForeColor(date, colour); });
}

void UserControl1::moveToday(rt::Date today)
{
    change([&] { model_.moveToday(today); });
}

rt::WinColor UserControl1::GetDayBackcolor(rt::Date date) const
{
    return model_.GetDayBackcolor(date);
}

void UserControl1::cmdLeft_Click()
{
    stepYear(1);
}

void UserControl1::cmdRight_Click()
{
    stepYear(-1);
}

void UserControl1::stepYear(int delta)
{
    change([&] { model_.stepYear(delta); });
    j1_Click(20);
    emit YearChanged();
}

void UserControl1::j1_Click(int index)
{
    dayClick(true, index);
}

void UserControl1::f1_Click(int index)
{
    dayClick(false, index);
}

void UserControl1::dayClick(bool inJanuary, int index)
{
    const rt::Date date = change([&] { return model_.click(inJanuary, index); });
    emit DateClick(date);
    model_.setSelected(date);
}

void UserControl1::j1_MouseDown(int index, int button, [[maybe_unused]] int shift,
                                [[maybe_unused]] double x, [[maybe_unused]] double y)
{
    dayMouseDown(true, index, button);
}

void UserControl1::f1_MouseDown(int index, int button, [[maybe_unused]] int shift,
                                [[maybe_unused]] double x, [[maybe_unused]] double y)
{
    dayMouseDown(false, index, button);
}

void UserControl1::dayMouseDown(bool inJanuary, int index, int button)
{
    if (button == 2)
        emit DateRClick(model_.cellDate(inJanuary, index));
}

void UserControl1::j1_DblClick(int index)
{
    emit DateDblClick(model_.cellDate(true, index));
}

void UserControl1::f1_DblClick(int index)
{
    emit DateDblClick(model_.cellDate(false, index));
}

void UserControl1::Label12_KeyPress(int keyAscii)
{
    if (keyAscii == 13)
        change([&] { model_.enterYear(label12_->text()); });
}

void UserControl1::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    UserControl_Resize();
}

// Lefts and widths follow the width; tops and heights follow the height.
void UserControl1::UserControl_Resize()
{
    const Placement p = ratios_.place(rt::pixelsToTwips(width()), rt::pixelsToTwips(height()));
    const auto place = [&p](QWidget *child, double left, const Box &design, double width) {
        child->setGeometry(pixels(left, p.y(design.top), width, p.y(design.height)));
    };
    for (int cell = 0; cell < kCells; ++cell) {
        const bool january = cell < kJanuaryCells;
        const int index = january ? cell : cell - kJanuaryCells;
        place(cells_[cell], january ? p.j1Left[index] : p.f1Left[index], dayCellBox(january, index),
              p.cellWidth);
        cells_[cell]->setFontPoints(p.cellFontPoints);
    }
    const QFont monthFont = calendarFont(p.monFontPoints, true);
    for (int m = 0; m < 12; ++m) {
        place(mon_[m], p.monLeft[m], monthBox(m), p.monWidth);
        mon_[m]->setFont(monthFont);
    }
    const QFont headerFont = calendarFont(p.wFontPoints, true);
    for (int i = 0; i < 84; ++i) {
        place(w_[i], p.wLeft[i], weekdayBox(i), p.wWidth);
        w_[i]->setFont(headerFont);
    }
    for (int i = 0; i < 3; ++i) {
        const VLine l = monthSeparator(i);
        line1_[i]->setGeometry(
            pixels(p.line1X[i], p.y(l.top), rt::twipsPerPixel(), p.y(l.bottom - l.top)));
    }
    // The row separators keep their design span across; only their height follows.
    for (int i = 0; i < 2; ++i)
        rowLines_[i]->move(rowLines_[i]->x(), rt::twipsToPixels(p.y(rowSeparator(i).y)));
    place(cmdRight_, p.cmdRightLeft, rightButtonBox(), p.buttonWidth);
    place(label12_, p.label12Left, yearBox(), p.label12Width);
    label12_->setFont(calendarFont(p.yearFontPoints, true));
    place(cmdLeft_, p.cmdLeftLeft, leftButtonBox(), p.buttonWidth);
    for (QPushButton *button : {cmdLeft_, cmdRight_})
        button->setFont(calendarFont(p.buttonFontPoints, true));
}
