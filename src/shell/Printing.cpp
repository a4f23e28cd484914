#include "shell/Printing.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPicture>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>
#include <QWidget>

namespace printing
{
namespace
{

std::function<bool(QPrinter &)> &chooseHook()
{
    static std::function<bool(QPrinter &)> hook;
    return hook;
}

} // namespace

bool choosePrinter(QPrinter &printer, QWidget *parent)
{
    if (chooseHook())
        return chooseHook()(printer);
    QPrintDialog dialog(&printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

void setChoosePrinterForTest(std::function<bool(QPrinter &)> choose)
{
    chooseHook() = std::move(choose);
}

void printText(const QString &text, QPrinter &printer)
{
    QTextDocument document;
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSize(11);
    document.setDefaultFont(font);
    document.setPlainText(text);
    document.print(&printer);
}

void printWidget(QWidget *widget, QPrinter &printer)
{
    // Rendered straight onto a printer, a widget becomes one bitmap at the printer's
    // resolution: hundreds of megabytes at 1200 dpi. Recorded into a picture first, it
    // stays shapes and text.
    QPicture picture;
    {
        QPainter recorder(&picture);
        widget->render(&recorder);
    }
    QPainter painter(&printer);
    const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
    const QSizeF size = widget->size();
    const qreal fit = std::min(page.width() / size.width(), page.height() / size.height());
    // A picture plays back scaled from its own resolution to the printer's; the fit is
    // what is left to do.
    const qreal playback = qreal(printer.logicalDpiX()) / picture.logicalDpiX();
    painter.translate((page.width() - size.width() * fit) / 2,
                      (page.height() - size.height() * fit) / 2);
    painter.scale(fit / playback, fit / playback);
    painter.drawPicture(0, 0, picture);
}

} // namespace printing
