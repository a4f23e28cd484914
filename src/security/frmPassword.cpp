#include "security/frmPassword.h"

#include "backup/Backups.h"
#include "runtime/ButtonRow.h"
#include "runtime/MsgBox.h"
#include "security/Password.h"
#include "store/DataStore.h"
#include "store/SaveFailure.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmPassword::frmPassword(const QString &storedPassword, QWidget *parent)
    : QDialog(parent), storedPassword_(storedPassword)
{
    setObjectName(QStringLiteral("frmPassword"));
    setWindowTitle(QStringLiteral("Create Password"));

    txtpass_ = new QLineEdit(this);
    txtpass_->setObjectName(QStringLiteral("txtpass"));
    txtpass_->setEchoMode(QLineEdit::Password);
    txtpass1_ = new QLineEdit(this);
    txtpass1_->setObjectName(QStringLiteral("txtpass1"));
    txtpass1_->setEchoMode(QLineEdit::Password);
    label1_ = new QLabel(QStringLiteral("Enter Password :"), this);
    label1_->setObjectName(QStringLiteral("Label1"));
    label1_->setBuddy(txtpass_);
    label2_ = new QLabel(QStringLiteral("Confirm Password :"), this);
    label2_->setObjectName(QStringLiteral("Label2"));
    label2_->setBuddy(txtpass1_);
    const rt::ButtonRow buttons = rt::okCancelRow(this);
    okButton_ = buttons.ok;
    cancelButton_ = buttons.cancel;

    auto *fields = new QFormLayout;
    fields->addRow(label1_, txtpass_);
    fields->addRow(label2_, txtpass1_);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons.layout);
    setMinimumWidth(320);

    connect(okButton_, &QPushButton::clicked, this, &frmPassword::OKButton_Click);
    connect(cancelButton_, &QPushButton::clicked, this, &frmPassword::CancelButton_Click);
}

void frmPassword::chPass()
{
    changeMode_ = true;
    setWindowTitle(QStringLiteral("Change Password"));
    label1_->setText(QStringLiteral("Enter old Password :"));
    label2_->setText(QStringLiteral("Enter new Password :"));
}

void frmPassword::OKButton_Click()
{
    if (changeMode_)
        change();
    else
        create();
}

void frmPassword::create()
{
    if (txtpass_->text().isEmpty()) {
        rt::MsgBox(QStringLiteral("You should type a password!"), rt::vbCritical);
    } else if (!security::samePassword(txtpass_->text(), txtpass1_->text())) {
        rt::MsgBox(QStringLiteral("Password is not confirmed correctly!"), rt::vbCritical);
    } else {
        backup::beforeChange();
        store::writePassword(txtpass_->text());
        store::afterChange();
        close();
    }
}

void frmPassword::change()
{
    if (!security::samePassword(txtpass_->text(), storedPassword_)) {
        rt::MsgBox(QStringLiteral("Password is not correct!"), rt::vbCritical,
                   QStringLiteral("Wrong Password"));
    } else if (txtpass1_->text().isEmpty()) {
        // Only Pass.ini, which nothing reads: the old password stays in force.
        store::writePassIniCount();
        store::afterChange();
        close();
    } else {
        backup::beforeChange();
        store::writePassword(txtpass1_->text());
        store::afterChange();
        close();
    }
}

void frmPassword::CancelButton_Click()
{
    close();
}
