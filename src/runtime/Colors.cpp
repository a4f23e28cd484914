#include "runtime/Colors.h"

#include <algorithm>
#include <cmath>

namespace rt
{

QColor toQColor(WinColor color)
{
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

namespace
{

double luminance(WinColor color)
{
    const auto channel = [](unsigned value) {
        const double c = value / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color & 0xFF) + 0.7152 * channel((color >> 8) & 0xFF) +
           0.0722 * channel((color >> 16) & 0xFF);
}

} // namespace

double contrastRatio(WinColor a, WinColor b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

WinColor textColorOn(WinColor back)
{
    return contrastRatio(back, 0) >= contrastRatio(back, kWhite) ? 0 : kWhite;
}

WinColor fromQColor(const QColor &color)
{
    return RGB(color.red(), color.green(), color.blue());
}

} // namespace rt
