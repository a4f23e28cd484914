#pragma once

#include <QObject>
#include <QString>

class Form1;
class QWidget;

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
