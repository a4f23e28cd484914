#include "shell/Links.h"

#include "store/Files.h"

#include <QDesktopServices>
#include <QFile>
#include <QTextStream>
#include <array>

namespace links
{
namespace
{

std::function<void(const QUrl &)> &openHook()
{
    static std::function<void(const QUrl &)> hook;
    return hook;
}

void open(const QUrl &url)
{
    if (openHook())
        openHook()(url);
    else
        QDesktopServices::openUrl(url);
}

// Windows opens an internet shortcut as the file it is. Elsewhere a ".url" file means
// nothing to the desktop, so the address written into it is what is opened.
void openShortcut(const QString &path)
{
#ifdef Q_OS_WIN
    open(QUrl::fromLocalFile(path));
#else
    QString address;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream in(&file);
        QString line;
        while (in.readLineInto(&line)) {
            if (line.startsWith(QLatin1String("url="), Qt::CaseInsensitive))
                address = line.mid(4).trimmed();
        }
    }
    open(QUrl(address));
#endif
}

} // namespace

QString shopAddress(const QString &linkId)
{
    static constexpr std::array<int, 12> ids = {174, 160, 170, 161, 163, 164,
                                                168, 172, 162, 176, 159, 177};
    for (int n = 1; n <= int(ids.size()); ++n) {
        if (linkId == QString::number(n))
            return homepage() + QStringLiteral("?id=") + QString::number(ids[n - 1]);
    }
    return {};
}

void shopLink(const QString &linkId)
{
    const QString path = files::tempUrl();
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        // Written the way Windows writes its own shortcuts, line ends included.
        file.write("[internetshortcut]\r\nurl=" + shopAddress(linkId).toUtf8() + "\r\n");
        file.close();
    }
    openShortcut(path);
}

QString homepage()
{
    return QUrl::fromLocalFile(files::inProgramFolder(files::kHomepageHtml)).toString();
}

void openHomepage()
{
    open(QUrl(homepage()));
}

void setOpenForTest(std::function<void(const QUrl &)> open)
{
    openHook() = std::move(open);
}

} // namespace links
