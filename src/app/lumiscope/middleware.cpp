#include "middleware.h"

#include <cstdlib>
#include <exception>

#include "catalogue/numbers.h"
#include "sim/simulated_accelerator.h"

namespace lumiscope_app {
namespace {

// Passes every call through and makes every live link poll at one interval.
class FixedPollInterval : public vire::Transport {
public:
    FixedPollInterval(std::shared_ptr<vire::Transport> inner, int32_t intervalMs)
        : inner_(std::move(inner)), intervalMs_(intervalMs) {}

    vire::Status Call(const std::string& fullDeviceName, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
        return inner_->Call(fullDeviceName, property, out, in, access, timeoutMs);
    }
    vire::SubscriptionId Subscribe(const vire::SubscriptionRequest& request,
                                   std::function<void(const vire::LinkData&)> onData) override {
        vire::SubscriptionRequest faster = request;
        faster.intervalMs = intervalMs_;
        return inner_->Subscribe(faster, std::move(onData));
    }
    void Unsubscribe(vire::SubscriptionId id) override { inner_->Unsubscribe(id); }

private:
    std::shared_ptr<vire::Transport> inner_;
    int32_t intervalMs_;
};

}  // namespace

int32_t PollIntervalSetting() {
    const char* text = std::getenv("LUMISCOPE_POLL_MS");
    int64_t value = 0;
    if (!text || !catalogue::ParseInteger(text, 1, 3'600'000, value)) return 0;
    return static_cast<int32_t>(value);
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
    if (!transport_) return;
    if (const int32_t interval = PollIntervalSetting(); interval > 0)
        transport_ = std::make_shared<FixedPollInterval>(transport_, interval);
    vire::SetTransport(transport_);
}

Middleware::~Middleware() {
    if (transport_) vire::SetTransport(nullptr);
}

}  // namespace lumiscope_app
