#include "net/registration.h"

#include <chrono>

#include "net/name_client.h"
#include "vire/link.h"

namespace net {

Registration::Registration(std::string namesAddress, std::vector<std::string> names, std::string address,
                           int32_t leaseMs)
    : namesAddress_(std::move(namesAddress)), names_(std::move(names)), address_(std::move(address)),
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
    std::string answer;
    for (const auto& name : names_)
        CallNameService(namesAddress_, "UNREGISTER", vire::kAccessWrite, name + " " + address_, kNamesCallTimeoutMs,
                        answer);
}

void Registration::RegisterAll() {
    std::string answer;
    for (const auto& name : names_) {
        const auto status = CallNameService(namesAddress_, "REGISTER", vire::kAccessWrite,
                                            name + " " + address_ + " " + std::to_string(leaseMs_),
                                            kNamesCallTimeoutMs, answer);
        if (status != 0) return;  // the service is away: try all again at the next heartbeat
    }
}

void Registration::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!wake_.wait_for(lock, std::chrono::milliseconds(leaseMs_ / 3), [this] { return stopping_; })) {
        lock.unlock();
        RegisterAll();
        lock.lock();
    }
}

}  // namespace net
