// The archiver: history and archive answers over the network, what it
// records, what it keeps across a restart.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <numeric>
#include <tuple>

#include "net/recorder.h"
#include "network_fixture.h"
#include "vire/clock.h"

namespace net_test {
namespace {

std::string FreshFile(const std::string& name) {
    const std::string folder = ::testing::TempDir() + "/archiver-" + std::to_string(getpid());
    std::filesystem::create_directories(folder);
    const std::string path = folder + "/" + name;
    std::filesystem::remove(path);
    return path;
}

int32_t Minute(int64_t seconds) { return static_cast<int32_t>(seconds / 60 * 60); }

TEST(Archiver, AnswersTheSimulatedPastOverTheNetworkAndKeepsItAcrossARestart) {
    const std::string db = FreshFile("restart.sqlite");
    ServerProcess names, archiver;
    ASSERT_TRUE(names.Start("lumiscope-names", {"--listen", "127.0.0.1:0"}));
    const std::vector<std::string> args{"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--db", db,
                                        "--names", names.Address(), "--record", "no"};
    net::NetworkTransport network(net::NetworkSettings{names.Address(), "", ""});
    const auto started = [&] {
        return archiver.Start("lumiscope-archiver", args, kSimEnvironment) && WaitUntil([&] {
            return Read(network, "/ORKA/OKHISTORY/#1", "LOSS.INT", 1, vire::kFormatFltInt).status != vire::kLinkError;
        }, std::chrono::seconds(10));
    };
    ASSERT_TRUE(started());
    auto local = LocalTwin();

    const int32_t now = static_cast<int32_t>(vire::NowMilliseconds() / 1000);
    const int32_t from = Minute(now - 7200), to = Minute(now - 3600);
    // device, property, format, count, input (the time window)
    const std::tuple<const char*, const char*, int16_t, int32_t, std::vector<int32_t>> cases[] = {
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 999, {from, to}},
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 20, {from, to}},  // spread out
        {"/ORKA/OKHISTORY/BLM.S02.3", "LOSS.INT", vire::kFormatFltInt, 999, {now - 86400, now}},
        {"/ORKA/BPMHIST/#1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 1, {from, to, 0}},
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", vire::kFormatSingle, 32, {from, from, 0}},
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", vire::kFormatSingle, 8, {from, from, 0}},
        {"/ORKA/BPMHIST/NOPE", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 10, {from, to}},  // 11
        {"/ORKA/BPMHIST/BPM.S01.C1", "NOPE", vire::kFormatFltInt, 10, {from, to}},       // 12
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 10, {from}}, // 16
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatSingle, 10, {from, to}},  // 13
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q1.HIST", vire::kFormatSingle, 32, {1000, 1000, 0}},     // 36: not recorded
    };
    std::vector<Answer> first;
    for (const auto& [device, property, format, count, input] : cases) {
        const Answer here = Read(*local, device, property, count, format, input);
        const Answer there = Read(network, device, property, count, format, input);
        EXPECT_EQ(there, here) << device << " " << property;
        first.push_back(there);
    }

    archiver.Stop();
    // While it is down: a recorded spectrum is written into its database.
    {
        net::ArchiveStore store(net::OpenSqlDatabase(db));
        store.PutSnapshot("/ORKA/BPMHIST", "ORBIT.X.Q3.HIST", from, std::vector<float>(32, 42.5f), true);
        store.PutSnapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", from + 600, std::vector<float>(32, 77.25f), true);
    }
    ASSERT_TRUE(started());
    const Answer q3 = Read(network, "/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", 32, vire::kFormatSingle, {from, from, 0});
    EXPECT_EQ(q3.values, std::vector<float>(32, 42.5f));
    // The recorded spectrum wins over what was filled in before, at its time only.
    const auto& [device, property, format, count, input] = cases[0];
    const Answer q1 = Read(network, device, property, count, format, input);
    ASSERT_EQ(q1.times, first[0].times);
    for (size_t k = 0; k < q1.values.size(); ++k)
        EXPECT_EQ(q1.values[k], q1.times[k] == from + 600 ? 77.25f : first[0].values[k]) << k;
    // What the first run filled in is in the database, not computed again.
    net::ArchiveStore store(net::OpenSqlDatabase(db));
    const auto kept = store.Series("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", 0, from, to);
    EXPECT_EQ(kept.size(), static_cast<size_t>((to - from) / 60 + 1));
}

// A device layer that answers each element's index (plus 1000 for a second
// reading) and fails for the servers in /KALM/.
class CountingDevices : public vire::Transport {
public:
    vire::Status Call(const std::string& device, const std::string&, vire::DataObject& out, const vire::DataObject&,
                      int16_t, int32_t) override {
        if (device.rfind("/KALM/", 0) == 0) {
            out.count = 0;
            return vire::kLinkError;
        }
        for (int32_t i = 0; i < out.count; ++i) vire::StoreFloat(out.buffer, 4 * size_t(i), float(i + offset));
        return vire::kOk;
    }
    vire::SubscriptionId Subscribe(const vire::SubscriptionRequest&, std::function<void(const vire::LinkData&)>) override {
        return -1;
    }
    void Unsubscribe(vire::SubscriptionId) override {}
    float offset = 0;
};

TEST(Recording, StoresSpectraInElementOrderLocallyEachStepAndInTheArchiveEachQuarterHour) {
    auto store = std::make_shared<net::ArchiveStore>(net::OpenSqlDatabase(FreshFile("recording.sqlite")));
    auto devices = std::make_shared<CountingDevices>();
    net::Recorder recorder(LocalTwin(), store, devices);
    const int64_t quarter = 1'795'372'200;  // a whole quarter hour
    EXPECT_GT(recorder.RecordAt(quarter + 60), 0);
    EXPECT_GT(recorder.RecordAt(quarter), 0);
    std::vector<float> upright(32);
    std::iota(upright.begin(), upright.end(), 0.0f);
    const std::vector<float> reversed(upright.rbegin(), upright.rend());
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter + 60), upright);
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q3.HIST", quarter + 60), reversed);  // read out last first
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter + 60), std::nullopt);       // not a quarter hour
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter), reversed);
    EXPECT_EQ(store->Snapshot("/KALM/BPMHIST", "POS.X.HIST", quarter), std::nullopt);        // its server failed

    // Three days later the local records of the first time are gone, the archive's are not.
    devices->offset = 1000;
    recorder.RecordAt(quarter + 3 * 86400 + 60);
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter), std::nullopt);
    EXPECT_TRUE(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter + 60).has_value());
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter), reversed);
}

}  // namespace
}  // namespace net_test
