#include "reminders/frmMissed.h"

#include "runtime/DateText.h"

#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace
{

QString describe(const reminders::MissedReminder &missed)
{
    const QString shown = missed.action ? QFileInfo(missed.text).fileName() : missed.text;
    QString when = missed.when;
    // A recurring event's when-line does not tell which day it was missed.
    if (missed.recurring)
        when += QStringLiteral("  (%1)").arg(rt::CStr(rt::DatePart(missed.due)));
    // The when-line keeps its double spaces.
    return QStringLiteral("<b>%1</b><br><span style=\"white-space:pre\">%2  &middot;  %3</span>")
        .arg(shown.toHtmlEscaped(), missed.category.toHtmlEscaped(), when.toHtmlEscaped());
}

} // namespace

frmMissed::frmMissed(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmMissed"));
    setWindowTitle(QStringLiteral("Missed reminders"));

    auto *heading =
        new QLabel(QStringLiteral("These reminders came due while the calendar could not "
                                  "show them:"),
                   this);
    heading->setWordWrap(true);
    rows_ = new QWidget;
    rowsLayout_ = new QVBoxLayout(rows_);
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(rows_);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    lblMore_ = new QLabel(this);
    lblMore_->setObjectName(QStringLiteral("lblMore"));
    auto *ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &frmMissed::OKButton_Click);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(scroll, 1);
    layout->addWidget(lblMore_);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);
    resize(460, 360);
}

void frmMissed::add(const QList<reminders::MissedReminder> &found)
{
    listed_ = isVisible() ? reminders::mergeMissed(listed_, found) : found;
    fill();
    show();
    raise();
    activateWindow();
}

void frmMissed::fill()
{
    while (QLayoutItem *item = rowsLayout_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const int shown = std::min(int(listed_.size()), kShown);
    for (int k = 0; k < shown; ++k) {
        const reminders::MissedReminder &missed = listed_[k];
        auto *row = new QWidget(rows_);
        auto *line = new QHBoxLayout(row);
        line->setContentsMargins(0, 2, 0, 2);
        auto *swatch = new QFrame(row);
        swatch->setFixedSize(16, 16);
        swatch->setFrameShape(QFrame::Box);
        swatch->setAutoFillBackground(true);
        swatch->setPalette(QPalette(rt::toQColor(missed.colour)));
        auto *text = new QLabel(describe(missed), row);
        text->setObjectName(QStringLiteral("lblMissed_%1").arg(k));
        text->setTextFormat(Qt::RichText);
        text->setToolTip(missed.action ? missed.text : QString());
        line->addWidget(swatch, 0, Qt::AlignTop);
        line->addWidget(text, 1);
        if (missed.action) {
            auto *open = new QPushButton(QStringLiteral("Open now"), row);
            open->setObjectName(QStringLiteral("cmdOpen_%1").arg(k));
            connect(open, &QPushButton::clicked, this,
                    [this, path = missed.text] { emit openRequested(path); });
            line->addWidget(open, 0, Qt::AlignTop);
        }
        rowsLayout_->addWidget(row);
    }
    rowsLayout_->addStretch();
    const qsizetype rest = listed_.size() - shown;
    lblMore_->setText(rest > 0 ? QStringLiteral("... and %1 more.").arg(rest) : QString());
    lblMore_->setVisible(rest > 0);
}

void frmMissed::OKButton_Click()
{
    accept();
}
