#include "runtime/Colors.h"

namespace rt
{

QColor toQColor(WinColor color)
{
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

WinColor fromQColor(const QColor &color)
{
    return RGB(color.red(), color.green(), color.blue());
}

} // namespace rt
