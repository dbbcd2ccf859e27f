#include "net/history_keys.h"

#include <algorithm>
#include <set>

#include "vire/history_servers.h"

namespace net {
namespace {

int32_t NumberedElement(const std::string& device) {
    if (device.size() < 2 || device.size() > 7 || device[0] != '#') return -1;
    int32_t n = 0;
    for (size_t i = 1; i < device.size(); ++i) {
        if (device[i] < '0' || device[i] > '9') return -1;
        n = n * 10 + (device[i] - '0');
    }
    return n;
}

// The element a device names on a channel, as the history servers read it:
// a machine quantity is its own device, else an element name or "#n".
int32_t ElementOf(const sim::Channel& channel, const std::string& device) {
    if (channel.size == 1) return 0;
    const auto it = std::find(channel.names.begin(), channel.names.end(), device);
    if (it != channel.names.end()) return static_cast<int32_t>(it - channel.names.begin());
    const int32_t n = NumberedElement(device);
    return n >= 0 && n < channel.size ? n : -1;
}

}  // namespace

bool IsArchiverName(const std::string& server) {
    const auto names = vire::ArchiverNames();
    return std::find(names.begin(), names.end(), server) != names.end();
}

bool FindHistoryTarget(const sim::Model& model, const sim::Address& address, const std::string& property,
                       HistoryTarget& target) {
    const bool archive = IsArchiverName(address.server);
    const std::string server = archive ? address.server : address.ServerAddress();
    for (const auto& c : model.channels) {
        const bool match = archive ? c.archiver == server && c.arcProperty == property
                                   : c.hstServer == server && c.hstProperty == property;
        if (!match) continue;
        const bool whole = address.device == "#0" || address.device == "#1";
        const int32_t element = whole ? -1 : ElementOf(c, address.device);
        if (!whole && element < 0) continue;
        target = HistoryTarget{server, property, &c, element, archive};
        return true;
    }
    return false;
}

std::vector<std::string> HistoryServerNames(const sim::Model& model) {
    std::set<std::string> names;
    for (const auto& c : model.channels) {
        if (!c.hstServer.empty()) names.insert(c.hstServer);
        if (!c.archiver.empty()) names.insert(c.archiver);
    }
    for (const auto& archiver : vire::ArchiverNames()) names.insert(archiver);
    return {names.begin(), names.end()};
}

}  // namespace net
