// Live links on the test scheduler: timers in due order, one reading per
// interval stamped with the clock, nothing after a link or its transport is gone.
#include <gtest/gtest.h>

#include "fake_live_transport.h"
#include "vire/clock.h"
#include "vire/scheduler.h"

namespace {

class PollingTest : public ::testing::Test {
protected:
    void SetUp() override {
        vire::SetTestClock(1'000'000);
        vire::SetScheduler(&scheduler);
    }
    void TearDown() override {
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    vire::ManualScheduler scheduler;
};

TEST_F(PollingTest, TimersFireInDueOrderAtTheirOwnTimesAndPostedTasksRunBetween) {
    std::vector<std::string> events;
    auto at = [&](const char* what) { events.push_back(what + std::to_string(vire::NowMilliseconds() - 1'000'000)); };
    scheduler.StartTimer(300, [&] {
        at("a@");
        scheduler.Post([&] { at("posted@"); });
    });
    scheduler.StartTimer(200, [&] { at("b@"); });
    int ticks = 0;
    vire::TimerId id = 0;
    id = scheduler.StartTimer(0, [&] {
        if (++ticks == 3) scheduler.StopTimer(id);  // a zero interval, stopped inside its own tick
    });
    scheduler.AdvanceBy(600);
    EXPECT_EQ(events, (std::vector<std::string>{"b@200", "a@300", "posted@300", "b@400", "a@600", "posted@600", "b@600"}));
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(scheduler.ActiveTimers(), 2u);
}

TEST_F(PollingTest, ALinkDeliversEachIntervalUntilUnsubscribedByItselfOrOthersOrUntilTheTransportIsGone) {
    auto transport = std::make_unique<test_support::FakeLiveTransport>();
    transport->readings["/A/B/C BAD"].status = 45;
    std::vector<std::string> seen;
    const auto good = transport->Subscribe({"/A/B/C", "GOOD", 517, 8, 1000}, [&](const vire::LinkData& d) {
        seen.push_back("good " + std::to_string(d.status) + " @" + std::to_string(d.stampMs - 1'000'000));
    });
    transport->Subscribe({"/A/B/C", "BAD", 517, 1, 500},
                         [&](const vire::LinkData& d) { seen.push_back("bad " + std::to_string(d.status)); });
    vire::SubscriptionId once = 0;
    once = transport->Subscribe({"/A/B/C", "P", 517, 1, 100}, [&](const vire::LinkData&) {
        seen.push_back("once");
        transport->Unsubscribe(once);
    });
    scheduler.AdvanceBy(1000);
    // Due together, the link made first comes first.
    EXPECT_EQ(seen, (std::vector<std::string>{"once", "bad 45", "good 0 @1000", "bad 45"}));
    transport->Unsubscribe(good);
    transport->Unsubscribe(good);   // twice: ignored
    transport->Unsubscribe(12345);  // unknown: ignored
    seen.clear();
    scheduler.AdvanceBy(1000);
    EXPECT_EQ(seen, (std::vector<std::string>{"bad 45", "bad 45"}));
    EXPECT_EQ(transport->ActiveSubscriptions(), 1u);
    transport.reset();
    scheduler.AdvanceBy(1000);
    EXPECT_EQ(seen.size(), 2u) << "nothing ticks after the transport is gone";
    vire::SetScheduler(nullptr);
    test_support::FakeLiveTransport unscheduled;
    EXPECT_EQ(unscheduled.Subscribe({"/A/B/C", "P", 517, 1, 100}, [](const vire::LinkData&) {}), -1);
    EXPECT_EQ(unscheduled.ActiveSubscriptions(), 0u);
}

}  // namespace
