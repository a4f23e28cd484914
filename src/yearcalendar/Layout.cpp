#include "yearcalendar/Layout.h"

#include <algorithm>

namespace yearcal
{
namespace
{

// Month titles sit four to a row; a month's weekday headers lie 480 twips and its first
// row of days 720 twips below its title.
constexpr double kMonthColumn[] = {83, 2843, 5610, 8370};
constexpr double kMonthRow[] = {600, 2880, 5160};
constexpr double kPitchAcross = 360;
constexpr double kPitchDown = 240;
constexpr double kHeaderOffset = -113; // January's "Su" at -30 against its title at 83

double monthLeft(int month0)
{
    return kMonthColumn[month0 % 4];
}
double monthTop(int month0)
{
    return kMonthRow[month0 / 4];
}

} // namespace

Box dayCellBox(bool inJanuary, int index)
{
    const int month0 = inJanuary ? 0 : 1 + index / 42;
    const int k = inJanuary ? index : index % 42;
    return {monthLeft(month0) + kPitchAcross * (k % 7),
            monthTop(month0) + 720 + kPitchDown * (k / 7), 225, 195};
}

Box weekdayBox(int index)
{
    const int month0 = index / 7;
    return {monthLeft(month0) + kHeaderOffset + kPitchAcross * (index % 7), monthTop(month0) + 480,
            375, 255};
}

Box monthBox(int index)
{
    return {monthLeft(index), monthTop(index), 2385, 285};
}

// The year box is centred on the control with a button on either side.
Box yearBox()
{
    return {4813, 90, 1214, 405};
}
Box leftButtonBox()
{
    return {4303, 90, 450, 405};
}
Box rightButtonBox()
{
    return {6087, 90, 450, 405};
}

VLine monthSeparator(int index)
{
    constexpr double x[] = {2655, 5419, 8182};
    return {x[index], 600, 7275};
}

HLine rowSeparator(int index)
{
    constexpr double y[] = {2797, 5077};
    return {y[index], 83, 10755};
}

Ratios::Ratios(double startWidth) : startWidth_(startWidth)
{
    for (int k = 0; k < 42; ++k)
        j1_[k] = dayCellBox(true, k).left / startWidth;
    for (int i = 0; i < 462; ++i)
        f1_[i] = dayCellBox(false, i).left / startWidth;
    for (int m = 0; m < 12; ++m)
        mon_[m] = monthBox(m).left / startWidth;
    for (int i = 0; i < 84; ++i)
        w_[i] = weekdayBox(i).left / startWidth;
    for (int i = 0; i < 3; ++i)
        line1_[i] = monthSeparator(i).x / startWidth;
    cmdRight_ = rightButtonBox().left / startWidth;
    label12_ = yearBox().left / startWidth;
}

Placement Ratios::place(double width, double height) const
{
    Placement p{};
    p.vertical = height / kDesignHeight;
    // Fonts that follow the width follow it only up to the start width grown with the height.
    const double tallest = startWidth_ * p.vertical;
    // Fonts of a fixed size, and the buttons, grow only when the control has grown both ways,
    // and shrink with a lower one.
    const double grown = std::min(p.vertical, std::max(1.0, width / startWidth_));
    p.cellWidth = width * 0.02;
    p.cellFontPoints = std::min(p.cellWidth, tallest * 0.02) * 0.0444444444444444;
    for (int k = 0; k < 42; ++k)
        p.j1Left[k] = width * j1_[k];
    for (int i = 0; i < 462; ++i)
        p.f1Left[i] = width * f1_[i];
    p.monWidth = width * 0.22;
    p.monFontPoints = kMonthFontPoints * grown;
    for (int m = 0; m < 12; ++m)
        p.monLeft[m] = width * mon_[m];
    p.wWidth = width * 0.03;
    p.wFontPoints = std::min(p.wWidth, tallest * 0.03) * 0.030444445761536;
    for (int i = 0; i < 84; ++i)
        p.wLeft[i] = width * w_[i];
    for (int i = 0; i < 3; ++i)
        p.line1X[i] = width * line1_[i];
    p.cmdRightLeft = width * cmdRight_;
    p.label12Left = width * label12_;
    p.label12Width = width * 0.112;
    p.yearFontPoints = kYearFontPoints * grown;
    p.buttonWidth = rightButtonBox().width * std::max(1.0, grown);
    p.buttonFontPoints = kButtonFontPoints * grown;
    // The left button has no share of its own: it mirrors the right one about the centre of
    // the year box.
    p.cmdLeftLeft = 2 * p.label12Left + p.label12Width - p.cmdRightLeft - p.buttonWidth;
    return p;
}

} // namespace yearcal
