#pragma once

class QWidget;

// Where a window goes in the stacking order, after the window handles that Windows accepts
// as "insert after".
enum class InsertAfter {
    Top,       // above its siblings
    Bottom,    // below every other window
    TopMost,   // above every window that is not itself kept on top, and kept there
    NoTopMost, // no longer kept on top
};

// Restacks a window and shows it, leaving its position and size alone. Every event window
// runs this when it is shown.
void SetZOrder(QWidget *window, InsertAfter insertAfter);
