// Thresholds as the spectrum plot shows them: each value as a percentage of
// its element's threshold, the threshold trace across the parts of a
// spectrum, and the addresses a threshold change is sent to.
//
// Qt-free: the window (thresholds.cpp) feeds it the catalogue's arrays.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace viewer {

// The threshold trace has at most this many points, however long the spectrum.
inline constexpr int32_t kMaxThresholdPoints = 1001;

// One part of a spectrum: its threshold arrays, element by element.
struct ThresholdPart {
    std::span<const float> high;
    std::span<const float> low;
};

// v in percent of its threshold: positive values against the upper
// threshold, negative ones against the lower; a value on the side of a
// missing threshold (not above 0, not below 0) shows as 0 %.
float PercentOfThreshold(float value, float high, float low);

// Converts the first `count` values in place. The parts lie side by side in
// `values` as far as their threshold arrays reach; points beyond every
// part's thresholds show as 0 %.
void ConvertToPercent(std::span<float> values, int32_t count, std::span<const ThresholdPart> parts);

// The y values of the threshold trace: the upper thresholds of the parts one
// after the other (100 each in percent mode), at most kMaxThresholdPoints.
std::vector<float> ThresholdTraceValues(std::span<const ThresholdPart> parts, bool percent);

// Where one element's threshold is written: the threshold source
// "/CONTEXT/SERVER/DEVICE[PROPERTY]" split at its "[" into the device and
// the property, the property's closing "]" replaced by the element,
// "PROPERTY[n]". A source without "[" is the device alone, property "[n]".
struct ThresholdAddress {
    std::string device;
    std::string property;
};
ThresholdAddress ElementThresholdAddress(const std::string& source, int32_t element);

// The text the threshold tool gets after " device=": the element's address
// written as one source, "/CONTEXT/SERVER/DEVICE[PROPERTY[n]]", or for a
// table file "FILE[n]".
std::string ThresholdToolDevice(const std::string& source, int32_t element);

}  // namespace viewer
