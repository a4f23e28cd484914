// Shows the year calendar on its own, with a few days coloured the way the main window
// colours them, until it is closed. Used by scripts/show-calendar.sh for screenshots.

#include "yearcalendar/UserControl1.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    UserControl1 calendar;
    calendar.setWindowTitle("Year calendar");
    const int year = calendar.displayedYear();
    for (int week = 0; week < 5; ++week)
        calendar.SetDayBackColor(rt::DateSerial(year, 3, 4) + 7 * week, rt::RGB(120, 220, 120));
    calendar.SetDayBackColor(rt::DateSerial(year, 1, 9), rt::RGB(255, 190, 90));
    calendar.SetDayBackColor(rt::DateSerial(year, 7, 4), rt::RGB(240, 120, 200));
    calendar.SetDayForeColor(rt::DateSerial(year, 12, 25), rt::RGB(200, 0, 200));
    calendar.move(0, 0);
    calendar.show();
    return app.exec();
}
