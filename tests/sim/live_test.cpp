#include <cmath>

#include "sim_fixture.h"
#include "vire/queries.h"
#include "vire/scheduler.h"
#include "vire/utils.h"

namespace {

using sim_test::SimTest;

TEST_F(SimTest, EveryChannelOfTheSampleAnswersItsSizeOfPlausibleValues) {
    ASSERT_TRUE(accelerator->model().problems.empty()) << accelerator->model().problems.front();
    ASSERT_GT(accelerator->model().channels.size(), 60u);
    for (const auto& c : accelerator->model().channels) {
        const auto r = Floats(c.serverAddress + "/" + c.device, c.property, c.size);
        ASSERT_EQ(r.status, 0) << c.serverAddress << " " << c.property;
        ASSERT_EQ(static_cast<int32_t>(r.values.size()), c.size);
        for (float v : r.values) {
            EXPECT_TRUE(std::isfinite(v));
            // Inside the channel's display range, with room for spikes and noise.
            const float span = c.signal.max - c.signal.min;
            EXPECT_GE(v, c.signal.min - 0.5f * span) << c.property;
            EXPECT_LE(v, c.signal.max + 0.5f * span) << c.property;
        }
    }
}

TEST_F(SimTest, ValuesMoveWithTimeAndRepeatForTheSameSeedAndMoment) {
    const auto first = Floats("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32);
    vire::AdvanceTestClock(1000);
    const auto later = Floats("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32);
    EXPECT_NE(first.values, later.values);

    vire::AdvanceTestClock(-1000);
    sim::SimulationSettings same;
    same.seed = 7;
    sim::SimulatedAccelerator twin(LUMISCOPE_SAMPLE_CONFIG_DIR, same);
    std::vector<std::byte> buffer(32 * 4);
    vire::DataObject out{32, vire::kFormatSingle, "", buffer};
    ASSERT_EQ(twin.Call("/ORKA/BPMQ1/ORBIT", "ORBIT.X", out, {}, 1, 1000), 0);
    EXPECT_EQ(vire::LoadFloat(buffer, 0), first.values[0]);

    sim::SimulationSettings other = same;
    other.seed = 8;
    sim::SimulatedAccelerator stranger(LUMISCOPE_SAMPLE_CONFIG_DIR, other);
    ASSERT_EQ(stranger.Call("/ORKA/BPMQ1/ORBIT", "ORBIT.X", out, {}, 1, 1000), 0);
    EXPECT_NE(vire::LoadFloat(buffer, 0), first.values[0]);
}

TEST_F(SimTest, ActualCurrentsFollowTheirSetValues) {
    const auto set = Floats("/ORKA/PSDIP/DIPOLES", "CURRENT.SET", 16);
    const auto act = Floats("/ORKA/PSDIP/DIPOLES", "CURRENT.ACT", 16);
    const auto diff = Floats("/ORKA/PSDIP/DIPOLES", "CURRENT.DIFF", 16);
    ASSERT_EQ(set.values.size(), 16u);
    ASSERT_EQ(act.values.size(), 16u);
    ASSERT_EQ(diff.values.size(), 16u);
    for (size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(act.values[i], set.values[i], 0.02 * 600) << i;
        EXPECT_NEAR(diff.values[i], act.values[i] - set.values[i], 0.01) << i;
    }
}

TEST_F(SimTest, AReversedPartDeliversItsLastElementFirst) {
    // The recorded spectrum is in element order; the live one of a reversed
    // part comes last to first.
    const auto live = Floats("/ORKA/BPMQ3/ORBIT", "ORBIT.X", 32);
    const auto recorded = History("/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", {sim_test::kNowS, sim_test::kNowS, 0}, 32,
                                  vire::kFormatSingle);
    ASSERT_EQ(recorded.status, 0);
    ASSERT_EQ(live.values.size(), 32u);
    ASSERT_EQ(recorded.values.size(), 32u);
    for (size_t i = 0; i < 32; ++i) EXPECT_EQ(live.values[i], recorded.values[31 - i]) << i;
    const auto upright = Floats("/ORKA/BPMQ2/ORBIT", "ORBIT.X", 32);
    const auto upright_recorded = History("/ORKA/BPMHIST/#0", "ORBIT.X.Q2.HIST",
                                          {sim_test::kNowS, sim_test::kNowS, 0}, 32, vire::kFormatSingle);
    EXPECT_EQ(upright.values, upright_recorded.values);
}

TEST_F(SimTest, AddressesAndFormatsTheServersDoNotKnowGetTheirOwnCodes) {
    struct Case { const char* device; const char* property; int32_t count; int16_t format; vire::Status status; size_t n; };
    const Case cases[] = {
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kFormatSingle, 0, 32},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 40, vire::kFormatSingle, 0, 32},  // more asked than there are
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 0, vire::kFormatSingle, 0, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.Z", 32, vire::kFormatSingle, vire::kUnknownProperty, 0},
        {"/ORKA/BPMQ1/NOPE", "ORBIT.X", 32, vire::kFormatSingle, vire::kUnknownDevice, 0},
        {"/ORKA/NOSERVER/ORBIT", "ORBIT.X", 32, vire::kFormatSingle, vire::kLinkError, 0},
        {"", "ORBIT.X", 32, vire::kFormatSingle, vire::kLinkError, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kFormatLong, vire::kFormatMismatch, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, 600, vire::kFormatMismatch, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", -1, vire::kFormatSingle, vire::kOutOfRange, 0},
    };
    for (const Case& c : cases) {
        const auto r = Floats(c.device, c.property, std::max(c.count, 0), c.format);
        if (c.count < 0) {
            std::vector<std::byte> buffer(4);
            vire::DataObject out{c.count, c.format, "", buffer};
            EXPECT_EQ(vire::LinkCall(c.device, c.property, out, {}, 1, 1000), c.status);
            continue;
        }
        EXPECT_EQ(r.status, c.status) << c.device << " " << c.property;
        EXPECT_EQ(r.values.size(), c.n) << c.device << " " << c.property;
    }
}

TEST_F(SimTest, ACallNeverWritesBeyondTheCallersBuffer) {
    std::vector<std::byte> buffer(10 * 4 + 4, std::byte{0x5A});
    vire::DataObject out{32, vire::kFormatSingle, "", std::span<std::byte>(buffer).first(10 * 4)};
    EXPECT_EQ(vire::LinkCall("/ORKA/BPMQ1/ORBIT", "ORBIT.X", out, {}, 1, 1000), 0);
    EXPECT_EQ(out.count, 10);
    for (size_t i = 40; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], std::byte{0x5A});
}

TEST_F(SimTest, ServersNameTheirElementsContinueLongNamesAndNumberTheBuckets) {
    struct Case { const char* server; const char* property; int32_t count; std::vector<std::string> first; int32_t total; };
    const Case cases[] = {
        {"/ORKA/BPMQ1", "ORBIT.X", 32, {"BPM.S01.C1", "BPM.S01.C2"}, 32},
        {"/ORKA/BPMQ3", "ORBIT.Y", 32, {"BPM.S09.C1"}, 32},
        {"/ORKA/BLMSRV", "LOSS.FAST", 0, {"BLM.S01.1", "BLM.S01.2"}, 96},
        {"/VESTA/BLMSRV", "LOSS.FAST", 0, {"VBLM.C01"}, 24},
        // Longer than a name field: the server continues them, the client joins them.
        {"/LYRAS/PSSTEER", "CURRENT.SET", 0, {"LINAC.STEERER.H01", "LINAC.STEERER.H02"}, 24},
        // No names of its own: numbered up to the count asked.
        {"/ORKA/BCMSRV", "CHARGE", 1980, {"#0", "#1"}, 1980},
    };
    for (const Case& c : cases) {
        int32_t count = c.count;
        std::vector<std::string> names;
        ASSERT_EQ(vire::GetDeviceNames(c.server, c.property, count, names), 0) << c.server;
        EXPECT_EQ(count, c.total) << c.server;
        ASSERT_GE(names.size(), c.first.size());
        for (size_t i = 0; i < c.first.size(); ++i) EXPECT_EQ(names[i], c.first[i]) << c.server;
    }
    int32_t count = 0;
    std::vector<std::string> names;
    EXPECT_EQ(vire::GetDeviceNames("/ORKA/BPMQ1", "NOPE", count, names), vire::kUnknownProperty);
    EXPECT_EQ(vire::GetDeviceNames("/ORKA/NOWHERE", "ORBIT.X", count, names), vire::kLinkError);
}

TEST_F(SimTest, PropertyListsPutTheAskedPropertyFirstAndSayNothingOfUnknownOnes) {
    vire::PropertyList list;
    ASSERT_EQ(vire::GetProperties("/ORKA/BLMSRV", "LOSS.INT", list), 0);
    EXPECT_EQ(list.names, (std::vector<std::string>{"LOSS.INT", "LOSS.FAST", "HV", "THRESHOLD"}));
    EXPECT_EQ(vire::FormatName(list.format), "NAME32");
    ASSERT_EQ(vire::GetProperties("/ORKA/BLMSRV", "", list), 0);
    EXPECT_EQ(list.names.front(), "LOSS.FAST");
    EXPECT_EQ(vire::GetProperties("/ORKA/BLMSRV", "NOSUCH", list), vire::kNoData);
    EXPECT_EQ(vire::GetProperties("/ORKA/NOWHERE", "", list), vire::kLinkError);
}

TEST_F(SimTest, ExternalNameSourcesAnswerLocationsInAnyNameFormat) {
    for (int16_t format : {vire::kFormatName16, vire::kFormatName32, vire::kFormatName64}) {
        const int32_t width = vire::FormatSize(format);
        std::vector<std::byte> buffer(static_cast<size_t>(96 * width));
        vire::DataObject out{96, format, "", buffer};
        ASSERT_EQ(vire::LinkCall("/ORKA/BLMSRV/LOCATIONS", "LOCATION", out, {}, 1, 1000), 0);
        EXPECT_EQ(out.count, 96);
        EXPECT_EQ(vire::Bytes2String(std::span<const std::byte>(buffer).first(9)), "Girder 01");
    }
    std::vector<std::byte> buffer(96 * 4);
    vire::DataObject out{96, vire::kFormatSingle, "", buffer};
    EXPECT_EQ(vire::LinkCall("/ORKA/BLMSRV/LOCATIONS", "LOCATION", out, {}, 1, 1000), vire::kFormatMismatch);
}

TEST_F(SimTest, LiveLinksDeliverEveryIntervalOnTheSchedulerWithoutWaiting) {
    vire::ManualScheduler scheduler;
    vire::SetScheduler(&scheduler);
    std::vector<vire::LinkData> received;
    const auto id = accelerator->Subscribe({"/ORKA/BCMSRV/FILL.P1", "CHARGE", vire::kFormatSingle, 1980, 1000},
                                           [&](const vire::LinkData& d) { received.push_back(d); });
    scheduler.AdvanceBy(3000);
    ASSERT_EQ(received.size(), 3u);
    EXPECT_EQ(received[0].count, 1980);
    EXPECT_EQ(received[0].bytes.size(), 1980u * 4);
    EXPECT_EQ(received[2].stampMs - received[0].stampMs, 2000);

    // A slow server makes a live reading fail at once; the clock does not jump.
    accelerator->SetFault("/ORKA/BCMSRV", sim::Fault{sim::Fault::Kind::Slow, 0});
    const int64_t before = vire::NowMilliseconds();
    scheduler.AdvanceBy(1000);
    EXPECT_EQ(vire::NowMilliseconds() - before, 1000);
    EXPECT_EQ(received.back().status, vire::kTimeout);
    EXPECT_EQ(received.back().count, 0);
    accelerator->ClearFault("/ORKA/BCMSRV");
    scheduler.AdvanceBy(1000);
    EXPECT_EQ(received.back().status, 0);

    accelerator->Unsubscribe(id);
    scheduler.AdvanceBy(5000);
    EXPECT_EQ(received.size(), 5u);
    vire::SetScheduler(nullptr);
}

}  // namespace
