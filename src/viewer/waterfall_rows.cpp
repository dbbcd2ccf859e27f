#include "viewer/waterfall_rows.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace viewer {

std::vector<int32_t> WaterfallRowTimes(std::span<const int32_t> stamps, int32_t from, int32_t to, int32_t rows) {
    std::vector<int32_t> times;
    if (rows <= 0 || to < from) return times;
    const auto first = std::lower_bound(stamps.begin(), stamps.end(), from);
    const auto last = std::upper_bound(first, stamps.end(), to);
    const auto count = static_cast<int64_t>(last - first);
    if (count > 0) {
        if (count <= rows) return {first, last};
        for (int64_t i = 0; i < rows; ++i) {
            const int64_t k = rows == 1 ? count - 1 : (i * (count - 1) + (rows - 1) / 2) / (rows - 1);
            times.push_back(first[k]);
        }
        return times;
    }
    const int64_t span = static_cast<int64_t>(to) - from;
    const int64_t n = std::min<int64_t>(rows, span + 1);
    for (int64_t i = 0; i < n; ++i)
        times.push_back(static_cast<int32_t>(from + (n == 1 ? span : i * span / (n - 1))));
    return times;
}

ValueRange WaterfallRange(std::span<const float> values) {
    float lo = INFINITY, hi = -INFINITY;
    for (float v : values) {
        if (!std::isfinite(v)) continue;
        lo = std::min(lo, v);
        hi = std::max(hi, v);
    }
    if (lo > hi) return {0.0f, 1.0f};
    if (lo == hi) return {lo - 0.5f, hi + 0.5f};
    return {lo, hi};
}

uint32_t WaterfallColour(float value, ValueRange range) {
    if (std::isnan(value)) return 0xFF808080;
    // Stops of the scale, low to high.
    static constexpr std::array<std::array<float, 3>, 5> kStops{{
        {0, 0, 128}, {0, 200, 255}, {0, 200, 0}, {255, 230, 0}, {220, 0, 0}}};
    const float span = range.hi - range.lo;
    float f = span > 0 ? (value - range.lo) / span : 0.0f;
    f = std::clamp(f, 0.0f, 1.0f) * static_cast<float>(kStops.size() - 1);
    const auto k = std::min<size_t>(static_cast<size_t>(f), kStops.size() - 2);
    const float t = f - static_cast<float>(k);
    uint32_t colour = 0xFF000000;
    for (int c = 0; c < 3; ++c) {
        const float v = kStops[k][c] + (kStops[k + 1][c] - kStops[k][c]) * t;
        colour |= static_cast<uint32_t>(std::lround(v)) << (16 - 8 * c);
    }
    return colour;
}

}  // namespace viewer
