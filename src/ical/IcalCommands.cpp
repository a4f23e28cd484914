#include "ical/IcalCommands.h"

#include "ical/IcalExport.h"
#include "ical/frmImport.h"
#include "mainwindow/Form1.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "yearcalendar/UserControl1.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>

namespace
{

const QString kExportTitle = QStringLiteral("Export to iCalendar");
const QString kImportTitle = QStringLiteral("Import from iCalendar");

QString events(int n)
{
    return n == 1 ? QStringLiteral("1 event") : QStringLiteral("%1 events").arg(n);
}

} // namespace

IcalCommands::IcalCommands(Form1 *form) : QObject(form), form_(form)
{
    connect(form, &Form1::exportIcalRequested, this, &IcalCommands::exportCalendar);
    connect(form, &Form1::importIcalRequested, this, &IcalCommands::importCalendar);
}

void IcalCommands::exportCalendar()
{
    const int year = form_->Cal()->displayedYear();
    QString path = QFileDialog::getSaveFileName(
        form_, kExportTitle, QDir::home().filePath(QStringLiteral("calendar-%1.ics").arg(year)),
        QStringLiteral("iCalendar files (*.ics)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".ics");
    const ical::ExportResult result = ical::exportStore(year);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(result.text) != result.text.size() ||
        !file.commit()) {
        rt::MsgBox(QStringLiteral("%1 could not be written.").arg(QDir::toNativeSeparators(path)),
                   rt::vbCritical, kExportTitle);
        return;
    }
    QString report = QStringLiteral("%1 written to %2.")
                         .arg(events(result.written), QDir::toNativeSeparators(path));
    if (result.skipped > 0)
        report += QStringLiteral("\n%1 skipped: their date, time or rule could not be read.")
                      .arg(events(result.skipped));
    rt::MsgBox(report, rt::vbInformation, kExportTitle);
}

void IcalCommands::importCalendar()
{
    const QString path = QFileDialog::getOpenFileName(
        form_, QStringLiteral("Open an iCalendar File"), QDir::homePath(),
        QStringLiteral("iCalendar files (*.ics *.ical *.ifb);;All files (*)"));
    if (path.isEmpty())
        return;
    const ical::ReadResult read = ical::readCalendarFile(path);
    if (!read.calendar) {
        rt::MsgBox(read.error + QStringLiteral("\nNothing was imported."), rt::vbCritical,
                   kImportTitle);
        return;
    }
    frmImport window(*read.calendar, form_->model(), QFileInfo(path).fileName(),
                     rt::Year(rt::Clock::Today()), form_);
    if (window.exec() == QDialog::Accepted)
        rt::MsgBox(QStringLiteral("%1 imported.").arg(events(window.written())), rt::vbInformation,
                   kImportTitle);
    // Back in the main window, which reloads the store as after any dialog.
    form_->activateWindow();
}
