#pragma once

#include <QDialog>

class QFrame;
class QLabel;
class QPushButton;

// The about box: the program's icon, name, version and what it does.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);

    void cmdOK_Click();

    // Starts the system information program that Windows lists in its registry, or says
    // that there is none.
    void StartSysInfo();
    // Reads one value of the registry into `value`: text as it stands, a number as decimal
    // text. False when the key or the value is missing, and always where there is no
    // registry.
    static bool GetKeyValue(const QString &rootKey, const QString &keyName,
                            const QString &valueName, QString &value);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLabel *picIcon = nullptr;
    QLabel *lblTitle = nullptr;
    QLabel *lblVersion = nullptr;
    QLabel *lblDescription = nullptr;
    QFrame *Line1 = nullptr;
    QPushButton *cmdOK = nullptr;
};
