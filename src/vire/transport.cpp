#include "vire/transport.h"

#include <mutex>

namespace vire {
namespace {
std::mutex transportMutex;
std::shared_ptr<Transport> installed;
}  // namespace

void SetTransport(std::shared_ptr<Transport> transport) {
    std::lock_guard<std::mutex> lock(transportMutex);
    installed = std::move(transport);
}

std::shared_ptr<Transport> CurrentTransport() {
    std::lock_guard<std::mutex> lock(transportMutex);
    return installed;
}

}  // namespace vire
