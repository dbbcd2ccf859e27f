#include "threshold_link.h"

#include "sim/simulated_accelerator.h"
#include "vire/queries.h"

void InstallThresholdLink(catalogue::Catalogue& cat, const std::string& simConfigDir) {
    static std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    if (!accelerator) accelerator = sim::InstallSimulatedAccelerator(simConfigDir);
    cat.ThresholdLink = [](const std::string& device, const std::string& property, std::span<float> values,
                           int32_t timeoutMs) -> int16_t {
        return vire::ReadFloats(device, property, values, timeoutMs);
    };
}
