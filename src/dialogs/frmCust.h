#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>
#include <cstdint>

class QComboBox;
class QLineEdit;
class QPushButton;

// The window that sets each category's colour and adds categories. Colours reach the store
// only through OK; a new category is written at once.
class frmCust : public QDialog
{
    Q_OBJECT

public:
    explicit frmCust(QWidget *parent = nullptr);

    void Fill_cmbCat();
    // Selects a category by its name, in any case; "More" is category 1.
    void selectByName(const QString &name);

    void cmbcat_Click();
    void cmdpalette_Click();
    void OKButton_Click();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void showColour(std::int32_t colour);

    // Numbered from 1, as in the store.
    QStringList names_;
    QList<std::int32_t> colours_;
    int shownCategory_ = 0; // the entry to go back to when no category is added

    QComboBox *cmbcat = nullptr;
    QComboBox *cmbcat1 = nullptr;
    QLineEdit *Text1 = nullptr;
    QPushButton *cmdpalette = nullptr;
    QPushButton *OKButton = nullptr;
};
