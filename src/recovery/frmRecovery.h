#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

// Shown at start when the last run ended on an event that would end this one too: says what
// happened and offers the ways on. The dialog's result is the choice.
class frmRecovery : public QDialog
{
    Q_OBJECT

public:
    enum Choice { Keep = 0, Edit, Remove, Restore };

    explicit frmRecovery(const QString &explanation, QWidget *parent = nullptr);

    void cmdEdit_Click() { done(Edit); }
    void cmdRemove_Click() { done(Remove); }
    void cmdRestore_Click() { done(Restore); }
    void cmdKeep_Click() { done(Keep); }

private:
    QLabel *lblWhat = nullptr;
    QLabel *lblHow = nullptr;
};
