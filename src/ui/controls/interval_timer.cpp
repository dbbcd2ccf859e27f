#include "ui/controls/interval_timer.h"

#include <limits>

#include "ui/controls/checked_index.h"

namespace ui {

IntervalTimer::IntervalTimer(int32_t intervalMs, QObject* parent)
    : QObject(parent), self_(std::make_shared<IntervalTimer*>(this)) {
    SetInterval(intervalMs);
}

IntervalTimer::~IntervalTimer() {
    self_.reset();
    Stop();
}

void IntervalTimer::SetInterval(int32_t intervalMs) {
    CheckIndex("timer interval", intervalMs, 0, std::numeric_limits<int32_t>::max());
    if (intervalMs == intervalMs_) return;
    intervalMs_ = intervalMs;
    if (enabled_) Start();
}

void IntervalTimer::SetEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    if (enabled_)
        Start();
    else
        Stop();
}

void IntervalTimer::Start() {
    Stop();
    if (!enabled_ || intervalMs_ <= 0) return;
    vire::Scheduler* scheduler = vire::CurrentScheduler();
    if (scheduler == nullptr) return;
    const uint64_t generation = generation_;
    std::weak_ptr<IntervalTimer*> alive = self_;
    timerId_ = scheduler->StartTimer(intervalMs_, [alive, generation] {
        if (const auto timer = alive.lock()) (*timer)->Fire(generation);
    });
    scheduler_ = scheduler;
}

void IntervalTimer::Stop() {
    ++generation_;
    if (scheduler_ == nullptr) return;
    // A scheduler that is no longer installed may be gone; its ticks for this
    // timer are stale by now and do nothing.
    if (scheduler_ == vire::CurrentScheduler()) scheduler_->StopTimer(timerId_);
    scheduler_ = nullptr;
}

void IntervalTimer::Fire(uint64_t generation) {
    if (generation != generation_ || inTick_) return;
    inTick_ = true;
    std::weak_ptr<IntervalTimer*> alive = self_;
    try {
        emit Tick();
    } catch (...) {
        if (!alive.expired()) inTick_ = false;
        throw;
    }
    // A handler may have deleted the timer.
    if (!alive.expired()) inTick_ = false;
}

}  // namespace ui
