#include <gtest/gtest.h>

#include "vire/clock.h"
#include "vire/scheduler.h"

namespace {

class ManualSchedulerTest : public ::testing::Test {
protected:
    void SetUp() override { vire::SetTestClock(0); }
    void TearDown() override { vire::UseSystemClock(); }
};

TEST_F(ManualSchedulerTest, TimersFireInDueOrderAtTheirOwnTimesAndPostedTasksRunBetween) {
    vire::ManualScheduler scheduler;
    std::vector<std::string> events;
    scheduler.StartTimer(300, [&] {
        events.push_back("a@" + std::to_string(vire::NowMilliseconds()));
        scheduler.Post([&] { events.push_back("posted@" + std::to_string(vire::NowMilliseconds())); });
    });
    scheduler.StartTimer(200, [&] { events.push_back("b@" + std::to_string(vire::NowMilliseconds())); });
    scheduler.AdvanceBy(600);
    EXPECT_EQ(events, (std::vector<std::string>{"b@200", "a@300", "posted@300", "b@400", "a@600",
                                                "posted@600", "b@600"}));
    EXPECT_EQ(vire::NowMilliseconds(), 600);
}

TEST_F(ManualSchedulerTest, StoppingInsideATickAndZeroIntervalsAreSafe) {
    vire::ManualScheduler scheduler;
    int ticks = 0;
    vire::TimerId id = 0;
    id = scheduler.StartTimer(0, [&] {
        if (++ticks == 3) scheduler.StopTimer(id);
    });
    scheduler.AdvanceBy(10);
    EXPECT_EQ(ticks, 3);
    scheduler.StopTimer(id);
    scheduler.StopTimer(999);
    EXPECT_EQ(scheduler.ActiveTimers(), 0u);
}

}  // namespace
