// The UI thread's event loop as the middleware layer sees it.
//
// Live (POLL) links deliver their data through a Scheduler: timers tick on the
// UI thread, and work finished elsewhere (a network transport's reader thread)
// is posted back to it. The Qt layer installs a scheduler on the Qt event loop;
// tests install a ManualScheduler and drive it with the test clock.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace vire {

using TimerId = int64_t;

class Scheduler {
public:
    virtual ~Scheduler() = default;
    // A periodic timer on the UI thread; the first tick comes one interval from now.
    virtual TimerId StartTimer(int32_t intervalMs, std::function<void()> onTick) = 0;
    // Stops a timer; unknown or already stopped ids are ignored. Safe inside a tick.
    virtual void StopTimer(TimerId id) = 0;
    // Runs a task on the UI thread soon. May be called from any thread.
    virtual void Post(std::function<void()> task) = 0;
};

// The scheduler live links use. Null until one is installed; the caller keeps
// ownership and must uninstall (nullptr) before destroying it.
void SetScheduler(Scheduler* scheduler);
Scheduler* CurrentScheduler();

// A scheduler for tests: nothing happens until the test moves time.
// AdvanceBy moves the test clock (SetTestClock is called on construction if the
// clock is not frozen yet) step by step to each due timer, fires it, runs
// posted tasks, and ends at now + ms. Timers fire in due-time order, ties in
// creation order.
class ManualScheduler : public Scheduler {
public:
    ManualScheduler();
    TimerId StartTimer(int32_t intervalMs, std::function<void()> onTick) override;
    void StopTimer(TimerId id) override;
    void Post(std::function<void()> task) override;

    void AdvanceBy(int64_t milliseconds);
    // Runs the posted tasks (and tasks they post) without moving time.
    void RunPending();
    size_t ActiveTimers() const { return timers_.size(); }

private:
    struct Timer {
        int32_t intervalMs;
        int64_t dueMs;
        std::function<void()> onTick;
    };
    std::map<TimerId, Timer> timers_;
    TimerId nextId_ = 1;
    std::mutex postedMutex_;
    std::vector<std::function<void()>> posted_;
};

}  // namespace vire
