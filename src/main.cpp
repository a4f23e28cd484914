#include "runtime/Application.h"
#include "shell/frmSplash.h"

int main(int argc, char **argv)
{
    rt::Application app(argc, argv);
    app.setApplicationName(QStringLiteral("ORVA Calendar"));
    // The launcher's name, by which Wayland desktops find the program's icon.
    app.setDesktopFileName(QStringLiteral("orva-calendar"));
    // A hidden main window and a closed tray menu leave no window open; the program ends
    // only by its own "Exit".
    app.setQuitOnLastWindowClosed(false);
    frmSplash splash;
    splash.Form_Load();
    return app.exec();
}
