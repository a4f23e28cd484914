#include "mainwindow/LegendNames.h"

#include <QFontMetrics>
#include <QLabel>

void showLegendName(QLabel *label, const QString &name, const QString &toolTip)
{
    const QString shown = label->fontMetrics().elidedText(name, Qt::ElideRight, label->width());
    label->setText(shown);
    label->setToolTip(shown == name ? toolTip : name + QLatin1Char('\n') + toolTip);
}
