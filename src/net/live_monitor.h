// One live link's readings from its server, shared by every subscriber of
// the same link in a transport.
//
// A thread of its own holds the server's monitor stream open and keeps the
// newest reading. When the stream breaks it finds the server's name again and
// reconnects every kRetryMs until it is stopped, so a server that comes back
// is read again well within two seconds.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "net/channels.h"
#include "net/name_client.h"
#include "vire/transport.h"

namespace grpc {
class ClientContext;
}

namespace net {

class LiveMonitor {
public:
    static constexpr int kRetryMs = 150;

    // onArrival (may be empty) sees every reading as it arrives, on the monitor's thread.
    LiveMonitor(vire::SubscriptionRequest request, ChannelPool& channels, NameResolver& names,
                std::function<void(const vire::LinkData&)> onArrival = {});
    ~LiveMonitor();  // cancels the stream and waits for the thread
    LiveMonitor(const LiveMonitor&) = delete;
    LiveMonitor& operator=(const LiveMonitor&) = delete;

    struct Latest {
        bool hasReading = false;
        uint64_t sequence = 0;  // grows with every reading
        vire::LinkData reading;
        std::chrono::steady_clock::time_point arrived;
        vire::Status linkStatus = 0;  // why there is no reading: 2 link down, 45 no answer yet
    };
    Latest Get() const;

private:
    void Run();
    void Stream(const std::string& address);
    void WaitRetry();

    const vire::SubscriptionRequest request_;
    ChannelPool& channels_;
    NameResolver& names_;
    const std::function<void(const vire::LinkData&)> onArrival_;

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    grpc::ClientContext* context_ = nullptr;  // of the open stream, for cancelling
    Latest latest_;
    std::thread thread_;
};

}  // namespace net
