#pragma once

#include "store/DataStore.h"

#include <QDialog>
#include <QList>
#include <QStringList>

class QLineEdit;
class QPushButton;

// The window that finds events by a word of their memo and shows the matches seven at a
// time. A click on a match asks for that event to be opened for a change.
class frmFind : public QDialog
{
    Q_OBJECT

public:
    static constexpr int kPageSize = 7;

    explicit frmFind(const store::Model &mainWindowModel, QWidget *parent = nullptr);

    void cmdFind_Click();
    void cmdnext_Click();
    void cmdBack_Click();
    void cmdClose_Click();
    void txt1_Click(int index); // 1 to 7

signals:
    // The text of the clicked match, for the main window's modi.
    void modiRequested(const QString &text);

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showPage(int first);

    const store::Model &mainWindowModel_;
    QStringList results_;
    int first_ = 1; // the number of the first match shown, from 1

    QLineEdit *txtkeyword = nullptr;
    QPushButton *cmdFind = nullptr;
    QList<QLineEdit *> txt1; // boxes 1 to 7 at 0 to 6
    QPushButton *cmdBack = nullptr;
    QPushButton *cmdnext = nullptr;
    QPushButton *cmdClose = nullptr;
};
