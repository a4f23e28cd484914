#include "dialogs/frmCust.h"

#include "backup/Backups.h"
#include "dialogs/DialogSupport.h"
#include "dialogs/ZOrder.h"
#include "runtime/Colors.h"
#include "store/DataStore.h"
#include "store/SaveFailure.h"

#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

const QString kMoreEntry = QStringLiteral("More than one event");

} // namespace

frmCust::frmCust(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCust"));
    setWindowTitle(QStringLiteral("Customize..."));

    cmbcat = new QComboBox(this);
    cmbcat->setObjectName(QStringLiteral("cmbcat"));
    cmbcat->setMinimumWidth(180);
    cmbcat1 = new QComboBox(this);
    cmbcat1->setObjectName(QStringLiteral("cmbcat1"));
    cmbcat1->hide();
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    Text1->setFocusPolicy(Qt::NoFocus);
    Text1->setAccessibleName(QStringLiteral("Colour"));
    Text1->setFixedWidth(60);
    cmdpalette = new QPushButton(QStringLiteral("Color Pallette"), this);
    cmdpalette->setObjectName(QStringLiteral("cmdpalette"));
    cmdpalette->setAutoDefault(false);
    OKButton = new QPushButton(QStringLiteral("OK"), this);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setDefault(true);

    auto *colour = new QHBoxLayout;
    colour->addWidget(Text1);
    colour->addWidget(cmdpalette);
    colour->addStretch(1);
    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("Category :"), cmbcat);
    fields->addRow(QStringLiteral("Color :"), colour);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKButton);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);

    connect(cmbcat, &QComboBox::activated, this, &frmCust::cmbcat_Click);
    connect(cmdpalette, &QPushButton::clicked, this, &frmCust::cmdpalette_Click);
    connect(OKButton, &QPushButton::clicked, this, &frmCust::OKButton_Click);
    Fill_cmbCat();
}

void frmCust::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

void frmCust::Fill_cmbCat()
{
    cmbcat->clear();
    cmbcat1->clear();
    names_ = store::readStoredCategoryNames();
    const QStringList stored = store::readCategoryColours();
    colours_ = {0};
    for (int i = 1; i < names_.size(); ++i)
        colours_.append(std::int32_t(store::colourValue(stored[i]).value_or(0)));
    QStringList shown = names_.mid(1);
    if (!shown.isEmpty())
        shown[0] = kMoreEntry; // category 1 colours the days of several categories
    dialogs::fillCategoryLists(cmbcat, cmbcat1, shown);
    shownCategory_ = 0;
    if (colours_.size() > 1)
        showColour(colours_[1]);
}

void frmCust::selectByName(const QString &name)
{
    const QString wanted = (name == store::kMoreCategory ? kMoreEntry : name).toUpper();
    for (int i = 0; i < cmbcat->count() - 1; ++i) {
        if (cmbcat->itemText(i).toUpper() == wanted) {
            cmbcat->setCurrentIndex(i);
            cmbcat_Click();
            return;
        }
    }
}

void frmCust::showColour(std::int32_t colour)
{
    const QColor c = rt::toQColor(rt::WinColor(colour));
    Text1->setStyleSheet(QStringLiteral("QLineEdit { background: %1; color: %1; }").arg(c.name()));
}

void frmCust::cmbcat_Click()
{
    if (cmbcat->currentText() != dialogs::kNewCategory) {
        shownCategory_ = cmbcat->currentIndex();
        showColour(colours_.value(shownCategory_ + 1));
        return;
    }
    const int added = dialogs::addCategory(names_.mid(1), int(names_.size()) - 1);
    if (added == 0) {
        cmbcat->setCurrentIndex(shownCategory_);
        return;
    }
    // The refill reads the stored colours; colours picked but not yet saved stay picked.
    const QList<std::int32_t> picked = colours_;
    Fill_cmbCat();
    for (int i = 1; i < picked.size() && i < colours_.size(); ++i)
        colours_[i] = picked[i];
    // The new category is the one whose colour the user picks next.
    cmbcat->setCurrentIndex(added - 1);
    cmbcat_Click();
}

void frmCust::cmdpalette_Click()
{
    const int category = cmbcat->currentIndex() + 1;
    if (category < 1 || category >= colours_.size())
        return;
    QColorDialog dialog(rt::toQColor(rt::WinColor(colours_[category])), this);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    colours_[category] = std::int32_t(rt::fromQColor(dialog.selectedColor()));
    Text1->setText(QString::number(colours_[category]));
    showColour(colours_[category]);
}

void frmCust::OKButton_Click()
{
    backup::beforeChange();
    store::writeCategoryColours(colours_);
    store::afterChange();
    accept();
}
