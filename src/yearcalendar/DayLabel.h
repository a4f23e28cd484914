#pragma once

#include "yearcalendar/YearGrid.h"

#include <QFont>
#include <QLabel>
#include <optional>

namespace yearcal
{

// The calendar's face: Arial, which is Liberation Sans where Arial is missing. Sizes are
// given in points and kept in whole pixels.
QFont calendarFont(double points, bool bold);

// One day cell. It shows a DayCell, touching the widget only where the cell really changed,
// and reports the mouse the way the calendar's handlers expect it: a press of any button,
// a click (left press and release on the label) and a left double click. The second press
// of a double click is the double click only.
class DayLabel : public QLabel
{
    Q_OBJECT
public:
    explicit DayLabel(QWidget *parent);

    void display(const DayCell &cell);
    void setFontPoints(double points);

signals:
    void mouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF pos);
    void clicked();
    void doubleClicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    std::optional<DayCell> shown_;
    double points_;
    bool leftDown_ = false;
};

} // namespace yearcal
