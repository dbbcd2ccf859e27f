#include "vire/polling.h"

#include "vire/clock.h"

namespace vire {

PollingTransport::~PollingTransport() {
    *alive_ = false;
    std::lock_guard<std::mutex> lock(mutex_);
    for (auto& [id, link] : links_)
        if (link.scheduler == CurrentScheduler()) link.scheduler->StopTimer(link.timer);
}

SubscriptionId PollingTransport::Subscribe(const SubscriptionRequest& request,
                                           std::function<void(const LinkData&)> onData) {
    Scheduler* scheduler = CurrentScheduler();
    if (scheduler == nullptr) return -1;
    std::lock_guard<std::mutex> lock(mutex_);
    const SubscriptionId id = nextId_++;
    std::weak_ptr<bool> alive = alive_;
    const TimerId timer = scheduler->StartTimer(
        request.intervalMs, [this, alive, id, request, onData = std::move(onData)] {
            const auto stillAlive = alive.lock();
            if (!stillAlive || !*stillAlive) return;
            {
                std::lock_guard<std::mutex> check(mutex_);
                if (links_.find(id) == links_.end()) return;
            }
            LinkData data = Poll(request);
            data.stampMs = NowMilliseconds();
            onData(data);
        });
    links_[id] = Link{timer, scheduler};
    return id;
}

std::optional<LinkData> PollingTransport::ReadAtOnce(const SubscriptionRequest& request) {
    LinkData data = Poll(request);
    data.stampMs = NowMilliseconds();
    return data;
}

void PollingTransport::Unsubscribe(SubscriptionId id) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto it = links_.find(id);
    if (it == links_.end()) return;
    // The scheduler a link was started on may have been replaced since; only
    // the one still installed can be asked to stop a timer.
    if (it->second.scheduler == CurrentScheduler()) it->second.scheduler->StopTimer(it->second.timer);
    links_.erase(it);
}

size_t PollingTransport::ActiveSubscriptions() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return links_.size();
}

}  // namespace vire
