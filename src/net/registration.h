// A server's names at the name service: registered with a lease and renewed
// by heartbeats, withdrawn when the server stops. A name service that is
// away is simply asked again at the next heartbeat.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace net {

class Registration {
public:
    // Heartbeats come every leaseMs / 3.
    Registration(std::string namesAddress, std::vector<std::string> names, std::string address, int32_t leaseMs);
    ~Registration();  // withdraws the names
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

private:
    void Run();
    void RegisterAll();

    const std::string namesAddress_;
    const std::vector<std::string> names_;
    const std::string address_;
    const int32_t leaseMs_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace net
