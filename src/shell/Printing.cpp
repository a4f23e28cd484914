#include "shell/Printing.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPicture>
#include <QPrintDialog>
#include <QPrinter>
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
    QPainter painter(&printer);
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSize(11);
    painter.setFont(font);
    const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
    const qreal lineHeight = QFontMetricsF(font, &printer).lineSpacing();
    const qreal bottom = page.height() - 2 * lineHeight; // room for the page number
    const int flags = Qt::TextWordWrap | Qt::TextWrapAnywhere;
    int number = 1;
    qreal y = 0;
    const auto footer = [&] {
        painter.drawText(QRectF(0, bottom, page.width(), 2 * lineHeight),
                         Qt::AlignHCenter | Qt::AlignBottom, QString::number(number));
    };
    const auto nextPage = [&] {
        footer();
        printer.newPage();
        ++number;
        y = 0;
    };
    const auto height = [&](const QString &lines) {
        return painter.boundingRect(QRectF(0, 0, page.width(), bottom), flags, lines).height();
    };
    // A block of lines, up to a blank line, starts a new page rather than break, unless it
    // is longer than a page.
    for (QString block : text.split(QStringLiteral("\n\n"))) {
        if (block.endsWith(QLatin1Char('\n')))
            block.chop(1);
        if (y > 0 && y + height(block) > bottom)
            nextPage();
        for (const QString &line : block.split(QLatin1Char('\n'))) {
            const qreal h = line.isEmpty() ? lineHeight : height(line);
            if (y > 0 && y + h > bottom)
                nextPage();
            painter.drawText(QRectF(0, y, page.width(), h), flags, line);
            y += h;
        }
        y += lineHeight;
    }
    footer();
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
