// Times the year calendar's costly paths and prints the figures: a left click (rebuild,
// re-applied colours, highlight), a year change with the buttons, and a burst of colour
// calls, on a year painted the way the main window paints it on every activation.

#include "runtime/Clock.h"
#include "yearcalendar/CalendarModel.h"
#include "yearcalendar/UserControl1.h"

#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

// Keeps the colour reads from being optimised away.
volatile rt::WinColor readBack = 0;

// Runs an operation repeatedly; prints the mean and the worst time in milliseconds.
void time(const char *what, int runs, const std::function<void(int)> &operation)
{
    std::vector<double> ms;
    QElapsedTimer timer;
    for (int run = 0; run < runs; ++run) {
        timer.start();
        operation(run);
        ms.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    double sum = 0;
    for (const double m : ms)
        sum += m;
    std::printf("%-48s %5d runs  mean %8.3f ms  worst %8.3f ms\n", what, runs, sum / runs,
                *std::max_element(ms.begin(), ms.end()));
}

// One activation of the main window: every day that carries one of the weekly events is
// coloured with the event's category.
template <typename Calendar> void paintWeekly(Calendar &calendar, int year, int events)
{
    for (int event = 0; event < events; ++event) {
        const rt::WinColor colour = rt::RGB(event % 7 * 30, 100, 200);
        for (rt::Date day = rt::DateSerial(year, 1, 1) + event % 7; rt::Year(day) == year; day += 7)
            calendar.SetDayBackColor(day, colour);
    }
}

void keptColours()
{
    yearcal::CalendarModel model;
    QElapsedTimer timer;
    timer.start();
    paintWeekly(model, 2024, 1000);
    std::printf("1,000 weekly events, painted once:     %6.1f ms, %zu colours kept\n",
                double(timer.nsecsElapsed()) / 1e6, model.backColours().size());
    timer.start();
    for (int repaint = 1; repaint < 1000; ++repaint)
        paintWeekly(model, 2024, 1000);
    std::printf("... and 999 paintings more:            %6.1f ms, %zu colours kept\n",
                double(timer.nsecsElapsed()) / 1e6, model.backColours().size());
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    rt::Clock::setSource([] { return rt::DateSerial(2024, 3, 15) + 0.5; });

    UserControl1 c;
    c.show();
    QApplication::processEvents();
    time("painting 1,000 weekly events (52,000 calls)", 5,
         [&](int) { paintWeekly(c, 2024, 1000); });

    // Alternate between two cells so that every click really moves the highlight.
    time("left click", 500, [&](int run) { c.f1_Click(run % 2 ? 61 : 100); });
    time("left click, then painting the widget", 200, [&](int run) {
        c.f1_Click(run % 2 ? 61 : 100);
        c.repaint();
    });
    time("year change (cmdLeft, cmdRight alternately)", 200,
         [&](int run) { run % 2 ? c.cmdRight_Click() : c.cmdLeft_Click(); });
    time("year change, then painting the widget", 100, [&](int run) {
        run % 2 ? c.cmdRight_Click() : c.cmdLeft_Click();
        c.repaint();
    });

    std::vector<rt::Date> days;
    for (int i = 0; i < 10000; ++i)
        days.push_back(rt::DateSerial(2024, 1, 1) + i % 366);
    time("10,000 SetDayBackColor + 10,000 GetDayBackcolor", 20, [&](int run) {
        for (const rt::Date day : days)
            c.SetDayBackColor(day, rt::RGB(run * 10, 0, 0));
        for (const rt::Date day : days)
            readBack = c.GetDayBackcolor(day);
    });

    keptColours();
    return 0;
}
