#include "shell/frmAbout.h"

#include "dialogs/ZOrder.h"
#include "runtime/MsgBox.h"
#include "shell/AppIcon.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QProcess>
#include <QPushButton>

#ifdef Q_OS_WIN
#include <QSettings>
#endif

namespace
{

const QString kLocalMachine = QStringLiteral("HKEY_LOCAL_MACHINE");

} // namespace

frmAbout::frmAbout(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ORVA Calendar"));
    setWindowIcon(appIcon());

    picIcon = new QLabel(this);
    picIcon->setObjectName(QStringLiteral("picIcon"));
    picIcon->setPixmap(appIcon().pixmap(64, 64));
    picIcon->setAlignment(Qt::AlignTop);

    lblTitle = new QLabel(QStringLiteral("ORVA Calendar"), this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    QFont title = lblTitle->font();
    title.setPointSizeF(title.pointSizeF() * 1.6);
    title.setBold(true);
    lblTitle->setFont(title);

    lblVersion = new QLabel(QStringLiteral("Version 1.07"), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));

    lblDescription = new QLabel(
        QStringLiteral("A year calendar and reminder. It shows the whole year at a glance, with "
                       "each day coloured by the category of its events, and reminds you with a "
                       "window and a chime when an event comes due, or opens a file or a "
                       "program at its time. Events happen once or recur every day, week, "
                       "month or year.\n\nIt sits in the notification area while it runs, and "
                       "keeps everything in plain files in its own folder."),
        this);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->setWordWrap(true);
    lblDescription->setFixedWidth(360);

    Line1 = new QFrame(this);
    Line1->setObjectName(QStringLiteral("Line1"));
    Line1->setFrameShape(QFrame::HLine);
    Line1->setFrameShadow(QFrame::Sunken);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);

    auto *grid = new QGridLayout(this);
    grid->setHorizontalSpacing(16);
    grid->addWidget(picIcon, 0, 0, 3, 1);
    grid->addWidget(lblTitle, 0, 1);
    grid->addWidget(lblVersion, 1, 1);
    grid->addWidget(lblDescription, 2, 1);
    grid->addWidget(Line1, 3, 0, 1, 2);
    grid->addWidget(cmdOK, 4, 1, Qt::AlignRight);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

void frmAbout::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    SetZOrder(this);
}

void frmAbout::cmdOK_Click()
{
    accept();
}

void frmAbout::StartSysInfo()
{
    QString program;
    if (!GetKeyValue(kLocalMachine, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                     QStringLiteral("PATH"), program)) {
        QString folder;
        if (GetKeyValue(kLocalMachine, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                        QStringLiteral("MSINFO"), folder) &&
            QFileInfo::exists(folder + QStringLiteral("\\MSINFO32.EXE"))) {
            program = folder + QStringLiteral("\\MSINFO32.EXE");
        } else {
            rt::MsgBox(QStringLiteral("System Information Is Unavailable At This Time"),
                       rt::vbOKOnly);
            return;
        }
    }
    QProcess::startDetached(program, {});
}

bool frmAbout::GetKeyValue(const QString &rootKey, const QString &keyName, const QString &valueName,
                           QString &value)
{
#ifdef Q_OS_WIN
    const QSettings key(rootKey + QLatin1Char('\\') + keyName, QSettings::NativeFormat);
    const QVariant read = key.value(valueName);
    if (!read.isValid())
        return false;
    // A double word comes back as a number, and is given as its decimal text.
    value = read.toString();
    return true;
#else
    Q_UNUSED(rootKey)
    Q_UNUSED(keyName)
    Q_UNUSED(valueName)
    Q_UNUSED(value)
    return false;
#endif
}
