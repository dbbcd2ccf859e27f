// Live links over the network: one delivery per interval on the scheduler,
// failures while the server is away, the same data again after its return.
#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "net/network_transport.h"
#include "network_fixture.h"
#include "server_processes.h"
#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/scheduler.h"

namespace net_test {
namespace {

constexpr int32_t kIntervalMs = 200;

class LiveLinks : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(names.Start("lumiscope-names", {"--listen", "127.0.0.1:0"}));
        ASSERT_TRUE(StartDevices());
        vire::SetScheduler(&scheduler);
        transport = std::make_shared<net::NetworkTransport>(net::NetworkSettings{names.Address(), "", "opsconsole"});
    }
    void TearDown() override {
        transport.reset();
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    bool StartDevices() {
        return devices.Start("lumiscope-devserver", {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--names", names.Address(),
                                                     "--lease-ms", "600"},
                             kSimEnvironment);
    }
    vire::SubscriptionId Subscribe(const std::string& device, const std::string& property, int32_t count,
                                   std::vector<vire::LinkData>& into) {
        return transport->Subscribe(vire::SubscriptionRequest{device, property, vire::kFormatSingle, count, kIntervalMs},
                                    [&into](const vire::LinkData& data) { into.push_back(data); });
    }
    // One interval of the test clock after a short real pause that lets the
    // readings travel.
    void Interval() {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        scheduler.AdvanceBy(kIntervalMs);
    }
    // Intervals until the last delivery has `status` (at most `limit` of them).
    bool IntervalsUntil(std::vector<vire::LinkData>& got, vire::Status status, int limit) {
        for (int i = 0; i < limit; ++i) {
            if (status == vire::kOk) std::this_thread::sleep_for(std::chrono::milliseconds(kIntervalMs));
            Interval();
            if (!got.empty() && got.back().status == status) return true;
        }
        return false;
    }

    ServerProcess names;
    ServerProcess devices;
    vire::ManualScheduler scheduler;
    std::shared_ptr<net::NetworkTransport> transport;
};

TEST_F(LiveLinks, EachIntervalDeliversOnceAndSubscribersOfOneLinkShareOneReading) {
    std::vector<vire::LinkData> a, b, c;
    const auto ida = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, a);
    const auto idb = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, b);
    const auto idc = Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 16, c);  // another count: another link
    EXPECT_EQ(transport->SharedReadings(), 2u);
    ASSERT_TRUE(IntervalsUntil(a, vire::kOk, 25));
    const size_t before = a.size();
    for (int i = 0; i < 4; ++i) Interval();
    EXPECT_EQ(a.size(), before + 4);
    EXPECT_EQ(b.size(), a.size());
    EXPECT_EQ(c.size(), a.size());
    EXPECT_EQ(a.back().count, 32);
    EXPECT_EQ(a.back().bytes.size(), 32u * 4);
    EXPECT_EQ(a.back().stampMs, b.back().stampMs);  // the same reading
    ASSERT_FALSE(c.empty());
    EXPECT_EQ(c.back().count, 16);

    transport->Unsubscribe(ida);
    transport->Unsubscribe(idc);
    EXPECT_EQ(transport->SharedReadings(), 1u);
    const size_t aLeft = a.size(), bLeft = b.size();
    Interval();
    EXPECT_EQ(a.size(), aLeft);
    EXPECT_EQ(b.size(), bLeft + 1);
    transport->Unsubscribe(idb);
    transport->Unsubscribe(idb);  // twice: ignored
    EXPECT_EQ(transport->SharedReadings(), 0u);
    Interval();
    EXPECT_EQ(b.size(), bLeft + 1);
}

TEST_F(LiveLinks, AServerAwayFailsEveryIntervalAndIsReadAgainAfterItsReturn) {
    std::vector<vire::LinkData> got, other;
    Subscribe("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, got);
    ASSERT_TRUE(IntervalsUntil(got, vire::kOk, 25));

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
    // A link opened now, on a slow server, delivers its failure each interval.
    Subscribe("/ORKA/BPMQ2/ORBIT", "ORBIT.X", 32, other);
    ASSERT_TRUE(IntervalsUntil(other, vire::kTimeout, 25));
}

}  // namespace
}  // namespace net_test
