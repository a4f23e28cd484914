#include "runtime/Application.h"
#include "shell/frmtask.h"

int main(int argc, char **argv)
{
    rt::Application app(argc, argv);
    app.setApplicationName(QStringLiteral("ORVA Calendar"));
    // A hidden main window and a closed tray menu leave no window open; the program ends
    // only by its own "Exit".
    app.setQuitOnLastWindowClosed(false);
    frmtask task;
    task.Form_Load();
    return app.exec();
}
