#include "mainwindow/OwnActivations.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

OwnActivations::OwnActivations(QWidget *main) : QObject(main), main_(main)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &OwnActivations::focusMovedTo);
    main->installEventFilter(this);
}

void OwnActivations::focusMovedTo(QWindow *window)
{
    // Menus and tool tips come and go without leaving the window.
    if (!window || window->type() == Qt::Popup || window->type() == Qt::ToolTip)
        return;
    if (window != main_->windowHandle()) {
        due_ = true;
    } else if (due_) {
        due_ = false;
        emit activated();
    }
}

bool OwnActivations::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == main_ && event->type() == QEvent::Hide)
        due_ = true;
    return QObject::eventFilter(watched, event);
}
