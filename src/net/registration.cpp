#include "net/registration.h"

#include <chrono>
#include <iostream>

namespace net {
namespace {

// Generous: a busy etcd answers late rather than not at all.
constexpr std::chrono::milliseconds kEtcdCallTimeout(2000);

}  // namespace

Registration::Registration(EtcdSettings settings, std::vector<std::string> names, std::string address,
                           int32_t leaseMs)
    : etcd_(std::move(settings)), names_(std::move(names)), address_(std::move(address)),
      leaseMs_(std::max(leaseMs, 300)) {
    RegisterAll();
    thread_ = std::thread([this] { Run(); });
}

Registration::~Registration() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    thread_.join();
    if (lease_ != 0) etcd_.Revoke(lease_, kEtcdCallTimeout);
}

bool Registration::RegisterAll() {
    const int64_t ttlSeconds = std::max<int64_t>(1, (leaseMs_ + 999) / 1000);
    grpc::Status status = etcd_.GrantLease(ttlSeconds, lease_, kEtcdCallTimeout);
    for (size_t i = 0; status.ok() && i < names_.size(); ++i)
        status = etcd_.Put(NameKey(names_[i]), address_, lease_, kEtcdCallTimeout);
    if (status.ok()) {
        lastProblem_.clear();
        return true;
    }
    lease_ = 0;
    const std::string problem = "names not registered in etcd: " + status.error_message();
    if (problem != lastProblem_) std::cerr << problem << "\n";
    lastProblem_ = problem;
    return false;
}

void Registration::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!wake_.wait_for(lock, std::chrono::milliseconds(leaseMs_ / 3), [this] { return stopping_; })) {
        lock.unlock();
        int64_t ttlLeft = 0;
        // A renewal that failed is tried again at the next heartbeat: the
        // lease may well be alive. One that ran out takes a new lease.
        if (lease_ == 0 || (etcd_.KeepAlive(lease_, ttlLeft, kEtcdCallTimeout).ok() && ttlLeft <= 0)) RegisterAll();
        lock.lock();
    }
}

}  // namespace net
