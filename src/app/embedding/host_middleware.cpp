#include "embedding/host_middleware.h"

#include "catalogue/files.h"
#include "control/program_location.h"
#include "sim/simulated_accelerator.h"
#include "ui/qt_scheduler.h"
#include "vire/transport.h"

namespace lumiscope {

struct HostMiddleware::Parts {
    ui::ScopedQtScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    std::string problem;
};

HostMiddleware::HostMiddleware() : HostMiddleware(catalogue::NativePath(control::ControlConfigPath())) {}

HostMiddleware::HostMiddleware(const std::string& configDirectory) : parts_(std::make_unique<Parts>()) {
    try {
        parts_->accelerator = std::make_shared<sim::SimulatedAccelerator>(configDirectory);
        vire::SetTransport(parts_->accelerator);
    } catch (const std::exception& error) {
        parts_->problem = "no simulated accelerator for " + configDirectory + ": " + error.what();
    }
}

HostMiddleware::~HostMiddleware() {
    if (parts_->accelerator) vire::SetTransport(nullptr);
}

bool HostMiddleware::Ready() const { return parts_->accelerator != nullptr; }

const std::string& HostMiddleware::Problem() const { return parts_->problem; }

}  // namespace lumiscope
