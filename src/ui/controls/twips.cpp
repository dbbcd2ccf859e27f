#include "ui/controls/twips.h"

#include <cmath>
#include <limits>

namespace ui {
namespace {

int32_t Scaled(int32_t value, int numerator, int denominator) {
    if (numerator <= 0 || denominator <= 0) return 0;
    // In 64 bits and then clamped: a huge width must not wrap into a negative one.
    const double exact = static_cast<double>(value) * numerator / denominator;
    const double rounded = std::round(exact);
    if (rounded > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    if (rounded < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(rounded);
}

}  // namespace

int32_t TwipsToPixels(int32_t twips, int dotsPerInch) {
    return Scaled(twips, dotsPerInch, kTwipsPerInch);
}

int32_t PixelsToTwips(int32_t pixels, int dotsPerInch) {
    return dotsPerInch <= 0 ? 0 : Scaled(pixels, kTwipsPerInch, dotsPerInch);
}

}  // namespace ui
