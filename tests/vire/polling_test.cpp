#include <gtest/gtest.h>

#include "fake_transport.h"
#include "vire/clock.h"
#include "vire/scheduler.h"

namespace {

using vire_test::FakeTransport;

class PollingTest : public ::testing::Test {
protected:
    void SetUp() override {
        vire::SetTestClock(1'000'000);
        scheduler = std::make_unique<vire::ManualScheduler>();
        vire::SetScheduler(scheduler.get());
    }
    void TearDown() override {
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    std::unique_ptr<vire::ManualScheduler> scheduler;
};

TEST_F(PollingTest, ALinkDeliversOncePerIntervalWithTheClockTimeAndStopsWhenUnsubscribed) {
    FakeTransport transport;
    transport.poll = [](const vire::SubscriptionRequest& r) {
        vire::LinkData d;
        d.count = r.count;
        return d;
    };
    std::vector<int64_t> stamps;
    const auto id = transport.Subscribe({"/A/B/C", "P", 517, 8, 1000},
                                        [&](const vire::LinkData& d) { stamps.push_back(d.stampMs); });
    ASSERT_GT(id, 0);
    scheduler->AdvanceBy(999);
    EXPECT_TRUE(stamps.empty());
    scheduler->AdvanceBy(2001);
    EXPECT_EQ(stamps, (std::vector<int64_t>{1'001'000, 1'002'000, 1'003'000}));
    EXPECT_EQ(transport.polls.front(), "/A/B/C P");
    transport.Unsubscribe(id);
    transport.Unsubscribe(id);      // twice: ignored
    transport.Unsubscribe(12345);   // unknown: ignored
    scheduler->AdvanceBy(5000);
    EXPECT_EQ(stamps.size(), 3u);
    EXPECT_EQ(transport.ActiveSubscriptions(), 0u);
    EXPECT_EQ(scheduler->ActiveTimers(), 0u);
}

TEST_F(PollingTest, FailedReadingsAreDeliveredTooAndLinksKeepTheirOwnIntervals) {
    FakeTransport transport;
    transport.poll = [](const vire::SubscriptionRequest& r) {
        vire::LinkData d;
        d.status = r.property == "BAD" ? 45 : 0;
        return d;
    };
    std::vector<std::string> seen;
    transport.Subscribe({"/A/B/C", "BAD", 517, 1, 500},
                        [&](const vire::LinkData& d) { seen.push_back("bad " + std::to_string(d.status)); });
    transport.Subscribe({"/A/B/C", "GOOD", 517, 1, 1000},
                        [&](const vire::LinkData& d) { seen.push_back("good " + std::to_string(d.status)); });
    scheduler->AdvanceBy(1000);
    // At 1000 ms both are due; the earlier link comes first.
    EXPECT_EQ(seen, (std::vector<std::string>{"bad 45", "bad 45", "good 0"}));
}

TEST_F(PollingTest, ALinkMayStopItselfAndNothingTicksAfterTheTransportIsGone) {
    auto transport = std::make_unique<FakeTransport>();
    int ticks = 0;
    vire::SubscriptionId id = 0;
    id = transport->Subscribe({"/A/B/C", "P", 517, 1, 100}, [&](const vire::LinkData&) {
        ++ticks;
        transport->Unsubscribe(id);
    });
    scheduler->AdvanceBy(1000);
    EXPECT_EQ(ticks, 1);

    int later = 0;
    transport->Subscribe({"/A/B/C", "P", 517, 1, 100}, [&](const vire::LinkData&) { ++later; });
    transport.reset();
    scheduler->AdvanceBy(1000);
    EXPECT_EQ(later, 0);
}

TEST_F(PollingTest, WithoutASchedulerThereIsNoLink) {
    vire::SetScheduler(nullptr);
    FakeTransport transport;
    EXPECT_EQ(transport.Subscribe({"/A/B/C", "P", 517, 1, 100}, [](const vire::LinkData&) {}), -1);
    EXPECT_EQ(transport.ActiveSubscriptions(), 0u);
}

}  // namespace
