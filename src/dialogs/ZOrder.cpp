#include "dialogs/ZOrder.h"

#include <QWidget>

void SetZOrder(QWidget *window, InsertAfter insertAfter)
{
    switch (insertAfter) {
    case InsertAfter::Top:
        window->raise();
        break;
    case InsertAfter::Bottom:
        window->lower();
        break;
    case InsertAfter::TopMost:
    case InsertAfter::NoTopMost: {
        const bool onTop = insertAfter == InsertAfter::TopMost;
        // Changing the flag hides the window and can move it by its frame; show() below
        // brings it back, where it was.
        if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) != onTop) {
            const QRect geometry = window->geometry();
            window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
            window->setGeometry(geometry);
        }
        window->raise();
        break;
    }
    }
    if (!window->isVisible())
        window->show();
}
