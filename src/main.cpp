#include "shell/SingleInstance.h"
#include "shell/frmSplash.h"
#include "shell/frmtask.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("ORVA Calendar"));
    // The launcher's name, by which Wayland desktops find the program's icon.
    app.setDesktopFileName(QStringLiteral("orva-calendar"));
    // A hidden main window and a closed tray menu leave no window open; the program ends
    // only by its own "Exit".
    app.setQuitOnLastWindowClosed(false);
    // One copy per program folder: a second start hands over before it shows anything.
    SingleInstance instance;
    if (!instance.claim())
        return 0;
    frmSplash splash;
    QObject::connect(&instance, &SingleInstance::showRequested, &splash, [&splash] {
        if (frmtask *task = splash.task())
            task->instance_ShowRequested();
    });
    splash.Form_Load();
    return app.exec();
}
