#include "ui/plot/label_thinning.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ui {

int64_t LabelStep(double from, double to, double axisPixels, double pitchPixels) {
    constexpr int64_t kOneLabel = std::numeric_limits<int32_t>::max();
    const double span = std::abs(to - from);
    if (!std::isfinite(span) || !std::isfinite(axisPixels) || !std::isfinite(pitchPixels) ||
        axisPixels < 1.0 || pitchPixels <= 0.0)
        return kOneLabel;
    const double elementsPerPixel = span / axisPixels;
    const double wanted = elementsPerPixel * pitchPixels;  // elements between two labels
    if (wanted <= 1.0) return 1;
    if (wanted >= static_cast<double>(kOneLabel)) return kOneLabel;
    for (int64_t magnitude = 1;; magnitude *= 10)
        for (int64_t mantissa : {1, 2, 5})
            if (static_cast<double>(mantissa * magnitude) >= wanted) return mantissa * magnitude;
}

std::vector<int64_t> LabelledElements(double from, double to, int64_t step, int64_t count) {
    std::vector<int64_t> result;
    if (step < 1 || count < 1 || !std::isfinite(from) || !std::isfinite(to)) return result;
    const double lo = std::max(std::min(from, to), 0.0);
    const double hi = std::min(std::max(from, to), static_cast<double>(count - 1));
    if (lo > hi) return result;
    int64_t element = static_cast<int64_t>(std::ceil(lo / static_cast<double>(step))) * step;
    for (; static_cast<double>(element) <= hi; element += step) result.push_back(element);
    return result;
}

}  // namespace ui
