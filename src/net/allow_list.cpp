#include "net/allow_list.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>

#include "catalogue/numbers.h"
#include "catalogue/table.h"

namespace net {
namespace {

// An address as 4 or 16 bytes; false when the text is no address.
bool ReadAddress(const std::string& text, bool& v6, std::array<uint8_t, 16>& bytes) {
    bytes.fill(0);
    if (inet_pton(AF_INET, text.c_str(), bytes.data()) == 1) {
        v6 = false;
        return true;
    }
    if (inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1) {
        v6 = true;
        return true;
    }
    return false;
}

bool IsHostName(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.' || c == '_';
    });
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

bool HostAllowList::Parse(const std::string& text, std::string& problem) {
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
            hosts_.push_back(Lower(entry));
        } else {
            ok = false;
            problem = "unreadable host or network \"" + entry + "\"";
        }
    }
    return ok;
}

bool HostAllowList::Allows(const std::string& claimedHost, const std::string& peerAddress) const {
    if (!claimedHost.empty() && std::find(hosts_.begin(), hosts_.end(), Lower(claimedHost)) != hosts_.end())
        return true;
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

}  // namespace net
