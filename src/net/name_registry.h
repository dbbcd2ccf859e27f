// The name service's table: server names with the address that serves them,
// each valid until its lease runs out unless a heartbeat renews it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "net/link_service.h"

namespace net {

class NameRegistry : public LinkHandler {
public:
    // Leases asked for are kept within these bounds.
    static constexpr int32_t kShortestLeaseMs = 300;
    static constexpr int32_t kLongestLeaseMs = 600'000;

    // nowMs: a monotonic clock in ms (steady by default; tests pass their own).
    explicit NameRegistry(std::function<int64_t()> nowMs = {});

    vire::Status Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext& caller,
                        int32_t timeoutMs) override;
    int64_t MostElements(const LinkRequest&) const override { return 512; }  // an address
    std::vector<std::string> Names() const override;
    std::string Program() const override { return "lumiscope-names"; }

private:
    struct Entry {
        std::string address;
        int64_t untilMs;
    };
    vire::Status Register(const std::string& text);
    vire::Status Unregister(const std::string& text);
    vire::Status Resolve(const std::string& name, ServerBuffers& buffers);

    std::function<int64_t()> nowMs_;
    mutable std::mutex mutex_;
    std::map<std::string, Entry> entries_;
};

}  // namespace net
