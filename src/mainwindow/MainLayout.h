#pragma once

#include <QRectF>

// Where the main window's parts go for one size of the window, in twips. Lefts and widths are
// fixed shares of the window's outer width. Tops and heights are the design values times one
// factor, the client area's height over the design height, so that the parts fill the window
// from top to bottom; a window lower than the design keeps the design's heights. Fonts grow
// only as far as their rows have grown in height, so that no text outgrows its row.

struct MainLayout {
    double vertical;                    // the factor on every top and height
    QRectF cal, frame, scroll, picture; // within the client area
    QRectF rows;                        // the legend's rows' area, within the frame
    double labelFontPoints;             // the legend's names
    double titleFontPoints;             // the frame's caption "Legend"
};

// width: the window's outer width; clientHeight: the height below the menu bar.
MainLayout mainLayout(double width, double clientHeight);
