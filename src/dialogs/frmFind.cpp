#include "dialogs/frmFind.h"

#include "dialogs/ZOrder.h"
#include "mainwindow/EventLookup.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

} // namespace

frmFind::frmFind(const store::Model &mainWindowModel, QWidget *parent)
    : QDialog(parent), mainWindowModel_(mainWindowModel)
{
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("Find..."));

    txtkeyword = new QLineEdit(this);
    txtkeyword->setObjectName(QStringLiteral("txtkeyword"));
    txtkeyword->setToolTip(QStringLiteral("Enter Keyword (not case sensitive)"));
    txtkeyword->setAccessibleName(QStringLiteral("Keyword"));
    cmdFind = button(this, "cmdFind", QStringLiteral("Find"));
    cmdFind->setToolTip(QStringLiteral("Search for the keyword."));
    cmdFind->setDefault(true);

    auto *search = new QGridLayout;
    search->addWidget(txtkeyword, 0, 0);
    search->addWidget(cmdFind, 0, 1);
    search->addWidget(new QLabel(QStringLiteral("No Quotations"), this), 1, 0);
    search->setColumnStretch(0, 1);

    auto *results = new QVBoxLayout;
    results->addWidget(new QLabel(QStringLiteral("Results:"), this));
    for (int k = 1; k <= kPageSize; ++k) {
        auto *box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("txt1_%1").arg(k));
        box->setAccessibleName(QStringLiteral("Result %1").arg(k));
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::NoFocus);
        box->setCursor(Qt::PointingHandCursor);
        // A page of fewer matches keeps the window's size.
        QSizePolicy policy = box->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        box->setSizePolicy(policy);
        box->installEventFilter(this);
        box->hide();
        txt1.append(box);
        results->addWidget(box);
    }

    cmdBack = button(this, "cmdBack", QStringLiteral("Back"));
    cmdnext = button(this, "cmdnext", QStringLiteral("Next"));
    cmdClose = button(this, "cmdClose", QStringLiteral("Close"));
    cmdBack->setEnabled(false);
    cmdnext->setEnabled(false);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdBack);
    buttons->addWidget(cmdnext);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(search);
    layout->addLayout(results);
    layout->addLayout(buttons);
    setMinimumWidth(360);

    connect(cmdFind, &QPushButton::clicked, this, &frmFind::cmdFind_Click);
    connect(cmdnext, &QPushButton::clicked, this, &frmFind::cmdnext_Click);
    connect(cmdBack, &QPushButton::clicked, this, &frmFind::cmdBack_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmFind::cmdClose_Click);
}

void frmFind::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

bool frmFind::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        const int k = int(txt1.indexOf(static_cast<QLineEdit *>(watched)));
        if (k >= 0)
            txt1_Click(k + 1);
    }
    return QDialog::eventFilter(watched, event);
}

void frmFind::cmdFind_Click()
{
    results_ = eventlookup::fFind(mainWindowModel_, txtkeyword->text());
    showPage(1);
}

void frmFind::cmdnext_Click()
{
    showPage(first_ + kPageSize);
}

void frmFind::cmdBack_Click()
{
    showPage(first_ - kPageSize);
}

void frmFind::cmdClose_Click()
{
    reject();
}

void frmFind::showPage(int first)
{
    first_ = first;
    for (QLineEdit *box : txt1)
        box->hide();
    if (results_.isEmpty()) {
        txt1[0]->setText(QStringLiteral("No Matches Found"));
        txt1[0]->show();
        cmdnext->setEnabled(false);
        cmdBack->setEnabled(false);
        return;
    }
    cmdnext->setEnabled(results_.size() > first + kPageSize - 1);
    cmdBack->setEnabled(first >= kPageSize);
    for (int k = first; k <= results_.size() && k < first + kPageSize; ++k) {
        const QString &memo = results_[k - 1];
        QLineEdit *box = txt1[k - first];
        box->setText(store::isAction(memo) ? store::actionPath(memo) : memo);
        box->setCursorPosition(0);
        box->show();
    }
}

void frmFind::txt1_Click(int index)
{
    // "No Matches Found" stands for no event.
    if (!results_.isEmpty() && !txt1[index - 1]->isHidden())
        emit modiRequested(txt1[index - 1]->text());
}
