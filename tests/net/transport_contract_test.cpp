// Live links. What callers rely on of any transport, checked on the
// in-process simulated accelerator and on the network transport alike: one
// delivery per interval with the server's failure when there is one, nothing
// after Unsubscribe. Then, on the network only: one stream per link, and a
// server that goes away and comes back.
#include <gtest/gtest.h>

#include <thread>
#include <tuple>

#include "network_fixture.h"
#include "vire/scheduler.h"

namespace net_test {
namespace {

constexpr int32_t kIntervalMs = 200;

// Live links on the suite's servers. The test's UI thread: a manual
// scheduler, with real pauses for the readings to travel.
class LiveLinks : public NetworkSuite {
protected:
    void SetUp() override {
        NetworkSuite::SetUp();
        vire::SetScheduler(&scheduler);
        transport = Transport();
    }
    void TearDown() override {
        transport.reset();
        vire::SetScheduler(nullptr);
    }
    vire::SubscriptionId Subscribe(const std::string& device, const std::string& property, int32_t count,
                                   std::vector<vire::LinkData>& into) {
        return transport->Subscribe(vire::SubscriptionRequest{device, property, vire::kFormatSingle, count, kIntervalMs},
                                    [&into](const vire::LinkData& data) { into.push_back(data); });
    }
    void Interval(int pauseMs = kIntervalMs) {
        std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
        scheduler.AdvanceBy(kIntervalMs);
    }
    // Intervals until the last delivery has `status` (at most `limit` of them).
    bool IntervalsUntil(std::vector<vire::LinkData>& got, vire::Status status, int limit) {
        for (int i = 0; i < limit; ++i) {
            Interval(status == vire::kOk ? kIntervalMs : 20);
            if (!got.empty() && got.back().status == status) return true;
        }
        return false;
    }
    size_t SharedReadings() const { return static_cast<net::NetworkTransport&>(*transport).SharedReadings(); }
    vire::ManualScheduler scheduler;
    std::shared_ptr<vire::Transport> transport;
};

class TransportContract : public LiveLinks, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override {
        LiveLinks::SetUp();
        if (GetParam() == "simulated") transport = LocalTwin();
    }
};

TEST_P(TransportContract, LiveLinksDeliverOncePerIntervalWithTheirServersFailure) {
    // device, property, count asked for, status, count delivered
    const std::tuple<const char*, const char*, int32_t, vire::Status, int32_t> links[] = {
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kOk, 32},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 500, vire::kOk, 32},  // the channel has 32
        {"/ORKA/BPMQ2/ORBIT", "ORBIT.X", 32, vire::kTimeout, 0},   // slow server
        {"/VESTA/BLMSRV/LOSS", "LOSS.FAST", 24, vire::kNoData, 0},  // answers 36
        {"/ORKA/BPMQ1/ORBIT", "NOPE", 32, vire::kUnknownProperty, 0},
        {"/ORKA/NOWHERE/ORBIT", "ORBIT.X", 32, vire::kLinkError, 0},
    };
    std::vector<std::vector<vire::LinkData>> got(std::size(links));
    for (size_t i = 0; i < std::size(links); ++i)
        Subscribe(std::get<0>(links[i]), std::get<1>(links[i]), std::get<2>(links[i]), got[i]);
    std::vector<vire::LinkData> dropped;
    const auto droppedId = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, dropped);
    // Let the first readings arrive (the network's streams open), then count.
    ASSERT_TRUE(WaitUntil([&] {
        Interval();
        return !got[0].empty() && got[0].back().status == 0 && got[2].back().status == vire::kTimeout;
    }, std::chrono::seconds(10)));
    transport->Unsubscribe(droppedId);
    transport->Unsubscribe(droppedId);
    transport->Unsubscribe(987654);  // never given out
    const size_t droppedBefore = dropped.size();
    for (auto& g : got) g.clear();
    for (int i = 0; i < 3; ++i) Interval();
    EXPECT_EQ(dropped.size(), droppedBefore);  // nothing after Unsubscribe
    for (size_t i = 0; i < std::size(links); ++i) {
        const auto& [device, property, count, status, delivered] = links[i];
        ASSERT_EQ(got[i].size(), 3u) << device << " " << property;
        for (const auto& data : got[i])
            EXPECT_EQ(std::make_tuple(data.status, data.count, data.bytes.size()),
                      std::make_tuple(status, delivered, static_cast<size_t>(delivered) * 4)) << device << " " << property;
    }
}

INSTANTIATE_TEST_SUITE_P(Both, TransportContract, ::testing::Values("simulated", "network"),
                         [](const auto& info) { return info.param; });

// A server that goes away and comes back, for the network transport only.
TEST_F(LiveLinks, AServerAwayFailsEveryIntervalAndIsReadAgainAfterItsReturn) {
    std::vector<vire::LinkData> got, twin, other;
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, got);
    const auto twinId = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, twin);
    EXPECT_EQ(SharedReadings(), 1u);  // one stream for both
    ASSERT_TRUE(IntervalsUntil(got, vire::kOk, 25));
    EXPECT_EQ(twin.back().stampMs, got.back().stampMs);  // the same reading
    transport->Unsubscribe(twinId);
    EXPECT_EQ(SharedReadings(), 1u);

    devices.Kill();
    ASSERT_TRUE(IntervalsUntil(got, vire::kLinkError, 25));
    const size_t down = got.size();
    for (int i = 0; i < 5; ++i) Interval();
    ASSERT_EQ(got.size(), down + 5);
    for (size_t i = down; i < got.size(); ++i)
        EXPECT_EQ(std::make_pair(got[i].status, got[i].count), std::make_pair(vire::kLinkError, 0)) << i;

    ASSERT_TRUE(StartDevices());  // on another port: found again by its name
    ASSERT_TRUE(IntervalsUntil(got, vire::kOk, 25));
    EXPECT_EQ(got.back().count, 32);
    // Another link (another count) is another stream.
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 16, other);
    EXPECT_EQ(SharedReadings(), 2u);
    ASSERT_TRUE(IntervalsUntil(other, vire::kOk, 25));
    EXPECT_EQ(other.back().count, 16);
}

}  // namespace
}  // namespace net_test
