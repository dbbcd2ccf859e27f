// Live links. What callers rely on of any transport, checked on the
// in-process simulated accelerator and on the network transport alike: one
// delivery per interval with the server's failure when there is one, nothing
// after Unsubscribe. Then, on the network only: one stream per link, and a
// server that goes away and comes back.
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

// The test's UI thread: a manual scheduler, with real pauses for the readings to travel.
struct LiveHelpers {
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
    void Install() { vire::SetScheduler(&scheduler); }
    void Uninstall() {
        transport.reset();
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    vire::ManualScheduler scheduler;
    std::shared_ptr<vire::Transport> transport;
};

class TransportContract : public NetworkSuite, public ::testing::WithParamInterface<std::string>, public LiveHelpers {
protected:
    void SetUp() override {
        NetworkSuite::SetUp();
        if (HasFatalFailure()) return;
        Install();
        for (const auto& [name, value] : kSimEnvironment) setenv(name.c_str(), value.c_str(), 1);
        transport = GetParam() == "network" ? std::shared_ptr<vire::Transport>(Transport())
                                            : std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR);
    }
    void TearDown() override { Uninstall(); }
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

// A server that goes away and comes back, for the network transport only.
class LiveLinks : public ::testing::Test, public LiveHelpers {
protected:
    void SetUp() override {
        ASSERT_TRUE(names.Start("lumiscope-names", {"--listen", "127.0.0.1:0"}));
        ASSERT_TRUE(StartDevices());
        Install();
        network = std::make_shared<net::NetworkTransport>(net::NetworkSettings{names.Address(), "", ""});
        transport = network;
    }
    void TearDown() override {
        network.reset();
        Uninstall();
    }
    bool StartDevices() {
        return devices.Start("lumiscope-devserver",
                             {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--names", names.Address(), "--lease-ms", "600"},
                             kSimEnvironment);
    }
    ServerProcess names, devices;
    std::shared_ptr<net::NetworkTransport> network;
};

TEST_F(LiveLinks, AServerAwayFailsEveryIntervalAndIsReadAgainAfterItsReturn) {
    std::vector<vire::LinkData> got, twin, other;
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, got);
    const auto twinId = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, twin);
    EXPECT_EQ(network->SharedReadings(), 1u);  // one stream for both
    ASSERT_TRUE(IntervalsUntil(got, vire::kOk, 25));
    EXPECT_EQ(twin.back().stampMs, got.back().stampMs);  // the same reading
    transport->Unsubscribe(twinId);
    EXPECT_EQ(network->SharedReadings(), 1u);

    devices.Kill();
    ASSERT_TRUE(IntervalsUntil(got, vire::kLinkError, 25));
    const size_t down = got.size();
    for (int i = 0; i < 5; ++i) Interval();
    ASSERT_EQ(got.size(), down + 5);
    for (size_t i = down; i < got.size(); ++i) {
        EXPECT_EQ(got[i].status, vire::kLinkError) << i;
        EXPECT_EQ(got[i].count, 0) << i;
    }

    ASSERT_TRUE(StartDevices());  // on another port: found again by its name
    ASSERT_TRUE(IntervalsUntil(got, vire::kOk, 25));
    EXPECT_EQ(got.back().count, 32);
    // Another link (another count) is another stream.
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 16, other);
    EXPECT_EQ(network->SharedReadings(), 2u);
    ASSERT_TRUE(IntervalsUntil(other, vire::kOk, 25));
    EXPECT_EQ(other.back().count, 16);
}

}  // namespace
}  // namespace net_test
