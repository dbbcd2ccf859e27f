// Which hosts may write, matched against the network address a call really
// came from: single addresses, networks ("10.1.0.0/16", "fd00::/8") and host
// names, which are looked up once when the list is read. What a client says
// its host is counts for nothing.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace net {

class HostAllowList {
public:
    // Gives the addresses of a host name (empty when it has none).
    using Lookup = std::function<std::vector<std::string>(const std::string& host)>;

    // Comma-separated entries; returns false (and keeps what it could read)
    // when an entry is neither a readable network nor a host name with an
    // address. lookup defaults to the system's resolver.
    bool Parse(const std::string& text, std::string& problem, const Lookup& lookup = {});
    bool Allows(const std::string& peerAddress) const;
    bool Empty() const { return networks_.empty(); }

private:
    struct Network {
        bool v6 = false;
        std::array<uint8_t, 16> bytes{};
        int prefix = 0;
    };
    std::vector<Network> networks_;
};

// True for 127.0.0.0/8, ::1 and IPv4 loopback addresses written as IPv6.
bool IsLoopback(const std::string& address);

// The host list of the device servers when none is given: this machine only.
inline constexpr const char* kDefaultWriteHosts = "127.0.0.0/8,::1";

}  // namespace net
