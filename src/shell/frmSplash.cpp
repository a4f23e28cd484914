#include "shell/frmSplash.h"

#include "logo3d/LogoFrames.h"
#include "shell/AppIcon.h"
#include "shell/frmtask.h"
#include "store/DataStore.h"
#include "store/Files.h"

#include <QFontDatabase>
#include <QLabel>
#include <QScreen>
#include <QTimer>

namespace
{

// Monotype Corsiva where the machine has it; otherwise another script face, or at least
// an italic serif.
QFont scriptFont()
{
    const QStringList families = QFontDatabase::families();
    for (const char *name : {"Monotype Corsiva", "URW Chancery L", "Z003", "TeX Gyre Chorus"}) {
        if (families.contains(QLatin1String(name)))
            return QFont(QLatin1String(name), 28);
    }
    QFont font(QStringLiteral("serif"), 24);
    font.setStyleHint(QFont::Serif);
    font.setItalic(true);
    return font;
}

} // namespace

frmSplash::frmSplash(QWidget *parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(QStringLiteral("Form2"));
    setWindowIcon(appIcon());

    Image1 = new QLabel(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    const QPixmap picture(QStringLiteral(":/splash.jpg"));
    Image1->setPixmap(picture);
    Image1->resize(picture.size());
    setFixedSize(picture.size());

    Label1 = new QLabel(QStringLiteral("Tessaline"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setFont(scriptFont());
    QPalette ink = Label1->palette();
    ink.setColor(QPalette::WindowText, QColor(0xcc, 0x1f, 0x26));
    Label1->setPalette(ink);
    Label1->adjustSize();
    Label1->move(218, 160);

    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(2000);
    connect(timer1_, &QTimer::timeout, this, &frmSplash::Timer1_Timer);
}

frmSplash::~frmSplash() = default;

void frmSplash::Form_Load()
{
    if (const QScreen *screen = this->screen())
        move(screen->geometry().center() - rect().center());
    show();
    timer1_->start();
}

void frmSplash::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (!prepared_)
        QTimer::singleShot(0, this, &frmSplash::prepare);
    prepared_ = true;
}

void frmSplash::prepare()
{
    if (task_)
        return;
    // Once the picture is up, the splash screen only waits: OpenGL's set-up, a good part of a
    // second, goes on in the renderer meanwhile, and Data.ini is parsed for the main window.
    logo_ = std::make_unique<LogoFrames>();
    logo_->start(files::logoX());
    store::readPasswordCount();
}

void frmSplash::Timer1_Timer()
{
    timer1_->stop();
    close();
    task_ = std::make_unique<frmtask>();
    task_->Form_Load(std::move(logo_));
}
