#pragma once

#include "yearcalendar/YearGrid.h"

#include <QFont>
#include <QLabel>
#include <functional>
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
//
// Its description, asked for only when needed, is its accessible name and its tool tip.
class DayLabel : public QLabel
{
    Q_OBJECT
public:
    explicit DayLabel(QWidget *parent);

    void display(const DayCell &cell);
    void setFontPoints(double points);

    void setDescriber(std::function<QString()> describe) { describe_ = std::move(describe); }
    QString description() const { return describe_ ? describe_() : text(); }

signals:
    void mouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPointF pos);
    void clicked();
    void doubleClicked();
    void focusChanged();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;

private:
    std::optional<DayCell> shown_;
    double points_;
    bool leftDown_ = false;
    std::function<QString()> describe_;
};

} // namespace yearcal
