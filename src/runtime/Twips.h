#pragma once

namespace rt
{

// Twips against pixels: 1440 twips to the inch, so 15 twips a pixel at 96 dpi. The dpi is
// the primary screen's logical dpi (96 without a screen); tests can pin it.
int twipsToPixels(double twips);
double pixelsToTwips(double pixels);
double twipsPerPixel();
void setDpiForTest(double dpi); // 0 restores the screen's dpi

// Point sizes are kept as designed; this maps a design-time font size in points to pixels.
double pointsToPixels(double points);

} // namespace rt
