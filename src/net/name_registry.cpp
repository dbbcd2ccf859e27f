#include "net/name_registry.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <sstream>

#include "catalogue/numbers.h"
#include "net/name_client.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace net {
namespace {

int64_t SteadyMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::string TextOf(const ServerBuffers& buffers) {
    const size_t n = std::min(buffers.in.size(), static_cast<size_t>(std::max(buffers.inObject.count, 0)));
    return std::string(reinterpret_cast<const char*>(buffers.in.data()), n);
}

}  // namespace

NameRegistry::NameRegistry(std::function<int64_t()> nowMs) : nowMs_(nowMs ? std::move(nowMs) : SteadyMs) {}

std::vector<std::string> NameRegistry::Names() const { return {kNamesDevice}; }

vire::Status NameRegistry::Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext&, int32_t) {
    if (request.device() != kNamesDevice) return vire::kLinkError;  // no server of that name here
    if (vire::CanonicalFormat(buffers.inObject.format) != vire::kFormatText) return vire::kFormatMismatch;
    const std::string text = TextOf(buffers);
    const std::string& property = request.property();
    if (property == "RESOLVE") {
        if (request.access() != vire::kAccessRead) return vire::kIllegalAccess;
        return Resolve(text, buffers);
    }
    if (property == "REGISTER" || property == "UNREGISTER") {
        if (request.access() != vire::kAccessWrite) return vire::kIllegalAccess;
        return property == "REGISTER" ? Register(text) : Unregister(text);
    }
    return vire::kUnknownProperty;
}

vire::Status NameRegistry::Register(const std::string& text) {
    std::istringstream fields(text);
    std::string name, address, lease, extra;
    int64_t leaseMs = 0;
    if (!(fields >> name >> address >> lease) || (fields >> extra) ||
        !catalogue::ParseInteger(lease, 1, INT32_MAX, leaseMs))
        return vire::kInvalidInput;
    leaseMs = std::clamp<int64_t>(leaseMs, kShortestLeaseMs, kLongestLeaseMs);
    std::lock_guard<std::mutex> lock(mutex_);
    entries_[name] = Entry{address, nowMs_() + leaseMs};
    return vire::kOk;
}

vire::Status NameRegistry::Unregister(const std::string& text) {
    std::istringstream fields(text);
    std::string name, address, extra;
    if (!(fields >> name >> address) || (fields >> extra)) return vire::kInvalidInput;
    std::lock_guard<std::mutex> lock(mutex_);
    // Only the holder withdraws a name: a server that took it over keeps it.
    const auto it = entries_.find(name);
    if (it != entries_.end() && it->second.address == address) entries_.erase(it);
    return vire::kOk;
}

vire::Status NameRegistry::Resolve(const std::string& name, ServerBuffers& buffers) {
    std::string address;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto it = entries_.find(name);
        if (it == entries_.end()) return vire::kUnknownDevice;
        if (it->second.untilMs <= nowMs_()) {
            entries_.erase(it);
            return vire::kUnknownDevice;
        }
        address = it->second.address;
    }
    if (vire::CanonicalFormat(buffers.outObject.format) != vire::kFormatText) return vire::kFormatMismatch;
    if (buffers.out.size() < address.size() || buffers.outObject.count < static_cast<int32_t>(address.size()))
        return vire::kOutOfRange;
    std::memcpy(buffers.out.data(), address.data(), address.size());
    buffers.outObject.count = static_cast<int32_t>(address.size());
    return vire::kOk;
}

}  // namespace net
