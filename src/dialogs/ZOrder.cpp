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
        // Changing the flag hides a shown window; show() below brings it back.
        if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) != onTop)
            window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
        window->raise();
        break;
    }
    }
    if (!window->isVisible())
        window->show();
}
