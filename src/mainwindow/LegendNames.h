#pragma once

#include <QString>

class QLabel;

// Shows a category's name in its legend label, cut with an ellipsis when the label is too
// narrow; the whole name then heads the label's tool tip.
void showLegendName(QLabel *label, const QString &name, const QString &toolTip);
