#pragma once

#include "runtime/DateTime.h"

#include <QObject>
#include <QString>

class Form1;
class QWidget;

// The date the event and print windows start on: the main window's selected date, or
// today before the first double or right click on a day has selected one.
rt::Date startingDate(const Form1 &form);

// Opens the event windows for the main window's menus, legend and calendar, each modal.
// The windows write the store; the main window reloads it when it is active again.
class EventDialogs : public QObject
{
    Q_OBJECT

public:
    explicit EventDialogs(Form1 *form);

    void add();
    void modify(bool recurring, int n, QWidget *parent);
    void remove();
    void find();
    void customize(const QString &category);
    void daily();
    // The main window's modi: opens the event that carries this memo or action path.
    void modi(const QString &text, QWidget *parent);

private:
    void backToMainWindow();

    Form1 *form_;
};
