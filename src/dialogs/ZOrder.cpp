#include "dialogs/ZOrder.h"

#include <QWidget>

void SetZOrder(QWidget *window)
{
    window->raise();
    if (!window->isVisible())
        window->show();
}
