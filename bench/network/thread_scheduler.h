// A scheduler for the benchmarks: one thread plays the UI thread, running
// timers at their intervals on the real clock and posted work in between.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "vire/scheduler.h"

namespace network_bench {

class ThreadScheduler : public vire::Scheduler {
public:
    ThreadScheduler() : thread_([this] { Run(); }) {}
    ~ThreadScheduler() override {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        thread_.join();
    }
    vire::TimerId StartTimer(int32_t intervalMs, std::function<void()> onTick) override {
        std::lock_guard<std::mutex> lock(mutex_);
        const vire::TimerId id = nextId_++;
        const auto interval = std::chrono::milliseconds(std::max(intervalMs, 1));
        timers_[id] = Timer{interval, Clock::now() + interval, std::move(onTick)};
        wake_.notify_all();
        return id;
    }
    void StopTimer(vire::TimerId id) override {
        std::lock_guard<std::mutex> lock(mutex_);
        timers_.erase(id);
    }
    void Post(std::function<void()> task) override {
        std::lock_guard<std::mutex> lock(mutex_);
        posted_.push_back(std::move(task));
        wake_.notify_all();
    }

private:
    using Clock = std::chrono::steady_clock;
    struct Timer {
        std::chrono::milliseconds interval;
        Clock::time_point due;
        std::function<void()> onTick;
    };
    void Run() {
        std::unique_lock<std::mutex> lock(mutex_);
        while (!stopping_) {
            if (!posted_.empty()) {
                auto batch = std::move(posted_);
                posted_.clear();
                lock.unlock();
                for (auto& task : batch) task();
                lock.lock();
                continue;
            }
            auto next = timers_.end();
            for (auto it = timers_.begin(); it != timers_.end(); ++it)
                if (next == timers_.end() || it->second.due < next->second.due) next = it;
            if (next == timers_.end()) {
                wake_.wait(lock);
                continue;
            }
            if (next->second.due > Clock::now()) {
                wake_.wait_until(lock, next->second.due);
                continue;
            }
            next->second.due += next->second.interval;
            auto tick = next->second.onTick;
            lock.unlock();
            tick();
            lock.lock();
        }
    }
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::map<vire::TimerId, Timer> timers_;
    std::vector<std::function<void()>> posted_;
    vire::TimerId nextId_ = 1;
    std::thread thread_;
};

}  // namespace network_bench
