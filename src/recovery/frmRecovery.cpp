#include "recovery/frmRecovery.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

frmRecovery::frmRecovery(const QString &explanation, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRecovery"));
    setWindowTitle(QStringLiteral("The Calendar Closed Unexpectedly"));

    auto *icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    lblWhat = new QLabel(explanation, this);
    lblWhat->setObjectName(QStringLiteral("lblWhat"));
    lblWhat->setWordWrap(true);
    QFont bold = lblWhat->font();
    bold.setBold(true);
    lblWhat->setFont(bold);
    lblHow = new QLabel(
        QStringLiteral("It will close again each time this event comes due, until the event is "
                       "changed. You can edit the event, remove it, go back to a backup of your "
                       "calendar from before, or keep it as it is."),
        this);
    lblHow->setObjectName(QStringLiteral("lblHow"));
    lblHow->setWordWrap(true);

    auto addButton = [this](const char *name, const QString &caption, void (frmRecovery::*slot)()) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, slot);
        return button;
    };
    QPushButton *edit =
        addButton("cmdEdit", QStringLiteral("&Edit Event..."), &frmRecovery::cmdEdit_Click);
    QPushButton *remove =
        addButton("cmdRemove", QStringLiteral("&Remove Event"), &frmRecovery::cmdRemove_Click);
    QPushButton *restore = addButton("cmdRestore", QStringLiteral("Restore a &Backup..."),
                                     &frmRecovery::cmdRestore_Click);
    QPushButton *keep =
        addButton("cmdKeep", QStringLiteral("&Keep It"), &frmRecovery::cmdKeep_Click);
    edit->setDefault(true);

    auto *texts = new QVBoxLayout;
    texts->addWidget(lblWhat);
    texts->addWidget(lblHow);
    auto *top = new QHBoxLayout;
    top->addWidget(icon);
    top->addLayout(texts, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton *button : {edit, remove, restore, keep})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    setMinimumWidth(520);
}
