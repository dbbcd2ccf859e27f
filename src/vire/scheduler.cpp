#include "vire/scheduler.h"

#include <algorithm>

#include "vire/clock.h"

namespace vire {
namespace {
Scheduler* installed = nullptr;
}

void SetScheduler(Scheduler* scheduler) { installed = scheduler; }
Scheduler* CurrentScheduler() { return installed; }

ManualScheduler::ManualScheduler() {
    if (!TestClockActive()) SetTestClock(NowMilliseconds());
}

TimerId ManualScheduler::StartTimer(int32_t intervalMs, std::function<void()> onTick) {
    const TimerId id = nextId_++;
    // A zero interval would fire forever within one step; treat it as 1 ms.
    const int32_t interval = std::max<int32_t>(intervalMs, 1);
    timers_[id] = Timer{interval, NowMilliseconds() + interval, std::move(onTick)};
    return id;
}

void ManualScheduler::StopTimer(TimerId id) { timers_.erase(id); }

void ManualScheduler::Post(std::function<void()> task) {
    std::lock_guard<std::mutex> lock(postedMutex_);
    posted_.push_back(std::move(task));
}

void ManualScheduler::RunPending() {
    for (;;) {
        std::vector<std::function<void()>> batch;
        {
            std::lock_guard<std::mutex> lock(postedMutex_);
            batch.swap(posted_);
        }
        if (batch.empty()) return;
        for (auto& task : batch) task();
    }
}

void ManualScheduler::AdvanceBy(int64_t milliseconds) {
    const int64_t end = NowMilliseconds() + milliseconds;
    RunPending();
    for (;;) {
        // The earliest due timer; ties go to the lower id (created first).
        auto next = timers_.end();
        for (auto it = timers_.begin(); it != timers_.end(); ++it)
            if (next == timers_.end() || it->second.dueMs < next->second.dueMs) next = it;
        if (next == timers_.end() || next->second.dueMs > end) break;
        AdvanceTestClock(next->second.dueMs - NowMilliseconds());
        next->second.dueMs += next->second.intervalMs;
        // Copy: the tick may stop (erase) its own timer.
        auto tick = next->second.onTick;
        tick();
        RunPending();
    }
    AdvanceTestClock(end - NowMilliseconds());
    RunPending();
}

}  // namespace vire
