// The few calls of etcd's v3 API that names need, over its own gRPC schema:
// read a key or a prefix, put and delete, leases, watches, and the
// credentials that registration needs (a user and password, traded for a
// token that goes with every call and is fetched again when it expires).
//
// Several endpoints (the members of a cluster) are tried in turn: a call
// goes to the one that answered last and moves on when that one cannot be
// reached.
#pragma once

#include <grpcpp/grpcpp.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace net {

struct EtcdSettings {
    std::vector<std::string> endpoints;  // "host:port"
    std::string user;                    // "" when etcd runs without authentication
    std::string password;
};

// "host:port,http://host2:port" -> the endpoints, schemes and blanks dropped;
// user and password from LUMISCOPE_NAMES_USER and LUMISCOPE_NAMES_PASSWORD.
EtcdSettings EtcdSettingsFrom(const std::string& endpoints);

// Where a server name is kept, and the prefix of all of them.
inline constexpr const char* kNamesPrefix = "/lumiscope/names/";
std::string NameKey(const std::string& name);

struct EtcdEvent {
    bool removed = false;  // a delete (or an expired lease); else a put
    std::string key, value;
};

class EtcdClient {
public:
    explicit EtcdClient(EtcdSettings settings);

    // Every key under prefix with its value, and the store's revision then.
    grpc::Status GetPrefix(const std::string& prefix, std::map<std::string, std::string>& values,
                           int64_t& revision, std::chrono::milliseconds timeout);
    grpc::Status Put(const std::string& key, const std::string& value, int64_t lease,
                     std::chrono::milliseconds timeout);
    // A lease of ttlSeconds (etcd may make it longer); its id.
    grpc::Status GrantLease(int64_t ttlSeconds, int64_t& lease, std::chrono::milliseconds timeout);
    // Renews a lease; ttlLeft is 0 when the lease has run out already.
    grpc::Status KeepAlive(int64_t lease, int64_t& ttlLeft, std::chrono::milliseconds timeout);
    grpc::Status Revoke(int64_t lease, std::chrono::milliseconds timeout);

    // Follows the keys under prefix from revision `from` on, calling onEvent
    // for each change, until the stream breaks or Cancel is called.
    grpc::Status Watch(const std::string& prefix, int64_t from, const std::function<void(const EtcdEvent&)>& onEvent);
    void CancelWatch();

private:
    // Runs call against the endpoints in turn, with a fresh context carrying
    // the token; fetches the token again once when etcd says it is not valid.
    grpc::Status Run(std::chrono::milliseconds timeout,
                     const std::function<grpc::Status(grpc::ClientContext&, const std::shared_ptr<grpc::Channel>&)>& call);
    // A token for the user: the one another client got meanwhile, unless
    // that is the one etcd just rejected, else a new one.
    grpc::Status Authenticate(const std::shared_ptr<grpc::Channel>& channel, std::chrono::milliseconds timeout,
                              const std::string& rejected);
    std::shared_ptr<grpc::Channel> Channel(size_t index);

    const EtcdSettings settings_;
    std::mutex mutex_;
    size_t current_ = 0;
    std::string token_;
    std::map<size_t, std::shared_ptr<grpc::Channel>> channels_;
    grpc::ClientContext* watch_ = nullptr;
    bool watchCancelled_ = false;
};

}  // namespace net
