#include "viewer/threshold_display.h"

#include <algorithm>

namespace viewer {

float PercentOfThreshold(float value, float high, float low) {
    float ratio = 0.0f;
    if (value >= 0 && high > 0) ratio = value / high;
    else if (value < 0 && low < 0) ratio = value / low;
    return ratio * 100.0f;
}

void ConvertToPercent(std::span<float> values, int32_t count, std::span<const ThresholdPart> parts) {
    const auto n = static_cast<std::size_t>(std::clamp<int32_t>(count, 0, static_cast<int32_t>(values.size())));
    std::size_t i = 0;
    for (const ThresholdPart& part : parts) {
        for (std::size_t j = 0; j < part.high.size() && i < n; ++j, ++i) {
            // A lower array shorter than the upper one has no lower threshold there.
            const float low = j < part.low.size() ? part.low[j] : 0.0f;
            values[i] = PercentOfThreshold(values[i], part.high[j], low);
        }
    }
    for (; i < n; ++i) values[i] = 0.0f;
}

std::vector<float> ThresholdTraceValues(std::span<const ThresholdPart> parts, bool percent) {
    std::vector<float> y;
    for (const ThresholdPart& part : parts)
        for (std::size_t j = 0; j < part.high.size() && y.size() < kMaxThresholdPoints; ++j)
            y.push_back(percent ? 100.0f : part.high[j]);
    return y;
}

ThresholdAddress ElementThresholdAddress(const std::string& source, int32_t element) {
    const std::string index = "[" + std::to_string(element) + "]";
    const std::size_t open = source.find('[');
    if (open == std::string::npos) return {source, index};
    std::string property = source.substr(open + 1);
    const std::size_t close = property.find(']');
    if (close != std::string::npos) property = property.substr(0, close);
    // Blanks the configuration tool leaves around the name are not part of it.
    const std::size_t first = property.find_first_not_of(' ');
    const std::size_t last = property.find_last_not_of(' ');
    property = first == std::string::npos ? std::string() : property.substr(first, last - first + 1);
    return {source.substr(0, open), property + index};
}

std::string ThresholdToolDevice(const std::string& source, int32_t element) {
    const ThresholdAddress address = ElementThresholdAddress(source, element);
    if (source.find('[') == std::string::npos) return address.device + address.property;
    return address.device + "[" + address.property + "]";
}

}  // namespace viewer
