#include "net/name_client.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "sim/model.h"
#include "vire/completion_codes.h"

namespace net {

std::vector<std::string> ServerNamesOf(const std::string& fullDeviceName) {
    const sim::Address address = sim::ParseAddress(fullDeviceName);
    std::vector<std::string> names;
    if (address.context.empty()) {
        // A bare name: the server is the text before any "/".
        const std::string server = fullDeviceName.substr(0, fullDeviceName.find('/'));
        if (!server.empty()) names.push_back(server);
        return names;
    }
    if (address.server.empty()) return names;
    names.push_back(address.ServerAddress());
    names.push_back(address.server);
    return names;
}

std::map<std::string, std::string> ReadNamesFile(const std::string& path) {
    std::map<std::string, std::string> names;
    std::ifstream file(path);
    std::string line;
    for (int lines = 0; lines < 100000 && std::getline(file, line); ++lines) {
        const size_t hash = line.find('#');
        if (hash != std::string::npos) line.erase(hash);
        std::istringstream fields(line);
        std::string name, address, extra;
        if (!(fields >> name >> address) || (fields >> extra)) continue;
        names[name] = address;
    }
    return names;
}

NameResolver::NameResolver(const std::string& etcdEndpoints, const std::string& namesFile) {
    if (!namesFile.empty()) staticNames_ = ReadNamesFile(namesFile);
    EtcdSettings settings = EtcdSettingsFrom(etcdEndpoints);
    if (settings.endpoints.empty()) return;
    etcd_ = std::make_unique<EtcdClient>(std::move(settings));
    watcher_ = std::thread([this] { Follow(); });
}

NameResolver::~NameResolver() {
    if (!etcd_) return;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    etcd_->CancelWatch();
    watcher_.join();
}

void NameResolver::Take(const std::map<std::string, std::string>& keys) {
    const size_t prefix = std::string(kNamesPrefix).size();
    registered_.clear();
    for (const auto& [key, value] : keys) registered_[key.substr(prefix)] = value;
}

void NameResolver::Follow() {
    for (;;) {
        std::map<std::string, std::string> keys;
        int64_t revision = 0;
        const bool read = etcd_->GetPrefix(kNamesPrefix, keys, revision, std::chrono::milliseconds(2000)).ok();
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (read) Take(keys);
            following_ = read;
            tried_ = true;
        }
        wake_.notify_all();
        if (read) {
            const size_t prefix = std::string(kNamesPrefix).size();
            etcd_->Watch(kNamesPrefix, revision + 1, [&](const EtcdEvent& event) {
                std::lock_guard<std::mutex> lock(mutex_);
                if (event.removed) registered_.erase(event.key.substr(prefix));
                else registered_[event.key.substr(prefix)] = event.value;
            });
        }
        std::unique_lock<std::mutex> lock(mutex_);
        following_ = false;
        if (wake_.wait_for(lock, std::chrono::milliseconds(200), [this] { return stopping_; })) return;
    }
}

bool NameResolver::Registered(const std::vector<std::string>& names, std::string& address) const {
    for (const auto& name : names) {
        const auto it = registered_.find(name);
        if (it != registered_.end()) {
            address = it->second;
            return true;
        }
    }
    return false;
}

vire::Status NameResolver::Resolve(const std::string& fullDeviceName, int32_t timeoutMs, std::string& address) {
    const auto names = ServerNamesOf(fullDeviceName);
    {
        // The first answer of etcd is worth waiting for (within the call's time).
        std::unique_lock<std::mutex> lock(mutex_);
        if (etcd_) wake_.wait_for(lock, std::chrono::milliseconds(std::max(timeoutMs, 0)), [this] { return tried_; });
        if (Registered(names, address)) return vire::kOk;
    }
    for (size_t i = 0; i <= names.size(); ++i) {
        const auto it = staticNames_.find(i < names.size() ? names[i] : "*");
        if (it != staticNames_.end()) {
            address = it->second;
            return vire::kOk;
        }
    }
    return vire::kLinkError;
}

void NameResolver::Forget(const std::string& fullDeviceName) {
    // Names that etcd cannot tell about any more (it is away) are not trusted.
    std::lock_guard<std::mutex> lock(mutex_);
    if (following_) return;
    for (const auto& name : ServerNamesOf(fullDeviceName)) registered_.erase(name);
}

}  // namespace net
