#include "runtime/MsgBox.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QInputDialog>
#include <QMessageBox>

namespace rt
{
namespace
{

MsgBoxRecorder *&activeRecorder()
{
    static MsgBoxRecorder *recorder = nullptr;
    return recorder;
}

QString shownTitle(const QString &title)
{
    return title.isEmpty() ? appTitle() : title;
}

void record(MsgBoxRecorder &recorder, const MsgBoxCall &call)
{
    recorder.calls.append(call);
    if (recorder.onShow)
        recorder.onShow(call);
}

QMessageBox::Icon iconOf(int style)
{
    switch (style & 0x70) {
    case vbCritical:
        return QMessageBox::Critical;
    case vbQuestion:
        return QMessageBox::Question;
    case vbExclamation:
        return QMessageBox::Warning;
    case vbInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButtons buttonsOf(int style)
{
    switch (style & 0x0F) {
    case vbOKCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case vbYesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

// Window managers cut a title wider than its window; a small box is widened to show its
// title whole, with room for the title bar's icon and buttons.
int widthForTitle(const QString &title)
{
    QFont font = QApplication::font();
    font.setBold(true);
    return QFontMetrics(font).horizontalAdvance(title) + 140;
}

int resultOf(int pressed)
{
    switch (pressed) {
    case QMessageBox::Cancel:
        return vbCancel;
    case QMessageBox::Yes:
        return vbYes;
    case QMessageBox::No:
        return vbNo;
    default:
        return vbOK;
    }
}

} // namespace

QString appTitle()
{
    return QStringLiteral("ORVA Calendar");
}

int MsgBox(const QString &prompt, int style, const QString &title)
{
    if (MsgBoxRecorder *recorder = activeRecorder()) {
        record(*recorder, {prompt, style, shownTitle(title), false});
        return recorder->nextAnswers.isEmpty() ? vbOK : recorder->nextAnswers.takeFirst();
    }
    QMessageBox box(iconOf(style), shownTitle(title), prompt, buttonsOf(style),
                    QApplication::activeWindow());
    // A message box keeps to the size its layout asks for, so the room goes into the layout.
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout()))
        grid->addItem(new QSpacerItem(widthForTitle(box.windowTitle()), 0), grid->rowCount(), 0, 1,
                      grid->columnCount());
    return resultOf(box.exec());
}

QString InputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    if (MsgBoxRecorder *recorder = activeRecorder()) {
        record(*recorder, {prompt, vbOKOnly, shownTitle(title), true});
        return recorder->nextInputs.isEmpty() ? QString() : recorder->nextInputs.takeFirst();
    }
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(shownTitle(title));
    dialog.setLabelText(prompt);
    dialog.setTextValue(defaultText);
    dialog.setMinimumWidth(widthForTitle(dialog.windowTitle()));
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

MsgBoxRecorder::MsgBoxRecorder()
{
    activeRecorder() = this;
}

MsgBoxRecorder::~MsgBoxRecorder()
{
    activeRecorder() = nullptr;
}

} // namespace rt
