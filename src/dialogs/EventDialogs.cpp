#include "dialogs/EventDialogs.h"

#include "dialogs/Dialog.h"
#include "dialogs/frmCust.h"
#include "dialogs/frmDaily.h"
#include "dialogs/frmFind.h"
#include "dialogs/frmRemove.h"
#include "mainwindow/EventLookup.h"
#include "mainwindow/Form1.h"
#include "runtime/Clock.h"

// Today is the likelier wish than 30 December 1899.
rt::Date startingDate(const Form1 &form)
{
    return form.selectedDate() != 0 ? form.selectedDate() : rt::Clock::Today();
}

EventDialogs::EventDialogs(Form1 *form) : QObject(form), form_(form)
{
    connect(form, &Form1::addEventRequested, this, &EventDialogs::add);
    connect(form, &Form1::modifyRequested, this,
            [this](bool recurring, int n) { modify(recurring, n, form_); });
    connect(form, &Form1::removeRequested, this, &EventDialogs::remove);
    connect(form, &Form1::findRequested, this, &EventDialogs::find);
    connect(form, &Form1::customizeRequested, this, &EventDialogs::customize);
    connect(form, &Form1::dailyRequested, this, &EventDialogs::daily);
}

void EventDialogs::backToMainWindow()
{
    form_->activateWindow();
}

void EventDialogs::add()
{
    Dialog dialog(form_->model(), startingDate(*form_), form_);
    dialog.exec();
    backToMainWindow();
}

void EventDialogs::modify(bool recurring, int n, QWidget *parent)
{
    Dialog dialog(form_->model(), startingDate(*form_), parent);
    if (recurring)
        dialog.RModi(n);
    else
        dialog.modi(n);
    dialog.exec();
    if (parent == form_)
        backToMainWindow();
}

void EventDialogs::modi(const QString &text, QWidget *parent)
{
    if (const auto found = eventlookup::modi(form_->model(), text))
        modify(found->recurring, found->number, parent);
}

void EventDialogs::remove()
{
    frmRemove dialog(startingDate(*form_), form_);
    dialog.exec();
    backToMainWindow();
}

void EventDialogs::find()
{
    frmFind dialog(form_->model(), form_);
    connect(&dialog, &frmFind::modiRequested, this,
            [this, &dialog](const QString &text) { modi(text, &dialog); });
    dialog.exec();
    backToMainWindow();
}

void EventDialogs::customize(const QString &category)
{
    frmCust dialog(form_);
    if (!category.isEmpty())
        dialog.selectByName(category);
    dialog.exec();
    backToMainWindow();
}

void EventDialogs::daily()
{
    frmDaily dialog(form_);
    connect(&dialog, &frmDaily::RModiRequested, this, [this, &dialog](int n) {
        modify(true, n, &dialog);
        dialog.Form_Load();
    });
    dialog.exec();
    backToMainWindow();
}
