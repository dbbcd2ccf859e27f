#include <cmath>
#include <filesystem>
#include <tuple>

#include "catalogue/files.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"
#include "sim_fixture.h"
#include "vire/queries.h"
#include "vire/scheduler.h"
#include "vire/utils.h"

namespace {

using sim_test::SimTest;

// Every live quantity the sample configuration names, addressed the way the
// window addresses it: a data-source row as "/CONTEXT/SERVER/DEVICE", a
// history-file row as "/CONTEXT/" + its SERVER field ("SERVER/DEVICE") + "/"
// + its (empty) device.
TEST_F(SimTest, EveryLiveQuantityOfTheSampleConfigurationAnswersItsSizeOfPlausibleValues) {
    ASSERT_TRUE(accelerator->model().problems.empty()) << accelerator->model().problems.front();
    int quantities = 0;
    for (const auto& entry : std::filesystem::directory_iterator(LUMISCOPE_SAMPLE_CONFIG_DIR)) {
        const std::string path = entry.path().string();
        const bool history = path.ends_with(".HIST");
        std::string header;
        for (const auto& line : catalogue::ReadTextLines(path))
            if (header.empty() && !catalogue::StartsWithAny(line, ";%#")) header = "," + line + ",";
        if (!history && header.find(",SIZE,") == std::string::npos) continue;  // not a data-source file
        catalogue::Catalogue cat;
        catalogue::QuietWindow window;
        ASSERT_EQ(history ? catalogue::ReadHistoryFile(cat, path) : catalogue::ReadSpectrumConfig(cat, window, path), 0);
        const int16_t rows = history ? cat.HistoryCount : cat.SpectrumCount;
        for (int16_t i = 0; i < rows; ++i) {
            const auto& r = history ? cat.HistoryList[i] : cat.SpectrumList[i];
            const std::string device = "/" + r.Context + "/" + r.Server + "/" + r.Device;
            const auto reading = Read(device, r.Property, r.Size);
            ASSERT_EQ(reading.status, 0) << path << ": " << device << " " << r.Property;
            ASSERT_EQ(static_cast<int32_t>(reading.values.size()), r.Size) << device << " " << r.Property;
            const float span = r.Max > r.Min ? r.Max - r.Min : 1.0f;
            const float low = r.Min - 0.5f * span, high = std::max(r.Max, r.Min + 1.0f) + 0.5f * span;
            for (float v : reading.values)
                EXPECT_TRUE(std::isfinite(v) && v >= low && v <= high) << device << " " << r.Property << ": " << v;
            ++quantities;
        }
    }
    EXPECT_GE(quantities, 65) << "every data-source file and history file of the sample";
}

TEST_F(SimTest, ValuesMoveWithTimeAndRepeatForTheSameSeedAndMoment) {
    const auto first = Read("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32);
    vire::AdvanceTestClock(1000);
    EXPECT_NE(Read("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32).values, first.values);
    vire::AdvanceTestClock(-1000);
    for (uint64_t seed : {7, 8}) {
        sim::SimulationSettings settings;
        settings.seed = seed;
        sim::SimulatedAccelerator twin(LUMISCOPE_SAMPLE_CONFIG_DIR, settings);
        EXPECT_EQ(sim_test::Read(twin, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32).values == first.values, seed == 7) << seed;
    }
}

TEST_F(SimTest, QuantitiesOfOneDeviceDifferWhereTheyMeasureDifferentThings) {
    const int32_t now = static_cast<int32_t>(sim_test::kNowS);
    struct Case { const char* device; const char* property; const char* otherProperty; int16_t format; };
    for (const Case& c : {Case{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "ORBIT.Y", vire::kFormatSingle},
                          Case{"/VESTA/BPMSRV/ORBIT", "ORBIT.X", "ORBIT.Y", vire::kFormatSingle},
                          Case{"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", "ORBIT.Y.Q1.HIST", vire::kFormatFltInt},
                          Case{"/ORKA/OKHISTORY/BPM.S01.C2", "ORBIT.X.Q1", "ORBIT.Y.Q1", vire::kFormatFltInt}}) {
        const auto one = Read(c.device, c.property, 32, c.format, {now - 3600, now});
        const auto other = Read(c.device, c.otherProperty, 32, c.format, {now - 3600, now});
        EXPECT_TRUE(!one.values.empty() && one.times == other.times && one.values != other.values) << c.device << " " << c.property;
    }
}

TEST_F(SimTest, ActualCurrentsFollowTheirSetValues) {
    const auto set = Read("/ORKA/PSDIP/DIPOLES", "CURRENT.SET", 16);
    const auto act = Read("/ORKA/PSDIP/DIPOLES", "CURRENT.ACT", 16);
    const auto diff = Read("/ORKA/PSDIP/DIPOLES", "CURRENT.DIFF", 16);
    ASSERT_EQ(set.values.size() + act.values.size() + diff.values.size(), 48u);
    for (size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(act.values[i], set.values[i], 0.02 * 600) << i;
        EXPECT_NEAR(diff.values[i], act.values[i] - set.values[i], 0.01) << i;
    }
}

// The codes of addresses and formats the servers do not know: the network tests, for both transports.
TEST_F(SimTest, AReadIntoABufferSmallerThanTheCountNeverWritesPastIt) {
    for (const auto& [device, property] : {std::pair{"/ORKA/BPMQ1/ORBIT", "ORBIT.X"},
                                           {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD"}}) {
        std::vector<std::byte> buffer(10 * 4 + 4, std::byte{0x5A});
        vire::DataObject out{32, vire::kFormatSingle, "", std::span<std::byte>(buffer).first(10 * 4)};
        EXPECT_EQ(vire::LinkCall(device, property, out, {}, 1, 1000), 0) << property;
        EXPECT_EQ(out.count, 10) << property;
        EXPECT_EQ(buffer.back(), std::byte{0x5A}) << property;
    }
}

TEST_F(SimTest, ServersNameTheirElementsAndLocationsAndListTheirProperties) {
    // Long names continued and joined: the query tests.
    struct Case { const char* server; const char* property; int32_t count; std::vector<std::string> first; int32_t total; };
    const Case cases[] = {
        {"/ORKA/BPMQ3", "ORBIT.Y", 32, {"BPM.S09.C1", "BPM.S09.C2"}, 32},
        {"/VESTA/BLMSRV", "LOSS.FAST", 0, {"VBLM.C01"}, 24},
        {"/ORKA/BCMSRV", "CHARGE", 1980, {"#0", "#1"}, 1980},  // no names: numbered up to the count asked
    };
    for (const Case& c : cases) {
        int32_t count = c.count;
        std::vector<std::string> names;
        ASSERT_EQ(vire::GetDeviceNames(c.server, c.property, count, names), 0) << c.server;
        EXPECT_EQ(count, c.total) << c.server;
        EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + static_cast<long>(c.first.size())), c.first);
    }
    // A property list names the asked property first; a prefix is not the property.
    const std::tuple<const char*, const char*, vire::Status, std::vector<std::string>> lists[] = {
        {"/ORKA/BPMQ1", "ORBIT.Y", 0, {"ORBIT.Y", "ORBIT.X"}}, {"/ORKA/BPMQ1", "ORBIT.Z", vire::kNoData, {}},
        {"/ORKA/BPMQ1", "ORBIT", vire::kNoData, {}}, {"/ORKA/NOWHERE", "", vire::kLinkError, {}}};
    for (const auto& [server, property, status, properties] : lists) {
        vire::PropertyList list;
        EXPECT_EQ(vire::GetProperties(server, property, list), status) << server << " " << property;
        EXPECT_EQ(list.names, properties) << server << " " << property;
    }
    for (int16_t format : {vire::kFormatName16, vire::kFormatName64, vire::kFormatSingle}) {
        const auto answer = Read("/ORKA/BLMSRV/LOCATIONS", "LOCATION", 96, format);
        EXPECT_EQ(answer.status, format == vire::kFormatSingle ? vire::kFormatMismatch : 0) << format;
        EXPECT_EQ(answer.status == 0 ? vire::Bytes2String(std::span(answer.bytes).first(9)) : "Girder 01", "Girder 01");
    }
}

TEST_F(SimTest, LiveLinksDeliverEveryIntervalWithoutWaitingAndRecoverWithTheServer) {
    vire::ManualScheduler scheduler;
    vire::SetScheduler(&scheduler);
    std::vector<vire::LinkData> received;
    const auto id = accelerator->Subscribe({"/ORKA/BCMSRV/FILL.P1", "CHARGE", vire::kFormatSingle, 1980, 1000},
                                           [&](const vire::LinkData& d) { received.push_back(d); });
    // (Deliveries per interval and their sizes: the transport contract tests.)
    // A live reading never waits: late ones fail at once, a delay within the interval is delivered.
    struct Step { const char* fault; vire::Status status; };
    for (const Step s : {Step{"slow", vire::kTimeout}, {"slow:1000", vire::kTimeout}, {"slow:999", 0},
                         {"down*1", vire::kLinkError}, {nullptr, 0}}) {
        sim::Fault fault;
        if (s.fault && sim::ParseFault(s.fault, fault)) accelerator->SetFault("/ORKA/BCMSRV", fault);
        const int64_t before = vire::NowMilliseconds();
        scheduler.AdvanceBy(1000);
        EXPECT_EQ(vire::NowMilliseconds() - before, 1000);
        EXPECT_EQ(received.back().status, s.status) << (s.fault ? s.fault : "recovered");
        EXPECT_EQ(received.back().count, s.status == 0 ? 1980 : 0);
        if (s.fault && s.fault[0] == 's') accelerator->ClearFault("/ORKA/BCMSRV");
    }
    accelerator->Unsubscribe(id);
    scheduler.AdvanceBy(5000);
    EXPECT_EQ(received.size(), 5u);
    vire::SetScheduler(nullptr);
}

}  // namespace
