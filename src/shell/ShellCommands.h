#pragma once

#include <QObject>
#include <QPointer>

class Form1;
class HelpWindow;

// Answers the main window's File and Help menus and the click on its logo: printing, the
// user guide, the about box and the homepage.
class ShellCommands : public QObject
{
    Q_OBJECT

public:
    explicit ShellCommands(Form1 *form);
    ~ShellCommands() override;

    void print();
    void printCalendar(); // the window itself, landscape
    void contents();
    void index();
    void about();
    void restore(); // "Restore from Backup...", then the store is loaded again

    HelpWindow *helpWindow();

private:
    Form1 *form_;
    QPointer<HelpWindow> help_;
};
