// Live (POLL) links for transports that answer a reading quickly: a timer of
// the installed Scheduler ticks at the link's interval on the UI thread, takes
// one reading and hands it to the subscriber.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "vire/scheduler.h"
#include "vire/transport.h"

namespace vire {

class PollingTransport : public Transport {
public:
    ~PollingTransport() override;

    // Needs an installed Scheduler; without one nothing can tick and the
    // answer is -1 (no link).
    SubscriptionId Subscribe(const SubscriptionRequest& request,
                             std::function<void(const LinkData&)> onData) override;
    void Unsubscribe(SubscriptionId id) override;
    // A poll taken now: it answers at once by the contract of Poll.
    std::optional<LinkData> ReadAtOnce(const SubscriptionRequest& request) override;
    size_t ActiveSubscriptions() const;

protected:
    // One reading of a live link. Runs on the UI thread, so it must answer
    // at once: a server that would be slow answers with its time-out code.
    virtual LinkData Poll(const SubscriptionRequest& request) = 0;

private:
    struct Link {
        TimerId timer;
        Scheduler* scheduler;
    };
    mutable std::mutex mutex_;
    std::map<SubscriptionId, Link> links_;
    SubscriptionId nextId_ = 1;
    // Shared with the ticks, so that a tick queued behind a transport that is
    // gone sees that and does nothing.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vire
