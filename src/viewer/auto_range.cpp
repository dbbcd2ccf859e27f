#include "viewer/auto_range.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace viewer {

namespace {

// Widens a range by the margin; a flat one by a share of its value (or 1 at 0).
YRange WithMargin(double lo, double hi, bool lowSide, bool highSide) {
    double margin = (hi - lo) * kScaleMargin;
    if (!(hi > lo)) margin = lo != 0.0 ? std::fabs(lo) * kScaleMargin : 1.0;
    return {lowSide ? lo - margin : lo, highSide ? hi + margin : hi};
}

}  // namespace

std::optional<YRange> FitRange(std::span<const float> values, int16_t mode) {
    if (mode < 1 || mode > 3) return std::nullopt;
    std::vector<float> finite;
    finite.reserve(values.size());
    for (float v : values)
        if (std::isfinite(v)) finite.push_back(v);
    if (finite.empty()) return std::nullopt;
    const auto [lowest, highest] = std::minmax_element(finite.begin(), finite.end());
    double lo = *lowest, hi = *highest;
    switch (static_cast<ScaleMode>(mode)) {
        case ScaleMode::FitAll:
            return WithMargin(lo, hi, true, true);
        case ScaleMode::KeepZero: {
            lo = std::min(lo, 0.0);
            hi = std::max(hi, 0.0);
            if (lo == hi) return WithMargin(lo, hi, true, true);
            return WithMargin(lo, hi, lo < 0.0, hi > 0.0);
        }
        case ScaleMode::IgnoreOutliers: {
            // Too few points to tell an outlier from the data.
            if (finite.size() < 5) return WithMargin(lo, hi, true, true);
            const std::size_t cut = std::max<std::size_t>(1, finite.size() / 100);
            std::nth_element(finite.begin(), finite.begin() + static_cast<std::ptrdiff_t>(cut), finite.end());
            lo = finite[cut];
            const std::size_t top = finite.size() - 1 - cut;
            std::nth_element(finite.begin(), finite.begin() + static_cast<std::ptrdiff_t>(top), finite.end());
            hi = finite[top];
            return WithMargin(lo, hi, true, true);
        }
    }
    return std::nullopt;
}

}  // namespace viewer
