#pragma once

#include "reminders/MissedScan.h"

#include <QDialog>

class QLabel;
class QVBoxLayout;

// The one "Missed reminders" window: the reminders that came due while they could not be
// shown, newest first, each with its category's colour. Actions are never run from here
// unasked: each has a button to open it now.
class frmMissed : public QDialog
{
    Q_OBJECT

public:
    // More would make a list nobody reads; the rest are counted.
    static constexpr int kShown = 20;

    explicit frmMissed(QWidget *parent = nullptr);

    // Adds to what the window lists, while it is open, and shows it.
    void add(const QList<reminders::MissedReminder> &found);
    const QList<reminders::MissedReminder> &listed() const { return listed_; }

    void OKButton_Click();

signals:
    void openRequested(const QString &path);

private:
    void fill();

    QList<reminders::MissedReminder> listed_;
    QWidget *rows_ = nullptr;
    QVBoxLayout *rowsLayout_ = nullptr;
    QLabel *lblMore_ = nullptr;
};
