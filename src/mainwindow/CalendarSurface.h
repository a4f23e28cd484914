#pragma once

#include "runtime/Colors.h"
#include "runtime/DateTime.h"

// What the main window's painters and day view need of the year calendar, so they run
// without widgets in tests.
class CalendarSurface
{
public:
    virtual ~CalendarSurface() = default;

    virtual void setDayBackColorAll(rt::WinColor color) = 0; // the Day_BackColor property
    virtual void SetDayBackColor(rt::Date date, rt::WinColor color) = 0;
    virtual rt::WinColor GetDayBackcolor(rt::Date date) = 0;
    virtual rt::Date Selected() const = 0;
    virtual int displayedYear() const = 0;
};
