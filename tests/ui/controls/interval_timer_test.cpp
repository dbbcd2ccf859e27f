// Window timers on the middleware scheduler, driven by the test clock.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "catalogue/runtime_error.h"
#include "ui/controls/interval_timer.h"
#include "vire/clock.h"
#include "vire/scheduler.h"

namespace ui {
namespace {

using ::testing::ElementsAre;

class TimerTest : public ::testing::Test {
protected:
    TimerTest() {
        vire::SetTestClock(1'700'000'000'000);
        vire::SetScheduler(&scheduler_);
    }
    ~TimerTest() override {
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    // Milliseconds since the test began.
    static int64_t Elapsed() { return vire::NowMilliseconds() - 1'700'000'000'000; }

    vire::ManualScheduler scheduler_;
};

TEST_F(TimerTest, TicksFollowEnabledAndInterval) {
    enum Op { Enable, Disable, Interval, Advance };
    struct Step { Op op; int32_t value; int ticksAfter; };
    struct Case { const char* name; std::vector<Step> steps; };
    const Case cases[] = {
        {"disabled at first", {{Interval, 500, 0}, {Advance, 5000, 0}}},
        {"a tick every interval",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Advance, 499, 0}, {Advance, 1, 1}, {Advance, 1000, 3}}},
        {"disable stops, enabling again waits a full interval",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Advance, 300, 0}, {Disable, 0, 0}, {Advance, 1000, 0},
          {Enable, 0, 0}, {Advance, 499, 0}, {Advance, 1, 1}}},
        {"enabling an enabled timer keeps its countdown",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Advance, 300, 0}, {Enable, 0, 0}, {Advance, 200, 1}}},
        {"a new interval restarts the countdown",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Advance, 400, 0}, {Interval, 300, 0},
          {Advance, 299, 0}, {Advance, 1, 1}, {Advance, 300, 2}}},
        {"the same interval again keeps the countdown",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Advance, 400, 0}, {Interval, 500, 0}, {Advance, 100, 1}}},
        {"interval 0 silences an enabled timer",
         {{Interval, 500, 0}, {Enable, 0, 0}, {Interval, 0, 0}, {Advance, 5000, 0}, {Interval, 100, 0},
          {Advance, 100, 1}}},
        {"an interval set while disabled counts from enabling",
         {{Interval, 200, 0}, {Advance, 1000, 0}, {Enable, 0, 0}, {Advance, 199, 0}, {Advance, 1, 1}}},
    };
    for (const Case& c : cases) {
        IntervalTimer timer;
        int ticks = 0;
        QObject::connect(&timer, &IntervalTimer::Tick, [&] { ++ticks; });
        for (size_t i = 0; i < c.steps.size(); ++i) {
            const Step& step = c.steps[i];
            switch (step.op) {
                case Enable: timer.SetEnabled(true); break;
                case Disable: timer.SetEnabled(false); break;
                case Interval: timer.SetInterval(step.value); break;
                case Advance: scheduler_.AdvanceBy(step.value); break;
            }
            EXPECT_EQ(ticks, step.ticksAfter) << c.name << ", step " << i;
        }
    }
    EXPECT_EQ(scheduler_.ActiveTimers(), 0u);  // every timer stopped when it went away
}

TEST_F(TimerTest, AHandlerMayStopOrRetimeItsOwnTimer) {
    IntervalTimer movie(500);
    std::vector<int64_t> at;
    QObject::connect(&movie, &IntervalTimer::Tick, [&] {
        at.push_back(Elapsed());
        if (at.size() == 2) movie.SetInterval(1000);
        if (at.size() == 4) movie.SetEnabled(false);  // the replay passed its last point
    });
    movie.SetEnabled(true);
    scheduler_.AdvanceBy(10'000);
    EXPECT_THAT(at, ElementsAre(500, 1000, 2000, 3000));
    EXPECT_FALSE(movie.Enabled());
    EXPECT_FALSE(movie.Running());
    EXPECT_EQ(scheduler_.ActiveTimers(), 0u);
}

TEST_F(TimerTest, ATickDueWhileItsHandlerIsStillRunningIsDropped) {
    IntervalTimer movie(500);
    std::vector<int64_t> at;
    int depth = 0, deepest = 0;
    QObject::connect(&movie, &IntervalTimer::Tick, [&] {
        deepest = std::max(deepest, ++depth);
        at.push_back(Elapsed());
        // The first tick's handler opens a box: time goes on under it.
        if (at.size() == 1) scheduler_.AdvanceBy(1200);
        --depth;
    });
    movie.SetEnabled(true);
    scheduler_.AdvanceBy(2500);
    EXPECT_EQ(deepest, 1);
    // Ticks at 1000 and 1500 fell due inside the first one; the timer goes on after.
    EXPECT_THAT(at, ElementsAre(500, 2000, 2500));
}

TEST_F(TimerTest, ANegativeIntervalIsAnErrorAndChangesNothing) {
    IntervalTimer timer(500);
    EXPECT_THROW(timer.SetInterval(-1), catalogue::RuntimeError);
    EXPECT_EQ(timer.Interval(), 500);
    EXPECT_THROW(IntervalTimer(-500), catalogue::RuntimeError);
}

TEST_F(TimerTest, WithoutASchedulerAnEnabledTimerIsSilentUntilStartedAgain) {
    vire::SetScheduler(nullptr);
    IntervalTimer timer(100);
    int ticks = 0;
    QObject::connect(&timer, &IntervalTimer::Tick, [&] { ++ticks; });
    timer.SetEnabled(true);
    EXPECT_TRUE(timer.Enabled());
    EXPECT_FALSE(timer.Running());
    vire::SetScheduler(&scheduler_);
    scheduler_.AdvanceBy(1000);
    EXPECT_EQ(ticks, 0);
    timer.SetEnabled(false);
    timer.SetEnabled(true);
    scheduler_.AdvanceBy(1000);
    EXPECT_EQ(ticks, 10);
}

TEST_F(TimerTest, TicksOfAReplacedSchedulerAreStale) {
    int ticks = 0;
    auto timer = std::make_unique<IntervalTimer>(100);
    QObject::connect(timer.get(), &IntervalTimer::Tick, [&] { ++ticks; });
    timer->SetEnabled(true);
    vire::ManualScheduler next;
    vire::SetScheduler(&next);
    // The old scheduler is not the installed one: it is never asked to stop.
    timer->SetEnabled(false);
    EXPECT_EQ(scheduler_.ActiveTimers(), 1u);
    scheduler_.AdvanceBy(1000);
    EXPECT_EQ(ticks, 0);
    timer->SetEnabled(true);
    next.AdvanceBy(100);
    EXPECT_EQ(ticks, 1);
    // Gone while the old scheduler still holds its tick: that tick does nothing.
    timer.reset();
    scheduler_.AdvanceBy(1000);
    EXPECT_EQ(ticks, 1);
    EXPECT_EQ(next.ActiveTimers(), 0u);
    vire::SetScheduler(&scheduler_);
}

}  // namespace
}  // namespace ui
