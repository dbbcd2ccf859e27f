// Window timers on the middleware scheduler, driven by the test clock.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "../plot/plot_test_support.h"
#include "catalogue/runtime_error.h"
#include "ui/controls/interval_timer.h"

namespace ui {
namespace {

using ::testing::ElementsAre;

// The test clock and a manual scheduler, as the plot tests use them.
class TimerTest : public ::testing::Test {
protected:
    // Milliseconds since the test began.
    static int64_t Elapsed() { return vire::NowMilliseconds() - plot_test::kStartMs; }

    plot_test::LiveFixture live_;
    vire::ManualScheduler& scheduler_ = live_.scheduler;
};

TEST_F(TimerTest, TicksFollowEnabledAndInterval) {
    // Steps: E enable, D disable, I<ms> interval, X<ms> a refused interval, S0/S1 scheduler out/in, R<enabled><running> 0/1 each,
    // A<ms>=<ticks so far> advance the clock.
    const std::pair<const char*, std::string> cases[] = {
        {"disabled at first", "I500 A5000=0"},
        {"a tick every interval", "I500 E A499=0 A1=1 A1000=3"},
        {"disable stops, enabling again waits a full interval", "I500 E A300=0 D A1000=0 E A499=0 A1=1"},
        {"enabling an enabled timer keeps its countdown", "I500 E A300=0 E A200=1"},
        {"a new interval restarts the countdown", "I500 E A400=0 I300 A299=0 A1=1 A300=2"},
        {"the same interval again keeps the countdown", "I500 E A400=0 I500 A100=1"},
        {"interval 0 silences an enabled timer", "I500 E I0 A5000=0 I100 A100=1"},
        {"an interval set while disabled counts from enabling", "I200 A1000=0 E A199=0 A1=1"},
        {"a negative interval is refused and changes nothing", "I500 E A300=0 X-1 A200=1 D E A500=2"},
        {"enabled without a scheduler: silent until enabled again", "I100 S0 E R10 S1 A1000=0 D E R11 A1000=10"},
    };
    for (const auto& [name, steps] : cases) {
        IntervalTimer timer;
        int ticks = 0;
        QObject::connect(&timer, &IntervalTimer::Tick, [&] { ++ticks; });
        std::istringstream in(steps);
        for (std::string step; in >> step;) {
            const int32_t value = step.size() > 1 ? std::stoi(step.substr(1)) : 0;
            if (step[0] == 'E' || step[0] == 'D') timer.SetEnabled(step[0] == 'E');
            if (step[0] == 'I') timer.SetInterval(value);
            if (step[0] == 'X') {
                EXPECT_THROW(timer.SetInterval(value), catalogue::RuntimeError) << name;
            }
            if (step[0] == 'S') vire::SetScheduler(value ? &scheduler_ : nullptr);
            if (step[0] == 'R') {
                EXPECT_EQ(10 * timer.Enabled() + timer.Running(), value) << name << ", " << step;
            }
            if (step[0] != 'A') continue;
            scheduler_.AdvanceBy(value);
            EXPECT_EQ(ticks, std::stoi(step.substr(step.find('=') + 1))) << name << ", " << step;
        }
    }
    EXPECT_EQ(scheduler_.ActiveTimers(), 0u);  // every timer stopped when it went away
    EXPECT_THROW(IntervalTimer(-500), catalogue::RuntimeError);
}

TEST_F(TimerTest, AHandlerMayStopOrRetimeItsOwnTimerAndTicksDueWhileItRunsAreDropped) {
    IntervalTimer movie(500);
    std::vector<int64_t> at;
    int depth = 0, deepest = 0;
    QObject::connect(&movie, &IntervalTimer::Tick, [&] {
        deepest = std::max(deepest, ++depth);
        at.push_back(Elapsed());
        // The first tick's handler opens a box: time goes on under it, the
        // ticks at 1000 and 1500 fall due inside it.
        if (at.size() == 1) scheduler_.AdvanceBy(1200);
        if (at.size() == 2) movie.SetInterval(1000);
        if (at.size() == 4) movie.SetEnabled(false);  // the replay passed its last point
        --depth;
    });
    movie.SetEnabled(true);
    scheduler_.AdvanceBy(10'000);
    EXPECT_EQ(deepest, 1);
    EXPECT_THAT(at, ElementsAre(500, 2000, 3000, 4000));
    EXPECT_FALSE(movie.Enabled());
    EXPECT_FALSE(movie.Running());
    EXPECT_EQ(scheduler_.ActiveTimers(), 0u);
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
