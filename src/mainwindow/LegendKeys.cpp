#include "mainwindow/LegendKeys.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <algorithm>

LegendKeys::LegendKeys(QScrollBar *scroll, int rowHeight, std::function<void(int)> open,
                       QObject *parent)
    : QObject(parent), scroll_(scroll), rowHeight_(rowHeight), open_(std::move(open))
{
}

void LegendKeys::attach(QLabel *row)
{
    row->setFocusPolicy(Qt::TabFocus);
    row->installEventFilter(this);
}

bool LegendKeys::eventFilter(QObject *watched, QEvent *event)
{
    auto *row = qobject_cast<QLabel *>(watched);
    if (!row)
        return false;
    const int index = row->property("index").toInt();
    switch (event->type()) {
    case QEvent::FocusIn:
        row->setFrameStyle(QFrame::Box | QFrame::Plain);
        showRow(index);
        break;
    case QEvent::FocusOut:
        row->setFrameStyle(QFrame::NoFrame);
        break;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            open_(index);
            return true;
        }
        break;
    }
    default:
        break;
    }
    return false;
}

// Rows are rowHeight apart from the scroll bar's 0; the bar's page is what shows.
void LegendKeys::showRow(int index)
{
    const int top = (index - 1) * rowHeight_;
    const int first = std::max(scroll_->minimum(), top + rowHeight_ - scroll_->pageStep());
    scroll_->setValue(std::clamp(scroll_->value(), first, std::max(first, top)));
}
