#include "net/device_server.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "net/write_gate.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net {
namespace {

std::string ServerOfDevice(const std::string& deviceAddress) {
    return sim::ParseAddress(deviceAddress).ServerAddress();
}

// A threshold of NaN or infinity would disable the limit it stands for.
bool AllFinite(const vire::DataObject& in) {
    const int16_t format = vire::CanonicalFormat(in.format);
    const size_t width = format == vire::kFormatSingle ? 4 : format == vire::kFormatDouble ? 8 : 0;
    if (width == 0) return true;
    const size_t count = std::min(static_cast<size_t>(std::max(in.count, 0)), in.buffer.size() / width);
    for (size_t i = 0; i < count; ++i) {
        const double value =
            width == 4 ? vire::LoadFloat(in.buffer, 4 * i)
                       : std::bit_cast<double>(vire::LoadUint32(in.buffer, 8 * i) |
                                               static_cast<uint64_t>(vire::LoadUint32(in.buffer, 8 * i + 4)) << 32);
        if (!std::isfinite(value)) return false;
    }
    return true;
}

// Fields a list of names can fill: a long name runs on over several.
int64_t NameFieldsBound(const std::vector<std::string>& names) {
    int64_t characters = 0;
    for (const auto& name : names) characters += static_cast<int64_t>(name.size()) + 1;
    return characters;
}

// What each server can answer at most: its largest channel, threshold table
// or name list, or its property list.
std::map<std::string, int64_t> MostElementsByServer(const sim::Model& model) {
    std::map<std::string, int64_t> most;
    const auto raise = [&](const std::string& server, int64_t n) { most[server] = std::max(most[server], n); };
    std::map<std::string, int64_t> properties;
    for (const auto& c : model.channels) {
        raise(c.serverAddress, std::max<int64_t>(c.size, NameFieldsBound(c.names)));
        properties[c.serverAddress] += 1;
    }
    for (const auto& [key, table] : model.thresholds) {
        raise(ServerOfDevice(key.first), static_cast<int64_t>(table.size()));
        properties[ServerOfDevice(key.first)] += 1;
    }
    for (const auto& [key, names] : model.locations) raise(ServerOfDevice(key.first), NameFieldsBound(names));
    for (const auto& [server, n] : properties) raise(server, n);
    return most;
}

}  // namespace

std::vector<std::string> DeviceServerAddresses(const sim::Model& model) {
    std::set<std::string> history;
    for (const auto& c : model.channels)
        if (!c.hstServer.empty()) history.insert(c.hstServer);
    std::set<std::string> servers;
    for (const auto& c : model.channels) servers.insert(c.serverAddress);
    for (const auto& [key, table] : model.thresholds) servers.insert(ServerOfDevice(key.first));
    for (const auto& [key, names] : model.locations) servers.insert(ServerOfDevice(key.first));
    std::vector<std::string> result;
    for (const auto& s : servers)
        if (!s.empty() && history.count(s) == 0) result.push_back(s);
    return result;
}

std::vector<std::string> ShareOf(const std::vector<std::string>& servers, int index, int count) {
    std::vector<std::string> share;
    if (count < 1 || index < 0 || index >= count) return share;
    for (size_t i = 0; i < servers.size(); ++i)
        if (static_cast<int>(i % static_cast<size_t>(count)) == index) share.push_back(servers[i]);
    return share;
}

DeviceServer::DeviceServer(std::shared_ptr<sim::SimulatedAccelerator> accelerator, int shardIndex, int shardCount,
                           HostAllowList writeHosts)
    : accelerator_(std::move(accelerator)),
      names_(ShareOf(DeviceServerAddresses(accelerator_->model()), shardIndex, shardCount)),
      served_(names_.begin(), names_.end()), mostElements_(MostElementsByServer(accelerator_->model())),
      writeHosts_(std::move(writeHosts)) {}

int64_t DeviceServer::MostElements(const LinkRequest& request) const {
    const auto it = mostElements_.find(sim::ParseAddress(request.device()).ServerAddress());
    return it == mostElements_.end() ? 0 : it->second;
}

vire::Status DeviceServer::Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext& caller,
                                  int32_t timeoutMs) {
    if (served_.count(sim::ParseAddress(request.device()).ServerAddress()) == 0) return vire::kLinkError;
    if (request.access() < INT16_MIN || request.access() > INT16_MAX) return vire::kIllegalAccess;
    const auto access = static_cast<int16_t>(request.access());
    if (access != vire::kAccessWrite)
        return accelerator_->Call(request.device(), request.property(), buffers.outObject, buffers.inObject, access,
                                  timeoutMs);
    const WriteVerdict verdict = JudgeWrite(caller, writeHosts_);
    if (verdict.status != vire::kOk) return verdict.status;
    if (!AllFinite(buffers.inObject)) return vire::kInvalidInput;
    std::lock_guard<std::mutex> lock(writeMutex_);
    vire::SetUserName(verdict.user);
    return accelerator_->Call(request.device(), request.property(), buffers.outObject, buffers.inObject, access,
                              timeoutMs);
}

}  // namespace net
