// The scaling pass: which vertical range fits the values a plot shows.
// Three ways, one per entry of each auto-scale menu:
//   1 fit all: from the smallest to the largest value, nothing cut off;
//   2 keep zero: the same range stretched to include 0, so that a value's
//     height above the axis reads as its size, with a margin on the side
//     away from 0;
//   3 ignore outliers: the extremes of the data left out (a hundredth of
//     the points at each end, at least one), so that a single spike does
//     not flatten the rest.
// Modes 1 and 3 add a margin on both sides. Not-a-number values (gaps) are
// ignored; a flat set is widened so that its line lies inside the range.
//
// Qt-free: data in, range out.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace viewer {

enum class ScaleMode : int16_t { FitAll = 1, KeepZero = 2, IgnoreOutliers = 3 };

inline constexpr double kScaleMargin = 0.05;  // of the range, per side

struct YRange {
    double min = 0.0;
    double max = 0.0;
};

// The range for `values`; none when no value is a number or the mode is not 1..3.
std::optional<YRange> FitRange(std::span<const float> values, int16_t mode);

}  // namespace viewer
