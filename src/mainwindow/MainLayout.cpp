#include "mainwindow/MainLayout.h"

#include "yearcalendar/Layout.h"

#include <algorithm>

namespace
{

// Design geometry: the calendar is the tallest part and sets the design height.
constexpr double kStartWidth = 12945;
constexpr double kFrameTop = 600;
constexpr double kFrameHeight = 4335;
constexpr double kRowsTop = 285; // below the frame's caption
constexpr double kRowsBottomMargin = 60;
constexpr double kPictureTop = 5160;
constexpr double kPictureHeight = 2160;
constexpr double kTitleFontPoints = 12;

double labelWidthAt(double width)
{
    return width * 0.147 * 0.567;
}

} // namespace

MainLayout mainLayout(double width, double clientHeight)
{
    MainLayout l{};
    const double v = l.vertical = std::max(1.0, clientHeight / yearcal::kDesignHeight);
    const double frameWidth = width * 0.147;
    l.cal = {0, 0, width * 0.834, yearcal::kDesignHeight * v};
    l.frame = {width * 0.841, kFrameTop * v, frameWidth, kFrameHeight * v};
    l.scroll = {width * 0.964, (kFrameTop + kRowsTop) * v, width * 0.021,
                (kFrameHeight - kRowsTop - kRowsBottomMargin) * v};
    l.picture = {width * 0.841, kPictureTop * v, width * 0.143, kPictureHeight * v};
    l.rows = {0, kRowsTop * v, frameWidth, (kFrameHeight - kRowsTop - kRowsBottomMargin) * v};
    // The legend's names grow with the width only as far as their rows grew in height.
    l.labelFontPoints =
        std::min(labelWidthAt(width), labelWidthAt(kStartWidth) * v) * 0.00925925893996544;
    l.titleFontPoints = kTitleFontPoints * std::max(1.0, std::min(width / kStartWidth, v));
    return l;
}
