#include "net/etcd_client.h"

#include <cstdlib>

#include "catalogue/table.h"
#include "net/proto/etcd/rpc.grpc.pb.h"

namespace net {
namespace {

using std::chrono::milliseconds;

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// The end of the key range that holds every key starting with prefix.
std::string PrefixEnd(std::string prefix) {
    while (!prefix.empty()) {
        if (static_cast<unsigned char>(prefix.back()) < 0xff) {
            prefix.back() = static_cast<char>(prefix.back() + 1);
            return prefix;
        }
        prefix.pop_back();
    }
    return std::string(1, '\0');  // every key
}

bool TokenRejected(const grpc::Status& status) {
    return status.error_code() == grpc::StatusCode::UNAUTHENTICATED ||
           status.error_message().find("invalid auth token") != std::string::npos;
}

bool Unreachable(const grpc::Status& status) {
    return status.error_code() == grpc::StatusCode::UNAVAILABLE ||
           status.error_code() == grpc::StatusCode::DEADLINE_EXCEEDED;
}

// Tokens by endpoints and user, for the whole process: etcd checks a
// password slowly (by design), so every client of the same user shares one.
std::mutex tokensMutex;
std::map<std::string, std::string> tokens;
// One password check at a time per process: a hundred clients starting
// together would otherwise keep etcd busy checking the same password.
std::mutex authenticating;

std::string TokenKey(const EtcdSettings& settings) {
    std::string key = settings.user + "\n" + settings.password;
    for (const auto& endpoint : settings.endpoints) key += "\n" + endpoint;
    return key;
}

}  // namespace

EtcdSettings EtcdSettingsFrom(const std::string& endpoints) {
    EtcdSettings settings;
    size_t start = 0;
    while (start <= endpoints.size()) {
        const size_t end = std::min(endpoints.find(',', start), endpoints.size());
        std::string endpoint = catalogue::TrimAll(endpoints.substr(start, end - start));
        start = end + 1;
        for (const char* scheme : {"http://", "https://"})
            if (endpoint.rfind(scheme, 0) == 0) endpoint.erase(0, std::string(scheme).size());
        if (!endpoint.empty()) settings.endpoints.push_back(endpoint);
    }
    settings.user = Environment("LUMISCOPE_NAMES_USER");
    settings.password = Environment("LUMISCOPE_NAMES_PASSWORD");
    return settings;
}

std::string NameKey(const std::string& name) { return kNamesPrefix + name; }

EtcdClient::EtcdClient(EtcdSettings settings) : settings_(std::move(settings)) {
    std::lock_guard<std::mutex> lock(tokensMutex);
    token_ = tokens[TokenKey(settings_)];
}

std::shared_ptr<grpc::Channel> EtcdClient::Channel(size_t index) {
    auto& channel = channels_[index];
    if (!channel) {
        grpc::ChannelArguments args;
        args.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, 100);
        args.SetInt(GRPC_ARG_MIN_RECONNECT_BACKOFF_MS, 100);
        args.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, 500);
        args.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
        channel = grpc::CreateCustomChannel(settings_.endpoints[index], grpc::InsecureChannelCredentials(), args);
    }
    return channel;
}

grpc::Status EtcdClient::Authenticate(const std::shared_ptr<grpc::Channel>& channel, milliseconds timeout,
                                      const std::string& rejected) {
    std::lock_guard<std::mutex> one(authenticating);
    {
        // Another client of the same user may have fetched a token meanwhile.
        std::scoped_lock lock(mutex_, tokensMutex);
        const std::string& shared = tokens[TokenKey(settings_)];
        if (!shared.empty() && shared != rejected) {
            token_ = shared;
            return grpc::Status::OK;
        }
    }
    etcdserverpb::AuthenticateRequest request;
    request.set_name(settings_.user);
    request.set_password(settings_.password);
    etcdserverpb::AuthenticateResponse response;
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + timeout);
    const grpc::Status status = etcdserverpb::Auth::NewStub(channel)->Authenticate(&context, request, &response);
    if (status.ok()) {
        std::scoped_lock lock(mutex_, tokensMutex);
        token_ = response.token();
        tokens[TokenKey(settings_)] = token_;
    }
    return status;
}

grpc::Status EtcdClient::Run(
    milliseconds timeout,
    const std::function<grpc::Status(grpc::ClientContext&, const std::shared_ptr<grpc::Channel>&)>& call) {
    if (settings_.endpoints.empty()) return grpc::Status(grpc::StatusCode::UNAVAILABLE, "no etcd endpoint set");
    const auto deadline = std::chrono::system_clock::now() + timeout;
    grpc::Status status;
    size_t first = 0;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        first = current_;
    }
    for (size_t tried = 0; tried < settings_.endpoints.size(); ++tried) {
        const size_t index = (first + tried) % settings_.endpoints.size();
        std::shared_ptr<grpc::Channel> channel;
        std::string token;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            channel = Channel(index);
            token = token_;
        }
        const auto left = std::chrono::duration_cast<milliseconds>(deadline - std::chrono::system_clock::now());
        if (left.count() <= 0) break;
        if (token.empty() && !settings_.user.empty()) {
            status = Authenticate(channel, left, "");
            if (!status.ok() && Unreachable(status)) continue;
            if (!status.ok()) return status;  // wrong credentials: no other member thinks otherwise
        }
        for (int attempt = 0; attempt < 2; ++attempt) {
            grpc::ClientContext context;
            context.set_deadline(deadline);
            {
                std::lock_guard<std::mutex> lock(mutex_);
                token = token_;
            }
            if (!token.empty()) context.AddMetadata("token", token);
            status = call(context, channel);
            if (attempt == 0 && !settings_.user.empty() && TokenRejected(status)) {
                const auto rest = std::chrono::duration_cast<milliseconds>(deadline - std::chrono::system_clock::now());
                if (rest.count() > 0 && Authenticate(channel, rest, token).ok()) continue;
            }
            break;
        }
        if (!Unreachable(status) || std::chrono::system_clock::now() >= deadline) {
            std::lock_guard<std::mutex> lock(mutex_);
            current_ = index;
            return status;
        }
    }
    return status;
}

