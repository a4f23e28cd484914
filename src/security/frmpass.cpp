#include "security/frmpass.h"

#include "runtime/ButtonRow.h"
#include "runtime/RuntimeError.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmpass::frmpass(QString &enteredPassword, QWidget *parent)
    : QDialog(parent), enteredPassword_(enteredPassword)
{
    setObjectName(QStringLiteral("frmpass"));
    setWindowTitle(QStringLiteral("Password"));

    label1_ = new QLabel(QStringLiteral("Enter Password :"), this);
    label1_->setObjectName(QStringLiteral("Label1"));
    txtpass_ = new QLineEdit(this);
    txtpass_->setObjectName(QStringLiteral("txtpass"));
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans")});
    txtpass_->setFont(font);
    txtpass_->setEchoMode(QLineEdit::Password);
    txtpass_->setToolTip(QStringLiteral("case sensitive."));
    label1_->setBuddy(txtpass_);
    const rt::ButtonRow buttons = rt::okCancelRow(this);
    okButton_ = buttons.ok;
    cancelButton_ = buttons.cancel;

    auto *field = new QHBoxLayout;
    field->addWidget(label1_);
    field->addWidget(txtpass_, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(field);
    layout->addLayout(buttons.layout);
    setMinimumWidth(300);

    connect(okButton_, &QPushButton::clicked, this, &frmpass::OKButton_Click);
    connect(cancelButton_, &QPushButton::clicked, this, &frmpass::CancelButton_Click);
}

void frmpass::OKButton_Click()
{
    enteredPassword_ = txtpass_->text();
    accept();
}

void frmpass::CancelButton_Click()
{
    rt::End();
}

void frmpass::reject()
{
    CancelButton_Click();
}
