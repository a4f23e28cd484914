#pragma once

#include "store/DataStore.h"

#include <QDialog>
#include <QList>

class QTreeWidget;
class QTreeWidgetItem;

// The list of the events that recur every day, by time and memo. A click on one asks for it
// to be opened for a change.
class frmDaily : public QDialog
{
    Q_OBJECT

public:
    explicit frmDaily(QWidget *parent = nullptr);

    void Form_Load(); // (re)fills the list from the store
    void ListView1_ItemClick(QTreeWidgetItem *item);

signals:
    void RModiRequested(int n);

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTreeWidget *ListView1 = nullptr;
};
