#include "shell/HelpWindow.h"

#include "runtime/MsgBox.h"
#include "shell/AppIcon.h"
#include "shell/Links.h"
#include "store/Files.h"

#include <QApplication>
#include <QFileInfo>
#include <QShortcut>
#include <QTextBrowser>
#include <QToolBar>

HelpWindow::HelpWindow(QWidget *parent) : QMainWindow(parent, Qt::Window)
{
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("ORVA Calendar Help"));
    setWindowIcon(appIcon());

    browser_ = new QTextBrowser(this);
    browser_->setObjectName(QStringLiteral("browser"));
    browser_->setOpenLinks(false);
    connect(browser_, &QTextBrowser::anchorClicked, this, &HelpWindow::anchorClicked);
    browser_->setAccessibleName(QStringLiteral("Help page"));
    setCentralWidget(browser_);
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
            &QWidget::close);

    QToolBar *bar = addToolBar(QStringLiteral("Help"));
    bar->setObjectName(QStringLiteral("helpBar"));
    bar->setMovable(false);
    bar->addAction(QStringLiteral("Contents"), this, &HelpWindow::showContents);
    bar->addAction(QStringLiteral("Index"), this, &HelpWindow::showIndex);
    bar->addSeparator();
    QAction *back = bar->addAction(QStringLiteral("Back"), browser_, &QTextBrowser::backward);
    QAction *forward = bar->addAction(QStringLiteral("Forward"), browser_, &QTextBrowser::forward);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);

    resize(720, 600);
}

bool HelpWindow::showContents()
{
    return showAt(QStringLiteral("contents"));
}

bool HelpWindow::showIndex()
{
    return showAt(QStringLiteral("index"));
}

bool HelpWindow::showAt(const QString &anchor)
{
    const QString path = files::helpHlp();
    if (!QFileInfo(path).isFile()) {
        rt::MsgBox(QStringLiteral("Cannot find the help file %1.").arg(path), rt::vbExclamation);
        return false;
    }
    if (!isVisible()) {
        // Over the middle of the calendar rather than at the screen's corner.
        if (const QWidget *over = QApplication::activeWindow())
            move(over->frameGeometry().center() - rect().center());
    }
    show();
    raise();
    activateWindow();
    QUrl url = QUrl::fromLocalFile(path);
    url.setFragment(anchor);
    // The guide's name does not say HTML, so the type is given.
    browser_->setSource(url, QTextDocument::HtmlResource);
    // Also when the page is already shown, scrolled elsewhere.
    browser_->scrollToAnchor(anchor);
    return true;
}

void HelpWindow::anchorClicked(const QUrl &url)
{
    if (url.scheme() == QLatin1String("shop"))
        links::shopLink(url.path());
    else if (url.scheme() == QLatin1String("homepage"))
        links::openHomepage();
    else if (url.isRelative() || url.isLocalFile())
        browser_->setSource(browser_->source().resolved(url), QTextDocument::HtmlResource);
}
