#include "shell/frmPrint.h"

#include "dialogs/DialogSupport.h"
#include "dialogs/ZOrder.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"
#include "shell/EventsText.h"
#include "shell/Printing.h"
#include "store/Files.h"

#include <QDateEdit>
#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>

frmPrint::frmPrint(rt::Date selectedDate, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPrint"));
    setWindowTitle(QStringLiteral("Print..."));

    Option1 = new QRadioButton(QStringLiteral("Date :"), this);
    Option1->setObjectName(QStringLiteral("Option1"));
    Option2 = new QRadioButton(QStringLiteral("From :"), this);
    Option2->setObjectName(QStringLiteral("Option2"));
    DTPicker1 = dialogs::newDatePicker(this, "DTPicker1");
    DTPicker2 = dialogs::newDatePicker(this, "DTPicker2");
    DTPicker3 = dialogs::newDatePicker(this, "DTPicker3");
    for (QDateEdit *picker : {DTPicker1, DTPicker2, DTPicker3})
        dialogs::setPickerDate(picker, selectedDate);
    lblTo = new QLabel(QStringLiteral("To :"), this);
    lblTo->setBuddy(DTPicker3);
    DTPicker1->setAccessibleName(QStringLiteral("Date"));
    DTPicker2->setAccessibleName(QStringLiteral("From"));
    OKButton = new QPushButton(QStringLiteral("OK"), this);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setToolTip(QStringLiteral("Save the events to Last_Print.txt and print them."));
    OKButton->setDefault(true);
    CancelButton = new QPushButton(QStringLiteral("Cancel"), this);
    CancelButton->setObjectName(QStringLiteral("CancelButton"));

    connect(Option1, &QRadioButton::clicked, this, &frmPrint::Option1_Click);
    connect(Option2, &QRadioButton::clicked, this, &frmPrint::Option2_Click);
    // A monthly day that is no number ends the program here, as in the day popup.
    connect(OKButton, &QPushButton::clicked, this, rt::guard([this] { OKButton_Click(); }));
    connect(CancelButton, &QPushButton::clicked, this, &frmPrint::CancelButton_Click);

    auto *grid = new QGridLayout(this);
    grid->addWidget(Option1, 0, 0);
    grid->addWidget(DTPicker1, 0, 1);
    grid->addWidget(Option2, 1, 0);
    grid->addWidget(DTPicker2, 1, 1);
    grid->addWidget(lblTo, 2, 0, Qt::AlignRight);
    grid->addWidget(DTPicker3, 2, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(OKButton);
    buttons->addWidget(CancelButton);
    grid->addLayout(buttons, 3, 0, 1, 2);

    Option1->setChecked(true);
    Option1_Click();
}

void frmPrint::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

void frmPrint::Option1_Click()
{
    enableRange(false);
}

void frmPrint::Option2_Click()
{
    enableRange(true);
}

void frmPrint::enableRange(bool range)
{
    DTPicker1->setEnabled(!range);
    DTPicker2->setEnabled(range);
    lblTo->setEnabled(range);
    DTPicker3->setEnabled(range);
}

void frmPrint::OKButton_Click()
{
    const bool single = Option1->isChecked();
    const rt::Date from = dialogs::pickerDate(single ? DTPicker1 : DTPicker2);
    const rt::Date to = dialogs::pickerDate(single ? DTPicker1 : DTPicker3);
    if (from > to) {
        rt::MsgBox(QStringLiteral("The range must not end before it starts!"), rt::vbCritical);
        return;
    }
    const eventstext::Text events = eventstext::eventsText(store::loadModel(), from, to);
    QFile file(files::lastPrintTxt());
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        file.write(events.text.toUtf8());
    file.close();
    accept();
    if (events.eventCount == 0) {
        rt::MsgBox(QStringLiteral("There are no events to print on these dates."),
                   rt::vbInformation);
        return;
    }
    QPrinter printer;
    printer.setDocName(QStringLiteral("Last_Print.txt"));
    if (printing::choosePrinter(printer, parentWidget()))
        printing::printText(events.text, printer);
}

void frmPrint::CancelButton_Click()
{
    reject();
}
