#pragma once

#include "ical/IcalImport.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTreeWidget;
class QTreeWidgetItem;

// The preview of an import: every event of the file, what it will become or why it cannot
// be imported. The user picks the events, renames duplicates in the memo column, and picks
// a category for events without one and the years for rules written out day by day. OK
// writes the store.
class frmImport : public QDialog
{
    Q_OBJECT

public:
    frmImport(ical::Calendar calendar, const store::Model &model, const QString &fileName, int year,
              QWidget *parent = nullptr);

    const QList<ical::Item> &items() const { return items_; }
    int written() const { return written_; }

    void txtFrom_Change();
    void lstEvents_Changed(QTreeWidgetItem *row, int column);
    void cmbcat_Click();
    void OKButton_Click();

private:
    void Fill_cmbCat();
    void fillList();
    void showProblems();

    ical::Calendar calendar_;
    const store::Model &model_;
    QList<ical::Item> items_;
    QStringList categories_;
    int shownCategory_ = 0;
    int written_ = 0;
    bool filling_ = false;

    QLabel *lblFile = nullptr;
    QTreeWidget *lstEvents = nullptr;
    QComboBox *cmbcat = nullptr;
    QSpinBox *txtFrom = nullptr;
    QSpinBox *txtTo = nullptr;
    QLabel *lblCount = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
};
