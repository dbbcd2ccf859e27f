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

std::vector<int64_t> LabelledElements(double from, double to, int64_t step, int64_t count,
                                      std::span<const int64_t> anchors) {
    std::vector<int64_t> result;
    if (step < 1 || count < 1 || !std::isfinite(from) || !std::isfinite(to)) return result;
    const double lo = std::max(std::min(from, to), 0.0);
    const double hi = std::min(std::max(from, to), static_cast<double>(count - 1));
    if (lo > hi) return result;
    std::vector<int64_t> kept;
    for (int64_t anchor : anchors) {
        const auto a = static_cast<double>(anchor);
        if (a < lo || a > hi || (!kept.empty() && anchor - kept.back() < step)) continue;
        kept.push_back(anchor);
    }
    // Both lists ascend: one pass merges them, `next` is the first kept
    // anchor not below the element.
    size_t next = 0;
    int64_t element = static_cast<int64_t>(std::ceil(lo / static_cast<double>(step))) * step;
    for (; static_cast<double>(element) <= hi; element += step) {
        while (next < kept.size() && kept[next] < element) result.push_back(kept[next++]);
        const bool clearBefore = result.empty() || element - result.back() >= step;
        const bool clearAfter = next == kept.size() || kept[next] - element >= step;
        if (clearBefore && clearAfter) result.push_back(element);
    }
    result.insert(result.end(), kept.begin() + static_cast<std::ptrdiff_t>(next), kept.end());
    return result;
}

}  // namespace ui
