#pragma once

#include <array>

namespace yearcal
{

// Geometry of the children in twips, as designed and after a change of width.

struct Box {
    double left, top, width, height;
};

struct VLine {
    double x, top, bottom;
};

struct HLine {
    double y, left, right;
};

constexpr double kDesignWidth = 10840;
constexpr double kDesignHeight = 7440;

constexpr double kDayFontPoints = 9.75;
constexpr double kMonthFontPoints = 11.25;
constexpr double kYearFontPoints = 13;
constexpr double kButtonFontPoints = 14;

Box dayCellBox(bool inJanuary, int index);
Box weekdayBox(int index);
Box monthBox(int index);
Box yearBox();
Box leftButtonBox();
Box rightButtonBox();
VLine monthSeparator(int index); // Line1(0..2), between the month columns
HLine rowSeparator(int index);   // Line4 (0) and Line5 (1), between the month rows

// Placement for one size of the control. Lefts and widths follow the width by fixed shares;
// tops and heights are the design values times the height's own factor, so the grids fill a
// taller control as well. A font grows with the width only as far as its box has grown in
// height too, so no text outgrows its box.
struct Placement {
    std::array<double, 42> j1Left;
    std::array<double, 462> f1Left;
    double cellWidth, cellFontPoints;
    std::array<double, 12> monLeft;
    double monWidth, monFontPoints;
    std::array<double, 84> wLeft;
    double wWidth, wFontPoints;
    std::array<double, 3> line1X;
    double cmdRightLeft, cmdLeftLeft, label12Left, label12Width, yearFontPoints;
    double buttonWidth, buttonFontPoints;
    double vertical; // height / design height

    double y(double designTwips) const { return designTwips * vertical; }
};

// Each child's Left as a share of the control's width at start-up; every later width
// places the children by the same shares.
class Ratios
{
public:
    explicit Ratios(double startWidth);
    Placement place(double width, double height) const;

private:
    std::array<double, 42> j1_;
    std::array<double, 462> f1_;
    std::array<double, 12> mon_;
    std::array<double, 84> w_;
    std::array<double, 3> line1_;
    double cmdRight_, label12_;
    double startWidth_;
};

} // namespace yearcal
