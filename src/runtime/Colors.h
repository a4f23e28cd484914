#pragma once

#include <QColor>
#include <cstdint>

namespace rt
{

// A Windows colour value: red in the low byte, then green, then blue.
using WinColor = std::uint32_t;

constexpr WinColor RGB(int red, int green, int blue)
{
    return WinColor(red & 0xFF) | (WinColor(green & 0xFF) << 8) | (WinColor(blue & 0xFF) << 16);
}

constexpr WinColor kWhite = 0xFFFFFF;
constexpr WinColor kBlue = 0xFF0000;
constexpr WinColor kRed = 0x0000FF;

QColor toQColor(WinColor color);

// The contrast ratio of two colours as WCAG defines it, from 1 to 21.
double contrastRatio(WinColor a, WinColor b);
// Black or white, whichever reads better as text on the colour.
WinColor textColorOn(WinColor back);
WinColor fromQColor(const QColor &color);

} // namespace rt
