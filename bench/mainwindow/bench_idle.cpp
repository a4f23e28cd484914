// The floor under the program's idle processor use: a Qt Widgets application that does
// nothing but wake for a 40 ms timer, as the reminder timer must. Run it on the display the
// program is measured on; prints percent of one core over the period (30 s, or argv[1]).
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <unistd.h>

namespace
{

double cpuSeconds()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = stat.readAll().split(')').last().split(' ');
    // After the name: state is field 1, utime 12, stime 13.
    return (fields.value(12).toDouble() + fields.value(13).toDouble()) / sysconf(_SC_CLK_TCK);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 30;
    QWidget hidden; // a window that exists but is not shown, as the main window in the tray
    hidden.winId();
    int ticks = 0;
    QTimer tick;
    tick.setInterval(40);
    QObject::connect(&tick, &QTimer::timeout, [&ticks] { ++ticks; });
    double before = 0;
    QElapsedTimer elapsed;
    // Measured from one second in, past the start-up's own work.
    QTimer::singleShot(1000, [&] {
        before = cpuSeconds();
        elapsed.start();
        tick.start();
    });
    QTimer::singleShot((seconds + 1) * 1000, [&] {
        const double cpu = cpuSeconds() - before;
        std::printf("bare 25 Hz timer, hidden window: %.2f%% of a core (%d ticks in %.1f s)\n",
                    cpu / (elapsed.elapsed() / 1000.0) * 100, ticks, elapsed.elapsed() / 1000.0);
        app.quit();
    });
    return app.exec();
}
