#pragma once

#include <QFont>
#include <QStringList>
#include <QWidget>
#include <vector>

class QFrame;
class QLabel;
class QScrollBar;

// The legend of categories: per category a name and a box in its colour, one row every 270
// twips, scrolled by a bar that counts in twips. Only the rows in view exist as widgets; they
// take other categories as the legend scrolls, so a store of any size costs a screenful.
//
// Tab and Shift+Tab go from row to row, scrolling the next into view; Enter, Space or a
// click opens a row. Each label is named "lblcat_" and the number of the category it shows,
// its box "shpcat_" and the number.
class Legend : public QWidget
{
    Q_OBJECT

public:
    Legend(QScrollBar *scroll, QWidget *parent);

    // Element i of each list is category i's; element 0 is unused.
    void setCategories(const QStringList &names, const QStringList &colours);

    // Columns follow the width of the legend's frame, in twips: the name at 0.0315 of it and
    // 0.567 wide, the box at 0.63 and 0.189 wide. The names are in a font of `fontPoints`.
    void setColumns(int frameTwips, double fontPoints);

    // Rows and boxes grow with this factor, for a window stretched in height; the columns
    // follow the width alone.
    void setRowScale(double scale);

    int rowCount() const { return int(names_.size()) - 1; }

signals:
    void rowClicked(int index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Row {
        QLabel *name = nullptr;
        QFrame *box = nullptr;
        int index = 0; // the category shown; 0 for none
    };

    int pitch() const;
    void updateRange();
    void placeRows();
    void fill(Row &row);
    void layOut(Row &row) const;
    Row *rowOf(QObject *label);
    void moveFocusTo(int index);

    QScrollBar *scroll_;
    std::vector<Row> rows_;
    QStringList names_ = {QString()};
    QStringList colours_;
    int frameWidth_ = 0;
    double scale_ = 1.0;
    QFont font_;
};
