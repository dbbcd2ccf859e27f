// Which hosts may write: host names as the clients report them, and network
// addresses (single addresses or networks "10.1.0.0/16", "fd00::/8") matched
// against the address a call really came from.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace net {

class HostAllowList {
public:
    // Comma-separated entries; returns false (and keeps what it could read)
    // when an entry is neither a host name nor a readable network.
    bool Parse(const std::string& text, std::string& problem);
    bool Allows(const std::string& claimedHost, const std::string& peerAddress) const;
    bool Empty() const { return hosts_.empty() && networks_.empty(); }

private:
    struct Network {
        bool v6 = false;
        std::array<uint8_t, 16> bytes{};
        int prefix = 0;
    };
    std::vector<std::string> hosts_;
    std::vector<Network> networks_;
};

// The host list of the device servers when none is given: this machine only.
inline constexpr const char* kDefaultWriteHosts = "localhost,127.0.0.0/8,::1";

}  // namespace net
