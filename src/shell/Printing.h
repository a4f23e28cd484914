#pragma once

#include <QString>
#include <functional>

class QPrinter;
class QWidget;

// Printing through Qt's print dialog and printer: what the Windows shell's "print" verb did
// for the program.
namespace printing
{

// Asks the user for a printer and its settings; false when the user cancels.
bool choosePrinter(QPrinter &printer, QWidget *parent);
// What tests put in place of the dialog: it sets up the printer and answers.
void setChoosePrinterForTest(std::function<bool(QPrinter &)> choose); // empty restores it

// Prints plain text, page after page; a block of lines up to a blank line is never split
// across two pages when it fits on one.
void printText(const QString &text, QPrinter &printer);

// Paints a window and its children onto one page, scaled to fit and centred, as shapes
// and text rather than as a picture of the screen.
void printWidget(QWidget *widget, QPrinter &printer);

} // namespace printing
