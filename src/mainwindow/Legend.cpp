#include "mainwindow/Legend.h"

#include "mainwindow/SpokenNames.h"
#include "runtime/Colors.h"
#include "runtime/Twips.h"
#include "store/DataStore.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <algorithm>
#include <climits>
#include <cmath>

namespace
{

constexpr int kRowHeight = 270;
constexpr int kBoxHeight = 210;

const QString kToolTip = QStringLiteral("Click to Customize appearance");

int px(double twips)
{
    return rt::twipsToPixels(twips);
}

} // namespace

Legend::Legend(QScrollBar *scroll, QWidget *parent) : QWidget(parent), scroll_(scroll)
{
    setObjectName(QStringLiteral("legendArea"));
    scroll_->setSingleStep(kRowHeight);
    connect(scroll_, &QScrollBar::valueChanged, this, &Legend::placeRows);
}

int Legend::pitch() const
{
    return std::max(1, int(std::lround(kRowHeight * scale_)));
}

void Legend::setCategories(const QStringList &names, const QStringList &colours)
{
    names_ = names.isEmpty() ? QStringList{QString()} : names;
    colours_ = colours;
    updateRange();
    for (Row &row : rows_)
        row.index = 0; // refilled: names and colours may have changed under the same number
    placeRows();
}

void Legend::setColumns(int frameTwips, double fontPoints)
{
    frameWidth_ = frameTwips;
    font_ = QFont(QStringLiteral("Liberation Sans"));
    font_.setPointSizeF(std::max(1.0, fontPoints));
    for (Row &row : rows_) {
        row.name->setFont(font_);
        layOut(row);
        fill(row);
    }
}

void Legend::setRowScale(double scale)
{
    scale_ = scale;
    scroll_->setSingleStep(pitch());
    for (Row &row : rows_)
        layOut(row);
    updateRange();
    placeRows();
}

void Legend::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    updateRange();
    placeRows();
}

void Legend::wheelEvent(QWheelEvent *event)
{
    QCoreApplication::sendEvent(scroll_, event);
}

// The bar's page is the legend's height; it ends where the last row is in view.
void Legend::updateRange()
{
    const int visible = int(rt::pixelsToTwips(height()));
    const qint64 rowsHeight = qint64(rowCount()) * pitch();
    scroll_->setRange(0, int(std::clamp<qint64>(rowsHeight - visible, 0, INT_MAX)));
    scroll_->setPageStep(visible);
}

// Rows enough to cover the height at any scroll position, each showing the category its
// position holds.
void Legend::placeRows()
{
    const int needed = int(rt::pixelsToTwips(height())) / pitch() + 2;
    while (int(rows_.size()) < needed) {
        Row row;
        row.name = new QLabel(this);
        row.name->setFocusPolicy(Qt::TabFocus);
        row.name->setFont(font_);
        row.name->installEventFilter(this);
        row.box = new QFrame(this);
        row.box->setFrameStyle(QFrame::Box | QFrame::Plain);
        row.box->setAutoFillBackground(true);
        layOut(row);
        rows_.push_back(row);
    }
    const int value = scroll_->value();
    const int first = value / pitch() + 1;
    for (int k = 0; k < int(rows_.size()); ++k) {
        Row &row = rows_[k];
        const int index = first + k;
        const int top = px(double(index - 1) * pitch() - value);
        row.name->move(row.name->x(), top);
        row.box->move(row.box->x(), top + px(pitch() - kBoxHeight * scale_) / 2);
        if (index == row.index)
            continue;
        row.index = index <= rowCount() ? index : 0;
        fill(row);
    }
}

void Legend::layOut(Row &row) const
{
    const double f = frameWidth_;
    row.name->setGeometry(px(f * 0.0315), row.name->y(), px(f * 0.567), px(pitch()));
    row.box->setGeometry(px(f * 0.63), row.box->y(), px(f * 0.189), px(kBoxHeight * scale_));
}

void Legend::fill(Row &row)
{
    row.name->setVisible(row.index > 0);
    row.box->setVisible(row.index > 0);
    if (row.index == 0)
        return;
    const QString &name = names_[row.index];
    row.name->setObjectName(QStringLiteral("lblcat_%1").arg(row.index));
    row.box->setObjectName(QStringLiteral("shpcat_%1").arg(row.index));
    // Cut with an ellipsis to the label's width, the whole name then heading the tool tip;
    // before the first layout there is no width to cut to.
    const int width = row.name->width();
    const QString shown =
        width > 0 ? row.name->fontMetrics().elidedText(name, Qt::ElideRight, width) : name;
    row.name->setText(shown);
    row.name->setToolTip(shown == name ? kToolTip : name + QLatin1Char('\n') + kToolTip);
    const rt::WinColor colour = store::colourValue(colours_.value(row.index)).value_or(0);
    QPalette palette = row.box->palette();
    palette.setColor(QPalette::Window, rt::toQColor(colour));
    row.box->setPalette(palette);
    row.name->setAccessibleName(spoken::legendRowName(name, colour));
}

Legend::Row *Legend::rowOf(QObject *label)
{
    const auto it = std::find_if(rows_.begin(), rows_.end(),
                                 [label](const Row &row) { return row.name == label; });
    return it == rows_.end() || it->index == 0 ? nullptr : &*it;
}

// Scrolls row `index` wholly into view and focuses the label showing it.
void Legend::moveFocusTo(int index)
{
    const int top = (index - 1) * pitch();
    const int first = std::max(scroll_->minimum(), top + pitch() - scroll_->pageStep());
    scroll_->setValue(std::clamp(scroll_->value(), first, std::max(first, top)));
    for (Row &row : rows_) {
        if (row.index == index)
            row.name->setFocus(Qt::TabFocusReason);
    }
}

bool Legend::eventFilter(QObject *watched, QEvent *event)
{
    Row *row = rowOf(watched);
    if (!row)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
        emit rowClicked(row->index);
        break;
    case QEvent::Wheel:
        QCoreApplication::sendEvent(scroll_, event);
        return true;
    case QEvent::FocusIn:
        row->name->setFrameStyle(QFrame::Box | QFrame::Plain);
        moveFocusTo(row->index);
        break;
    case QEvent::FocusOut:
        row->name->setFrameStyle(QFrame::NoFrame);
        break;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            emit rowClicked(row->index);
            return true;
        }
        // Past the first or the last row, focus leaves the legend as usual.
        const int next = key == Qt::Key_Tab       ? row->index + 1
                         : key == Qt::Key_Backtab ? row->index - 1
                                                  : 0;
        if (next >= 1 && next <= rowCount()) {
            moveFocusTo(next);
            return true;
        }
        break;
    }
    default:
        break;
    }
    return false;
}
