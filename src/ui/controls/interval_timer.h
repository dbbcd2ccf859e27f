// A window timer (MovieTimer): an interval, an enabled flag and a Tick signal.
//
// Ticks come from the middleware's installed scheduler (vire::Scheduler), so
// a program ticks on the Qt event loop (ui::QtScheduler) and a test moves time
// with vire::ManualScheduler::AdvanceBy. The scheduler is looked up whenever
// the timer starts: one enabled while no scheduler is installed stays silent
// until it is started again.
#pragma once

#include <QObject>
#include <cstdint>
#include <memory>

#include "vire/scheduler.h"

namespace ui {

class IntervalTimer : public QObject {
    Q_OBJECT

public:
    // Disabled at first, as a timer the window starts on demand.
    explicit IntervalTimer(int32_t intervalMs = 0, QObject* parent = nullptr);
    ~IntervalTimer() override;

    int32_t Interval() const { return intervalMs_; }
    // Milliseconds, 0 = no ticks; negative values throw
    // catalogue::RuntimeError. A new value restarts the countdown.
    void SetInterval(int32_t intervalMs);

    bool Enabled() const { return enabled_; }
    // Enabling starts the countdown at a full interval; enabling an enabled
    // timer changes nothing. Safe inside its own tick.
    void SetEnabled(bool enabled);

    // Whether ticks will come: enabled, interval above 0, and started on a
    // scheduler.
    bool Running() const { return scheduler_ != nullptr; }

signals:
    // One per interval. A tick that falls due while a handler of the previous
    // one is still running (it yielded, or its message box is open) is
    // dropped, so that a slow handler never stacks up behind itself.
    void Tick();

private:
    void Start();
    void Stop();
    void Fire(uint64_t generation);

    int32_t intervalMs_ = 0;
    bool enabled_ = false;
    bool inTick_ = false;
    vire::Scheduler* scheduler_ = nullptr;
    vire::TimerId timerId_ = 0;
    // Every start and stop makes the ticks of earlier starts stale; ticks hold
    // the timer weakly, so one queued behind a deleted timer does nothing.
    uint64_t generation_ = 0;
    std::shared_ptr<IntervalTimer*> self_;
};

}  // namespace ui
