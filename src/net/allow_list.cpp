#include "net/allow_list.h"

#include <arpa/inet.h>
#include <netdb.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include "catalogue/numbers.h"
#include "catalogue/table.h"

namespace net {
namespace {

// An address as 4 or 16 bytes; false when the text is no address. An IPv4
// address written as IPv6 ("::ffff:10.0.0.1", as dual-stack listeners report
// IPv4 peers) is read as the IPv4 address it is.
bool ReadAddress(const std::string& text, bool& v6, std::array<uint8_t, 16>& bytes) {
    bytes.fill(0);
    if (inet_pton(AF_INET, text.c_str(), bytes.data()) == 1) {
        v6 = false;
        return true;
    }
    if (inet_pton(AF_INET6, text.c_str(), bytes.data()) != 1) return false;
    static constexpr uint8_t kMappedPrefix[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
    v6 = std::memcmp(bytes.data(), kMappedPrefix, sizeof kMappedPrefix) != 0;
    if (!v6) {
        std::memmove(bytes.data(), bytes.data() + 12, 4);
        std::fill(bytes.begin() + 4, bytes.end(), 0);
    }
    return true;
}

bool IsHostName(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.' || c == '_';
    });
}

std::vector<std::string> SystemLookup(const std::string& host) {
    std::vector<std::string> addresses;
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return addresses;
    for (const addrinfo* a = found; a != nullptr; a = a->ai_next) {
        char text[INET6_ADDRSTRLEN] = {};
        const void* where = a->ai_family == AF_INET
                                ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in*>(a->ai_addr)->sin_addr)
                                : static_cast<const void*>(&reinterpret_cast<const sockaddr_in6*>(a->ai_addr)->sin6_addr);
        if ((a->ai_family == AF_INET || a->ai_family == AF_INET6) &&
            inet_ntop(a->ai_family, where, text, sizeof text) != nullptr)
            addresses.emplace_back(text);
    }
    freeaddrinfo(found);
    return addresses;
}

}  // namespace

bool HostAllowList::Parse(const std::string& text, std::string& problem, const Lookup& lookup) {
    bool ok = true;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t end = std::min(text.find(',', start), text.size());
        const std::string entry = catalogue::TrimAll(text.substr(start, end - start));
        start = end + 1;
        if (entry.empty()) continue;
        const size_t slash = entry.find('/');
        Network network;
        const std::string base = entry.substr(0, slash);
        if (ReadAddress(base, network.v6, network.bytes)) {
            const int widest = network.v6 ? 128 : 32;
            int64_t prefix = widest;
            if (slash != std::string::npos && !catalogue::ParseInteger(entry.substr(slash + 1), 0, widest, prefix)) {
                ok = false;
                problem = "unreadable network \"" + entry + "\"";
                continue;
            }
            network.prefix = static_cast<int>(prefix);
            networks_.push_back(network);
        } else if (slash == std::string::npos && IsHostName(entry)) {
            const auto addresses = lookup ? lookup(entry) : SystemLookup(entry);
            bool any = false;
            for (const auto& address : addresses) {
                Network host;
                if (!ReadAddress(address, host.v6, host.bytes)) continue;
                host.prefix = host.v6 ? 128 : 32;
                networks_.push_back(host);
                any = true;
            }
            if (!any) {
                ok = false;
                problem = "host \"" + entry + "\" has no address";
            }
        } else {
            ok = false;
            problem = "unreadable host or network \"" + entry + "\"";
        }
    }
    return ok;
}

bool HostAllowList::Allows(const std::string& peerAddress) const {
    bool v6 = false;
    std::array<uint8_t, 16> peer{};
    if (!ReadAddress(peerAddress, v6, peer)) return false;
    for (const auto& network : networks_) {
        if (network.v6 != v6) continue;
        bool inside = true;
        for (int bit = 0; bit < network.prefix && inside; ++bit) {
            const uint8_t mask = static_cast<uint8_t>(0x80u >> (bit % 8));
            inside = (peer[bit / 8] & mask) == (network.bytes[bit / 8] & mask);
        }
        if (inside) return true;
    }
    return false;
}

bool IsLoopback(const std::string& address) {
    bool v6 = false;
    std::array<uint8_t, 16> bytes{};
    if (!ReadAddress(address, v6, bytes)) return false;
    if (!v6) return bytes[0] == 127;
    static constexpr std::array<uint8_t, 16> kLoopback6 = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    return bytes == kLoopback6;
}

}  // namespace net
