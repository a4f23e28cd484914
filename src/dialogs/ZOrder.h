#pragma once

class QWidget;

// Raises a window above its siblings and shows it, leaving its position and size alone.
// Every event window runs this when it is shown.
void SetZOrder(QWidget *window);
