#include "shell/ShellCommands.h"

#include "backup/frmRestore.h"
#include "dialogs/EventDialogs.h"
#include "mainwindow/Form1.h"
#include "shell/HelpWindow.h"
#include "shell/Links.h"
#include "shell/Printing.h"
#include "shell/frmAbout.h"
#include "shell/frmPrint.h"

#include <QPrinter>

ShellCommands::ShellCommands(Form1 *form) : QObject(form), form_(form)
{
    connect(form, &Form1::printRequested, this, &ShellCommands::print);
    connect(form, &Form1::printCalendarRequested, this, &ShellCommands::printCalendar);
    connect(form, &Form1::contentsRequested, this, &ShellCommands::contents);
    connect(form, &Form1::indexRequested, this, &ShellCommands::index);
    connect(form, &Form1::aboutRequested, this, &ShellCommands::about);
    connect(form, &Form1::homepageRequested, this, &links::openHomepage);
    connect(form, &Form1::restoreRequested, this, &ShellCommands::restore);
}

ShellCommands::~ShellCommands()
{
    delete help_;
}

void ShellCommands::print()
{
    frmPrint window(startingDate(*form_), form_);
    window.exec();
}

void ShellCommands::printCalendar()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(form_->windowTitle());
    printer.setPageOrientation(QPageLayout::Landscape);
    if (!printing::choosePrinter(printer, form_))
        return;
    // Landscape whatever was picked in the dialog: the window is wider than high.
    printer.setPageOrientation(QPageLayout::Landscape);
    printing::printWidget(form_->centralWidget(), printer);
}

void ShellCommands::restore()
{
    frmRestore window(form_);
    if (window.exec() == QDialog::Accepted)
        form_->Form_Activate();
}

HelpWindow *ShellCommands::helpWindow()
{
    // A window of its own, not the main window's child, so it stays when that one hides
    // in the tray.
    if (!help_) {
        help_ = new HelpWindow;
        help_->setAttribute(Qt::WA_DeleteOnClose);
    }
    return help_;
}

void ShellCommands::contents()
{
    helpWindow()->showContents();
}

void ShellCommands::index()
{
    helpWindow()->showIndex();
}

void ShellCommands::about()
{
    frmAbout box(form_);
    box.exec();
}
