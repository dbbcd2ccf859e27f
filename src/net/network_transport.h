// The middleware over the network: link calls and live links to servers
// found by name, behaving for callers exactly as the in-process transport.
//
//   - a call's time-out is its deadline: running out answers 45, a server
//     that cannot be reached or whose name is unknown 2, any other failure 60;
//   - never more is copied than the caller asked for and its buffer holds;
//   - a live link delivers exactly once per interval on the UI thread,
//     through the installed vire::Scheduler: the newest reading, or a failure
//     when none came; all subscribers of one link share one reading;
//   - a server that went away is looked up by name again and read again
//     within two seconds of its return.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include "net/channels.h"
#include "net/live_monitor.h"
#include "net/name_client.h"
#include "vire/scheduler.h"
#include "vire/transport.h"

namespace net {

struct NetworkSettings {
    std::string namesAddress;  // etcd endpoints ("host:port,..."), "" for none
    std::string namesFile;     // static names file, "" for none
    std::string clientHost;    // reported with every call; the host's name when empty
};

class NetworkTransport : public vire::Transport {
public:
    explicit NetworkTransport(NetworkSettings settings);
    ~NetworkTransport() override;

    vire::Status Call(const std::string& fullDeviceName, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override;
    vire::SubscriptionId Subscribe(const vire::SubscriptionRequest& request,
                                   std::function<void(const vire::LinkData&)> onData) override;
    void Unsubscribe(vire::SubscriptionId id) override;

    // Called on a reader thread for every reading that arrives from a
    // server, before any tick delivers it (for measurements). Set it before
    // the first Subscribe.
    void ObserveArrivals(std::function<void(const vire::LinkData&)> observer);

    // Live links and the server readings they share (for tests and tools).
    size_t ActiveSubscriptions() const;
    size_t SharedReadings() const;

private:
    using LinkKey = std::tuple<std::string, std::string, int16_t, int32_t, int32_t>;
    struct Subscriber {
        LinkKey key;
        vire::TimerId timer;
        vire::Scheduler* scheduler;
        std::shared_ptr<LiveMonitor> monitor;
        uint64_t lastSequence = 0;
    };
    vire::Status CallOnce(const std::string& address, const std::string& fullDeviceName,
                          const std::string& property, vire::DataObject& out, const vire::DataObject& in,
                          int16_t access, std::chrono::system_clock::time_point deadline, int32_t timeoutMs);
    void Tick(vire::SubscriptionId id, const std::function<void(const vire::LinkData&)>& onData);

    NetworkSettings settings_;
    ChannelPool channels_;
    NameResolver names_;
    mutable std::mutex mutex_;
    std::map<vire::SubscriptionId, Subscriber> subscribers_;
    std::map<LinkKey, std::weak_ptr<LiveMonitor>> monitors_;
    vire::SubscriptionId nextId_ = 1;
    std::function<void(const vire::LinkData&)> arrivals_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

// The host name of this machine, "" when the system does not say.
std::string LocalHostName();

}  // namespace net
