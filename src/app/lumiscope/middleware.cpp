#include "middleware.h"

#include <cstdlib>
#include <exception>

#include "catalogue/numbers.h"
#include "sim/simulated_accelerator.h"
#ifdef LUMISCOPE_NETWORK
#include "net/environment.h"
#endif

namespace lumiscope_app {
namespace {

}  // namespace

int32_t PollIntervalSetting() {
    const char* text = std::getenv("LUMISCOPE_POLL_MS");
    int64_t value = 0;
    if (!text || !catalogue::ParseInteger(text, 1, 3'600'000, value)) return 0;
    return static_cast<int32_t>(value);
}

std::shared_ptr<vire::Transport> NetworkTransportFromEnvironment([[maybe_unused]] const std::string& configDir) {
#ifdef LUMISCOPE_NETWORK
    if (net::InstallTransportFromEnvironment(configDir)) return vire::CurrentTransport();
#endif
    return nullptr;
}

std::shared_ptr<vire::Transport> SimulatedTransport(const std::string& configDir, std::string& problem) {
    try {
        return std::make_shared<sim::SimulatedAccelerator>(configDir);
    } catch (const std::exception& error) {
        problem = "the simulated accelerator could not be built from " + configDir + ": " + error.what();
        return nullptr;
    }
}

Middleware::Middleware(std::shared_ptr<vire::Transport> transport) : transport_(std::move(transport)) {
    if (transport_) vire::SetTransport(transport_);
}

Middleware::~Middleware() {
    if (transport_) vire::SetTransport(nullptr);
}

}  // namespace lumiscope_app
