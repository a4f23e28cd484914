#include "runtime/Twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace rt
{
namespace
{

double pinnedDpi = 0;

double dpi()
{
    if (pinnedDpi > 0)
        return pinnedDpi;
    if (qGuiApp) {
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            return screen->logicalDotsPerInch();
    }
    return 96.0;
}

} // namespace

double twipsPerPixel()
{
    return 1440.0 / dpi();
}

int twipsToPixels(double twips)
{
    return int(std::lround(twips / twipsPerPixel()));
}

double pixelsToTwips(double pixels)
{
    return pixels * twipsPerPixel();
}

void setDpiForTest(double value)
{
    pinnedDpi = value;
}

double pointsToPixels(double points)
{
    return points * dpi() / 72.0;
}

} // namespace rt
