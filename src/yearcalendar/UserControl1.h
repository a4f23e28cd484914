#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"
#include "yearcalendar/CalendarModel.h"
#include "yearcalendar/DayFocus.h"
#include "yearcalendar/Layout.h"

#include <QWidget>
#include <array>
#include <functional>
#include <optional>

class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace yearcal
{
class DayLabel;
}

// A whole year as twelve month grids below a year box with an arrow button on either side.
// Days can be coloured by date; clicks on days are reported as dated events.
//
// Children carry their names as object names. Single children: "Label12" (QLineEdit, the
// year box), "cmdLeft" and "cmdRight" (QPushButton), "Line4" and "Line5" (QFrame). Members
// of the arrays are named array, underscore, index and carry the index in the dynamic
// property "index": "mon_0".."mon_11" (month titles) and "w_0".."w_83" (weekday headers),
// both QLabel; "j1_0".."j1_41" (January's days) and "f1_0".."f1_461" (February's to
// December's, 42 a month), both QLabel; "Line1_0".."Line1_2" (QFrame).
//
// The left button ("+") goes one year forward and the right one ("−") a year back.
//
// One day at a time holds the keyboard focus, framed: arrows move it by a day or a week,
// Home/End to the month's ends, PageUp/PageDown by a month, Ctrl+PageUp/PageDown press the
// year buttons. Space, Enter and the Menu key (or Shift+F10) on it act as a click, a double
// click and a right click.
class UserControl1 : public QWidget
{
    Q_OBJECT
public:
    explicit UserControl1(QWidget *parent = nullptr);
    ~UserControl1() override;

    rt::Date Selected() const { return model_.selected(); }
    int displayedYear() const { return model_.displayedYear(); }

    rt::WinColor Day_ForeColor() const { return model_.dayForeColor(); }
    rt::WinColor Day_BackColor() const { return model_.dayBackColor(); }
    rt::WinColor Month_ForeColor() const { return model_.monthForeColor(); }
    rt::WinColor Month_BackColor() const { return model_.monthBackColor(); }
    void setDay_ForeColor(rt::WinColor colour);
    void setDay_BackColor(rt::WinColor colour);
    void setMonth_ForeColor(rt::WinColor colour);
    void setMonth_BackColor(rt::WinColor colour);

    // A January date colours the day of that number in the January on show, whatever its
    // year; a date of a later month only when it lies in the displayed year.
    void SetDayBackColor(rt::Date date, rt::WinColor colour);
    void SetDayForeColor(rt::Date date, rt::WinColor colour);
    rt::WinColor GetDayBackcolor(rt::Date date) const; // 0 when no cell shows the date

    // Moves the red, bold mark of today when the date has changed since the year was filled.
    void moveToday(rt::Date today);

    // Handlers, reachable for the host and for tests. Buttons are 1 left, 2 right,
    // 4 middle; shift is 1 Shift, 2 Ctrl, 4 Alt; x and y are twips within the cell.
    void cmdLeft_Click();
    void cmdRight_Click();
    void j1_Click(int index);
    void f1_Click(int index);
    void j1_MouseDown(int index, int button, int shift, double x, double y);
    void f1_MouseDown(int index, int button, int shift, double x, double y);
    void j1_DblClick(int index);
    void f1_DblClick(int index);
    void Label12_KeyPress(int keyAscii);
    void UserControl_Resize();

    // What the host adds to a day's name: given the day's date and, when the day is painted
    // in a colour other than the Day back colour and the selection grey, that colour.
    using DayDetails = std::function<QString(rt::Date date, std::optional<rt::WinColor> painted)>;
    void setDayDetails(DayDetails details) { details_ = std::move(details); }
    // The accessible name and tool tip of a cell (numbered as in YearGrid): "Tuesday 3 March
    // 2026, today, selected" and the host's details.
    QString dayName(int cell) const;

    yearcal::GridDay focusDay() const { return focusDay_; }
    // Where the day popup opens: at the cell when a key asked for it, else at the mouse.
    QPoint popupPosition() const;

signals:
    void DateClick(rt::Date date);
    void DateRClick(rt::Date date);
    void DateDblClick(rt::Date date);
    void YearChanged();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void createChildren();
    void createDayCells();
    void connectDayCell(yearcal::DayLabel *cell, bool inJanuary, int index);
    void dayClick(bool inJanuary, int index);
    void dayMouseDown(bool inJanuary, int index, int button);
    void stepYear(int delta);
    void paintMonths();
    void showCells();
    template <typename Change> auto change(Change &&apply);
    bool dayKey(int key, Qt::KeyboardModifiers modifiers);
    void moveFocus(yearcal::GridDay day);
    void placeTabStop(bool takeFocus);
    void cellFocused(int cell);
    QRect focusFrame(int cell) const;

    yearcal::CalendarModel model_;
    yearcal::Ratios ratios_{yearcal::kDesignWidth};

    QLineEdit *label12_ = nullptr;
    QPushButton *cmdLeft_ = nullptr;
    QPushButton *cmdRight_ = nullptr;
    std::array<QLabel *, 12> mon_{};
    std::array<QLabel *, 84> w_{};
    std::array<yearcal::DayLabel *, yearcal::kCells> cells_{}; // j1 then f1, as in the grid
    std::array<QFrame *, 3> line1_{};
    std::array<QFrame *, 2> rowLines_{}; // Line4, Line5

    yearcal::GridDay focusDay_;
    int tabStop_ = -1;      // the one cell Tab reaches: the focused day's
    int keyboardCell_ = -1; // the cell a key is right-clicking, while it does
    DayDetails details_;
};
