// The waterfall's rows and colours: which recorded times become image rows
// (thinned in time to the rows there is room for, never in elements), and
// the colour of a value on the scale of the whole picture.
//
// Qt-free.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace viewer {

// At most `rows` times in [from, to]: of the recorded `stamps` (ascending)
// when there are any in the window, spread evenly with the first and last
// kept; otherwise `rows` times spread evenly over the window. Oldest first.
std::vector<int32_t> WaterfallRowTimes(std::span<const int32_t> stamps, int32_t from, int32_t to, int32_t rows);

// The finite minimum and maximum of `values` (0, 1 when there is none; a
// flat picture gets a range of 1 around its value).
struct ValueRange {
    float lo;
    float hi;
};
ValueRange WaterfallRange(std::span<const float> values);

// The colour of `value` as 0xAARRGGBB, opaque: dark blue at `lo` through
// cyan, green and yellow to red at `hi`, clamped outside; grey for NaN.
uint32_t WaterfallColour(float value, ValueRange range);

}  // namespace viewer
