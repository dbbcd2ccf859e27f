#include "vire/threshold_link.h"

#include "vire/queries.h"

namespace vire {

catalogue::ThresholdLinkRead ThresholdLinkReader() {
    return [](const std::string& device, const std::string& property, std::span<float> values,
              int32_t timeoutMs) -> int16_t { return ReadFloats(device, property, values, timeoutMs); };
}

void InstallThresholdLink(catalogue::Catalogue& cat) { cat.ThresholdLink = ThresholdLinkReader(); }

}  // namespace vire
