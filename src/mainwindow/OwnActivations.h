#pragma once

#include <QObject>

class QWidget;
class QWindow;

// Tells which activations of the main window are the program's own, the ones that reload the
// store: the first, a return from another of the program's windows (a dialog closing) and a
// return from hiding (the tray bringing it back). Coming back from another application is
// not one; the window just regains the focus, filters and all.
class OwnActivations : public QObject
{
    Q_OBJECT

public:
    explicit OwnActivations(QWidget *main);

    // The program's window that now has the focus; none while another application has it.
    void focusMovedTo(QWindow *window);

signals:
    void activated();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *main_;
    bool due_ = true;
};
