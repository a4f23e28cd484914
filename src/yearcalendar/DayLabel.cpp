#include "yearcalendar/DayLabel.h"

#include "runtime/Twips.h"
#include "yearcalendar/Layout.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace yearcal
{

QFont calendarFont(double points, bool bold)
{
    QFont font;
    font.setFamilies({"Arial", "Liberation Sans"});
    font.setPixelSize(std::max(1, int(std::lround(rt::pointsToPixels(points)))));
    font.setBold(bold);
    return font;
}

namespace
{

// A day is read as a button that says its date and what lies on it.
class DayCellAccessible : public QAccessibleWidget
{
public:
    explicit DayCellAccessible(DayLabel *cell) : QAccessibleWidget(cell, QAccessible::Button) {}
    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name)
            return static_cast<const DayLabel *>(widget())->description();
        return QAccessibleWidget::text(t);
    }
};

QAccessibleInterface *dayCellFactory(const QString &className, QObject *object)
{
    if (className == QLatin1String(DayLabel::staticMetaObject.className()) &&
        object->isWidgetType())
        return new DayCellAccessible(static_cast<DayLabel *>(object));
    return nullptr;
}

} // namespace

DayLabel::DayLabel(QWidget *parent) : QLabel(parent), points_(kDayFontPoints)
{
    static const bool factoryInstalled = [] {
        QAccessible::installFactory(dayCellFactory);
        return true;
    }();
    Q_UNUSED(factoryInstalled);
    setFocusPolicy(Qt::ClickFocus);
    setFont(calendarFont(points_, true));
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
}

void DayLabel::display(const DayCell &cell)
{
    const bool first = !shown_;
    if (first || shown_->caption != cell.caption)
        setText(QString::number(cell.caption));
    if (first || shown_->back != cell.back || shown_->fore != cell.fore) {
        QPalette p = palette();
        p.setColor(QPalette::Window, rt::toQColor(cell.back));
        p.setColor(QPalette::WindowText, rt::toQColor(cell.fore));
        setPalette(p);
    }
    if (first || shown_->bold != cell.bold)
        setFont(calendarFont(points_, cell.bold));
    if (first || shown_->enabled != cell.enabled)
        setEnabled(cell.enabled);
    if (first || shown_->visible != cell.visible)
        setVisible(cell.visible);
    shown_ = cell;
}

void DayLabel::setFontPoints(double points)
{
    points_ = points;
    const QFont resized = calendarFont(points, shown_ && shown_->bold);
    if (resized.pixelSize() != font().pixelSize())
        setFont(resized);
}

void DayLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        leftDown_ = true;
    emit mouseDown(event->button(), event->modifiers(), event->position());
}

void DayLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !leftDown_)
        return;
    leftDown_ = false;
    if (rect().contains(event->position().toPoint()))
        emit clicked();
}

void DayLabel::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        mousePressEvent(event);
        return;
    }
    leftDown_ = false;
    emit doubleClicked();
}

void DayLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    emit focusChanged();
}

void DayLabel::focusOutEvent(QFocusEvent *event)
{
    QLabel::focusOutEvent(event);
    emit focusChanged();
}

bool DayLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), description(), this);
        return true;
    }
    return QLabel::event(event);
}

} // namespace yearcal
