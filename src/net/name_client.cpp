#include "net/name_client.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "net/proto/link.grpc.pb.h"
#include "net/status_mapping.h"
#include "net/wire_codec.h"
#include "sim/model.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace net {
namespace {

// A resolved address is trusted this long; a failed call forgets it sooner.
constexpr auto kCacheLifetime = std::chrono::seconds(5);
constexpr int32_t kMaxAddressLength = 512;

}  // namespace

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

vire::Status CallNameService(const std::string& namesAddress, const std::string& property, int16_t access,
                             const std::string& input, int32_t timeoutMs, std::string& answer) {
    answer.clear();
    static ChannelPool pool;
    auto stub = lumiscope::link::v1::Link::NewStub(pool.Get(namesAddress));
    std::vector<std::byte> inBytes(input.size());
    std::transform(input.begin(), input.end(), inBytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    std::vector<std::byte> outBytes(kMaxAddressLength);
    vire::DataObject in{static_cast<int32_t>(inBytes.size()), vire::kFormatText, "", inBytes};
    vire::DataObject out{access == vire::kAccessRead ? kMaxAddressLength : 0, vire::kFormatText, "", outBytes};
    const LinkRequest request =
        EncodeRequest(kNamesDevice, property, out, in, access, timeoutMs, CallerIdentity{vire::UserName(), ""});
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + std::chrono::milliseconds(timeoutMs));
    LinkReply reply;
    const grpc::Status status = stub->Call(&context, request, &reply);
    if (!status.ok()) {
        if (status.error_code() == grpc::StatusCode::UNAVAILABLE) pool.Drop(namesAddress);
        return StatusOfFailedCall(status);
    }
    const vire::Status code = DecodeReply(reply, out, out.count);
    if (code == vire::kOk)
        answer.assign(reinterpret_cast<const char*>(outBytes.data()), static_cast<size_t>(out.count));
    return code;
}

NameResolver::NameResolver(std::string namesAddress, std::string namesFile)
    : namesAddress_(std::move(namesAddress)) {
    if (!namesFile.empty()) staticNames_ = ReadNamesFile(namesFile);
}

vire::Status NameResolver::Resolve(const std::string& fullDeviceName, int32_t timeoutMs, std::string& address) {
    const auto names = ServerNamesOf(fullDeviceName);
    const auto now = std::chrono::steady_clock::now();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        for (const auto& name : names) {
            const auto it = cache_.find(name);
            if (it != cache_.end() && it->second.until > now) {
                address = it->second.address;
                return vire::kOk;
            }
        }
    }
    std::string found;
    std::string foundName;
    if (!namesAddress_.empty()) {
        for (const auto& name : names) {
            std::string answer;
            const vire::Status status = CallNameService(namesAddress_, "RESOLVE", vire::kAccessRead, name,
                                                        std::min(timeoutMs, kNamesCallTimeoutMs), answer);
            if (status == vire::kOk && !answer.empty()) {
                found = answer;
                foundName = name;
                break;
            }
            if (status != vire::kUnknownDevice) break;  // the service is not answering: ask the file
        }
    }
    for (size_t i = 0; found.empty() && i <= names.size(); ++i) {
        const std::string name = i < names.size() ? names[i] : "*";
        const auto it = staticNames_.find(name);
        if (it != staticNames_.end()) {
            found = it->second;
            foundName = names.empty() ? name : names.front();
        }
    }
    if (found.empty()) return vire::kLinkError;
    std::lock_guard<std::mutex> lock(mutex_);
    cache_[foundName] = Cached{found, now + kCacheLifetime};
    address = found;
    return vire::kOk;
}

void NameResolver::Forget(const std::string& fullDeviceName) {
    std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& name : ServerNamesOf(fullDeviceName)) cache_.erase(name);
}

}  // namespace net
