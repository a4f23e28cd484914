#include "dialogs/frmalarm.h"

#include "runtime/ButtonRow.h"
#include "store/Files.h"

#include <QAudioDevice>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMediaDevices>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSoundEffect>
#include <QUrl>
#include <QVBoxLayout>

namespace
{

// Windows faces, with the metric-compatible faces Linux has in their place.
QFont face(const QString &windowsFamily, const QString &linuxFamily, double points)
{
    QFont font;
    font.setFamilies({windowsFamily, linuxFamily});
    font.setPointSizeF(points);
    return font;
}

} // namespace

frmalarm::frmalarm(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmalarm"));
    setAutoFillBackground(true);

    label1_ = new QLabel(QStringLiteral("Memo:"), this);
    label1_->setObjectName(QStringLiteral("Label1"));
    txtMemo_ = new QPlainTextEdit(this);
    txtMemo_->setObjectName(QStringLiteral("txtMemo"));
    txtMemo_->setFont(
        face(QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif"), 12));
    txtMemo_->setReadOnly(true);
    txtMemo_->setAccessibleName(QStringLiteral("Memo"));
    // Focus starts on the memo, so a screen reader reads it when the window appears.
    txtMemo_->setFocus();
    txtMemo_->setFixedHeight(txtMemo_->fontMetrics().lineSpacing() * 4 + 12);
    txttitle_ = new QLineEdit(this);
    txttitle_->setObjectName(QStringLiteral("txttitle"));
    txttitle_->setFont(
        face(QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"), 8.25));
    txttitle_->setReadOnly(true);
    txttitle_->setAccessibleName(QStringLiteral("When"));
    const rt::ButtonRow buttons = rt::okCancelRow(this);
    okButton_ = buttons.ok;
    cancelButton_ = buttons.cancel;

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label1_);
    layout->addWidget(txtMemo_);
    layout->addWidget(txttitle_);
    layout->addLayout(buttons.layout);
    setMinimumWidth(340);

    connect(okButton_, &QPushButton::clicked, this, &frmalarm::OKButton_Click);
    connect(cancelButton_, &QPushButton::clicked, this, &frmalarm::CancelButton_Click);
}

frmalarm::~frmalarm() = default;

void frmalarm::setBackColor(rt::WinColor colour)
{
    QPalette p = palette();
    p.setColor(QPalette::Window, rt::toQColor(colour));
    // The label stands on the category's colour; the text boxes keep their own background.
    p.setColor(QPalette::WindowText, rt::toQColor(rt::textColorOn(colour)));
    setPalette(p);
}

rt::WinColor frmalarm::backColor() const
{
    return rt::fromQColor(palette().color(QPalette::Window));
}

void frmalarm::chime()
{
    ++chimes_;
    const QString path = files::alarmWav();
    if (!QFileInfo(path).isFile() || QMediaDevices::defaultAudioOutput().isNull())
        return;
    if (!sound_) {
        sound_ = new QSoundEffect(this);
        sound_->setObjectName(QStringLiteral("alarmSound"));
    }
    // Set anew each time: the program folder is looked up at every use.
    sound_->setSource(QUrl::fromLocalFile(path));
    sound_->play();
}

void frmalarm::OKButton_Click()
{
    accept();
}

void frmalarm::CancelButton_Click()
{
    reject();
}