grpc::Status EtcdClient::GetPrefix(const std::string& prefix, std::map<std::string, std::string>& values,
                                   int64_t& revision, milliseconds timeout) {
    etcdserverpb::RangeRequest request;
    request.set_key(prefix);
    request.set_range_end(PrefixEnd(prefix));
    etcdserverpb::RangeResponse response;
    const grpc::Status status = Run(timeout, [&](grpc::ClientContext& context, const auto& channel) {
        return etcdserverpb::KV::NewStub(channel)->Range(&context, request, &response);
    });
    if (!status.ok()) return status;
    values.clear();
    for (const auto& kv : response.kvs()) values[kv.key()] = kv.value();
    revision = response.header().revision();
    return status;
}

grpc::Status EtcdClient::Put(const std::string& key, const std::string& value, int64_t lease, milliseconds timeout) {
    etcdserverpb::PutRequest request;
    request.set_key(key);
    request.set_value(value);
    request.set_lease(lease);
    etcdserverpb::PutResponse response;
    return Run(timeout, [&](grpc::ClientContext& context, const auto& channel) {
        return etcdserverpb::KV::NewStub(channel)->Put(&context, request, &response);
    });
}

grpc::Status EtcdClient::GrantLease(int64_t ttlSeconds, int64_t& lease, milliseconds timeout) {
    etcdserverpb::LeaseGrantRequest request;
    request.set_ttl(ttlSeconds);
    etcdserverpb::LeaseGrantResponse response;
    const grpc::Status status = Run(timeout, [&](grpc::ClientContext& context, const auto& channel) {
        return etcdserverpb::Lease::NewStub(channel)->LeaseGrant(&context, request, &response);
    });
    if (status.ok() && !response.error().empty()) return grpc::Status(grpc::StatusCode::UNKNOWN, response.error());
    lease = response.id();
    return status;
}

grpc::Status EtcdClient::KeepAlive(int64_t lease, int64_t& ttlLeft, milliseconds timeout) {
    ttlLeft = 0;
    return Run(timeout, [&](grpc::ClientContext& context, const auto& channel) {
        auto stream = etcdserverpb::Lease::NewStub(channel)->LeaseKeepAlive(&context);
        etcdserverpb::LeaseKeepAliveRequest request;
        request.set_id(lease);
        etcdserverpb::LeaseKeepAliveResponse response;
        if (stream->Write(request) && stream->Read(&response)) ttlLeft = response.ttl();
        stream->WritesDone();
        context.TryCancel();  // one renewal is all this stream was for
        const grpc::Status status = stream->Finish();
        return ttlLeft > 0 || status.error_code() != grpc::StatusCode::CANCELLED ? grpc::Status::OK : status;
    });
}

grpc::Status EtcdClient::Revoke(int64_t lease, milliseconds timeout) {
    etcdserverpb::LeaseRevokeRequest request;
    request.set_id(lease);
    etcdserverpb::LeaseRevokeResponse response;
    return Run(timeout, [&](grpc::ClientContext& context, const auto& channel) {
        return etcdserverpb::Lease::NewStub(channel)->LeaseRevoke(&context, request, &response);
    });
}

grpc::Status EtcdClient::Watch(const std::string& prefix, int64_t from,
                               const std::function<void(const EtcdEvent&)>& onEvent) {
    // A watch lasts as long as it can: the time-out only bounds fetching a token.
    return Run(std::chrono::hours(24 * 365), [&](grpc::ClientContext& context, const auto& channel) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (watchCancelled_) return grpc::Status::CANCELLED;
            watch_ = &context;
        }
        auto stream = etcdserverpb::Watch::NewStub(channel)->Watch(&context);
        etcdserverpb::WatchRequest request;
        auto* create = request.mutable_create_request();
        create->set_key(prefix);
        create->set_range_end(PrefixEnd(prefix));
        create->set_start_revision(from);
        etcdserverpb::WatchResponse response;
        if (stream->Write(request)) {
            while (stream->Read(&response)) {
                if (response.canceled()) break;  // compacted past `from`, or refused: start over
                for (const auto& event : response.events())
                    onEvent(EtcdEvent{event.type() == mvccpb::Event::DELETE, event.kv().key(), event.kv().value()});
            }
        }
        context.TryCancel();
        grpc::Status status = stream->Finish();
        std::lock_guard<std::mutex> lock(mutex_);
        watch_ = nullptr;
        if (status.ok()) status = grpc::Status(grpc::StatusCode::ABORTED, "the watch ended");
        return status;
    });
}

void EtcdClient::CancelWatch() {
    std::lock_guard<std::mutex> lock(mutex_);
    watchCancelled_ = true;
    if (watch_ != nullptr) watch_->TryCancel();
}

}  // namespace net
