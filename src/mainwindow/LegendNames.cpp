#include "mainwindow/LegendNames.h"

#include <QFontMetrics>
#include <QLabel>

void showLegendName(QLabel *label, const QString &name, const QString &toolTip)
{
    // Before the first layout the label has no width to cut to.
    const QString shown =
        label->width() > 0 ? label->fontMetrics().elidedText(name, Qt::ElideRight, label->width())
                           : name;
    label->setText(shown);
    label->setToolTip(shown == name ? toolTip : name + QLatin1Char('\n') + toolTip);
}
