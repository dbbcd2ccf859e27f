// What callers rely on of any transport, checked on the in-process simulated
// accelerator and on the network transport alike: live links deliver once
// per interval with the server's failure when there is one, and stop when
// unsubscribed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "network_fixture.h"
#include "sim/simulated_accelerator.h"
#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/scheduler.h"

namespace net_test {
namespace {

constexpr int32_t kIntervalMs = 200;

class TransportContract : public NetworkSuite, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override {
        NetworkSuite::SetUp();
        if (HasFatalFailure()) return;
        vire::SetScheduler(&scheduler);
        if (GetParam() == "network") {
            transport = Transport();
        } else {
            for (const auto& [name, value] : kSimEnvironment) setenv(name.c_str(), value.c_str(), 1);
            transport = std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR);
        }
    }
    void TearDown() override {
        transport.reset();
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    vire::SubscriptionId Subscribe(const std::string& device, const std::string& property, int32_t count,
                                   std::vector<vire::LinkData>& into) {
        return transport->Subscribe(vire::SubscriptionRequest{device, property, vire::kFormatSingle, count, kIntervalMs},
                                    [&into](const vire::LinkData& data) { into.push_back(data); });
    }
    // An interval of real time for the readings to arrive, then one of the
    // test clock for the ticks.
    void Interval() {
        std::this_thread::sleep_for(std::chrono::milliseconds(kIntervalMs));
        scheduler.AdvanceBy(kIntervalMs);
    }
    vire::ManualScheduler scheduler;
    std::shared_ptr<vire::Transport> transport;
};

TEST_P(TransportContract, LiveLinksDeliverOncePerIntervalWithTheirServersFailure) {
    struct Link {
        const char* device;
        const char* property;
        int32_t count;
        vire::Status status;
        int32_t delivered;
    };
    const Link links[] = {
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kOk, 32},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 500, vire::kOk, 32},  // the channel has 32
        {"/ORKA/BPMQ2/ORBIT", "ORBIT.X", 32, vire::kTimeout, 0},   // slow server
        {"/VESTA/BLMSRV/LOSS", "LOSS.FAST", 24, vire::kNoData, 0},  // answers 36
        {"/ORKA/BPMQ1/ORBIT", "NOPE", 32, vire::kUnknownProperty, 0},
        {"/ORKA/NOWHERE/ORBIT", "ORBIT.X", 32, vire::kLinkError, 0},
    };
    std::vector<std::vector<vire::LinkData>> got(std::size(links));
    for (size_t i = 0; i < std::size(links); ++i) Subscribe(links[i].device, links[i].property, links[i].count, got[i]);
    // Let the first readings arrive (the network's streams open), then count.
    ASSERT_TRUE(WaitUntil([&] {
        Interval();
        return !got[0].empty() && got[0].back().status == 0 && got[2].back().status == vire::kTimeout;
    }, std::chrono::seconds(10)));
    for (auto& g : got) g.clear();
    for (int i = 0; i < 3; ++i) Interval();
    for (size_t i = 0; i < std::size(links); ++i) {
        ASSERT_EQ(got[i].size(), 3u) << links[i].device << " " << links[i].property;
        for (const auto& data : got[i]) {
            EXPECT_EQ(data.status, links[i].status) << links[i].device << " " << links[i].property;
            EXPECT_EQ(data.count, links[i].delivered) << links[i].device;
            EXPECT_EQ(data.bytes.size(), static_cast<size_t>(links[i].delivered) * 4) << links[i].device;
        }
    }
}

TEST_P(TransportContract, AnUnsubscribedLinkDeliversNothingMore) {
    std::vector<vire::LinkData> kept, dropped;
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.Y", 32, kept);
    const auto id = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.Y", 32, dropped);
    Interval();
    transport->Unsubscribe(id);
    transport->Unsubscribe(id);
    transport->Unsubscribe(987654);  // never given out
    const size_t before = dropped.size();
    Interval();
    Interval();
    EXPECT_EQ(dropped.size(), before);
    EXPECT_EQ(kept.size(), before + 2);
}

INSTANTIATE_TEST_SUITE_P(Both, TransportContract, ::testing::Values("simulated", "network"),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace net_test
