#pragma once

#include "backup/Backups.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// "Restore from Backup...": the copies of Data.ini, newest first, each with what it holds
// beside the current Data.ini. Restoring one asks first, keeps a copy of the current store
// and replaces it; the dialog is then accepted, and the caller reloads.
class frmRestore : public QDialog
{
    Q_OBJECT

public:
    explicit frmRestore(QWidget *parent = nullptr);

    void Form_Load(); // fills the list
    void cmdRestore_Click();
    void CancelButton_Click();

    QTreeWidget *lstCopies() const { return lstCopies_; }

private:
    QList<backup::Copy> copies_;
    QLabel *Label1 = nullptr;
    QTreeWidget *lstCopies_ = nullptr;
    QPushButton *cmdRestore = nullptr;
    QPushButton *CancelButton = nullptr;
};
