#include "runtime/ButtonRow.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace rt
{

ButtonRow okCancelRow(QWidget *parent)
{
    ButtonRow row;
    row.ok = new QPushButton(QStringLiteral("OK"), parent);
    row.ok->setObjectName(QStringLiteral("OKButton"));
    row.ok->setDefault(true);
    row.cancel = new QPushButton(QStringLiteral("Cancel"), parent);
    row.cancel->setObjectName(QStringLiteral("CancelButton"));
    row.cancel->setAutoDefault(false);
    row.layout = new QHBoxLayout;
    row.layout->addStretch(1);
    row.layout->addWidget(row.ok);
    row.layout->addWidget(row.cancel);
    return row;
}

} // namespace rt
