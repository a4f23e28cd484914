#include "backup/frmRestore.h"

#include "backup/Summary.h"
#include "runtime/MsgBox.h"
#include "store/Files.h"

#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString takenText(const QDateTime &taken)
{
    return QLocale().toString(taken, QStringLiteral("ddd d MMM yyyy, HH:mm:ss"));
}

// What the confirmation adds when the copy holds another password than the one in force.
QString passwordNote(const backup::Contents &copy, const backup::Contents &current)
{
    if (!backup::changesPassword(copy, current))
        return {};
    if (!copy.password)
        return QStringLiteral("\n\nThe copy holds no password: the calendar will no longer "
                              "ask for one.");
    return QStringLiteral("\n\nThe copy holds %1. From its next start, the calendar asks for "
                          "that password; make sure you still know it.")
        .arg(current.password ? QStringLiteral("a different password from the one in force now")
                              : QStringLiteral("a password"));
}

} // namespace

frmRestore::frmRestore(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRestore"));
    setWindowTitle(QStringLiteral("Restore from Backup"));

    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setWordWrap(true);
    lstCopies_ = new QTreeWidget(this);
    lstCopies_->setObjectName(QStringLiteral("lstCopies"));
    lstCopies_->setRootIsDecorated(false);
    lstCopies_->setHeaderLabels({QStringLiteral("Taken"), QStringLiteral("What it holds")});
    lstCopies_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    lstCopies_->setMinimumSize(620, 260);
    cmdRestore = new QPushButton(QStringLiteral("Restore..."), this);
    cmdRestore->setObjectName(QStringLiteral("cmdRestore"));
    CancelButton = new QPushButton(QStringLiteral("Close"), this);
    CancelButton->setObjectName(QStringLiteral("CancelButton"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdRestore);
    buttons->addWidget(CancelButton);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Label1);
    layout->addWidget(lstCopies_);
    layout->addLayout(buttons);

    connect(cmdRestore, &QPushButton::clicked, this, &frmRestore::cmdRestore_Click);
    connect(CancelButton, &QPushButton::clicked, this, &frmRestore::CancelButton_Click);
    connect(lstCopies_, &QTreeWidget::itemActivated, this, &frmRestore::cmdRestore_Click);
    Form_Load();
}

void frmRestore::Form_Load()
{
    lstCopies_->clear();
    copies_ = backup::copies();
    const QByteArray currentBytes = bytesOf(files::dataIni());
    const backup::Contents current = backup::readContents(files::dataIni());
    for (const backup::Copy &copy : copies_) {
        const QString holds = backup::summary(backup::readContents(copy.path), current,
                                              bytesOf(copy.path) == currentBytes);
        new QTreeWidgetItem(lstCopies_, {takenText(copy.taken), holds});
    }
    Label1->setText(copies_.isEmpty()
                        ? QStringLiteral("There are no backups yet. The calendar keeps a copy of "
                                         "Data.ini before every change and at every start.")
                        : QStringLiteral("Copies of Data.ini, newest first, and what each holds "
                                         "compared with the calendar now:"));
    if (!copies_.isEmpty())
        lstCopies_->setCurrentItem(lstCopies_->topLevelItem(0));
    cmdRestore->setEnabled(!copies_.isEmpty());
}

void frmRestore::cmdRestore_Click()
{
    const int row = lstCopies_->indexOfTopLevelItem(lstCopies_->currentItem());
    if (row < 0)
        return;
    const backup::Copy &copy = copies_[row];
    const QString question =
        QStringLiteral("Replace the calendar's events, categories and colours with the backup "
                       "of %1?\n\nThe calendar as it is now is kept as a backup first, so you "
                       "can go back to it the same way.")
            .arg(takenText(copy.taken)) +
        passwordNote(backup::readContents(copy.path), backup::readContents(files::dataIni()));
    if (rt::MsgBox(question, rt::vbYesNo | rt::vbQuestion, QStringLiteral("Restore Backup")) !=
        rt::vbYes)
        return;
    QString error;
    if (!backup::restore(copy.path, &error)) {
        rt::MsgBox(QStringLiteral("The backup could not be restored: %1. Data.ini is unchanged.")
                       .arg(error),
                   rt::vbCritical);
        return;
    }
    accept();
}

void frmRestore::CancelButton_Click()
{
    reject();
}
