// Sizes given in twips (1440 to the inch), as the window logic states column
// widths, turned into pixels at a screen's logical resolution.
#pragma once

#include <cstdint>

namespace ui {

inline constexpr int32_t kTwipsPerInch = 1440;

// Rounded to the nearest pixel, halves away from zero. A non-positive
// resolution gives 0 pixels.
int32_t TwipsToPixels(int32_t twips, int dotsPerInch);
int32_t PixelsToTwips(int32_t pixels, int dotsPerInch);

}  // namespace ui
