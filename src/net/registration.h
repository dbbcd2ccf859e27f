// A server's names in etcd: put under a lease that a heartbeat keeps alive,
// withdrawn at once on a clean stop (the lease is revoked). A server that
// dies without a word loses its names when the lease runs out. An etcd that
// is away is asked again at the next heartbeat; a lease that ran out
// meanwhile is replaced by a new one with the names put again.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "net/etcd_client.h"

namespace net {

class Registration {
public:
    // Heartbeats come every third of the lease. Registration needs etcd
    // credentials that may write the names (settings.user).
    Registration(EtcdSettings settings, std::vector<std::string> names, std::string address, int32_t leaseMs);
    ~Registration();  // withdraws the names
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    void Run();
    // A new lease and every name under it; false (and said once) when etcd refuses.
    bool RegisterAll();

    EtcdClient etcd_;
    const std::vector<std::string> names_;
    const std::string address_;
    const int32_t leaseMs_;
    int64_t lease_ = 0;
    std::string lastProblem_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace net
