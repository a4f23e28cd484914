#pragma once

#include <QObject>
#include <functional>

class QLabel;
class QScrollBar;

// The legend by keyboard: Tab reaches every row, the focused row is framed and scrolled
// into view, and Enter or Space opens it as a click does.
class LegendKeys : public QObject
{
    Q_OBJECT
public:
    // rowHeight is the scroll bar's step per row; open gets the row's index.
    LegendKeys(QScrollBar *scroll, int rowHeight, std::function<void(int index)> open,
               QObject *parent);

    // The row's index is its "index" property.
    void attach(QLabel *row);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showRow(int index);

    QScrollBar *scroll_;
    int rowHeight_;
    std::function<void(int)> open_;
};
