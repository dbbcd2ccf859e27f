// The archiver: what it keeps across a restart and what it records. What it
// answers is compared with the simulation in the network tests.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "net/recorder.h"
#include "network_fixture.h"
#include "vire/clock.h"

namespace net_test {
namespace {

class Archiver : public NetworkSuite {};

TEST_F(Archiver, KeepsWhatWasRecordedAcrossARestartAndReadingWritesNothing) {
    auto network = Transport();
    const int32_t now = static_cast<int32_t>(vire::NowMilliseconds() / 1000);
    const int32_t from = (now - 7200) / 60 * 60, to = (now - 3600) / 60 * 60;  // whole minutes
    const auto q1Series = [&] {
        return Read(*network, "/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", 999, vire::kFormatFltInt, {from, to});
    };
    const auto q3Spectrum = [&] {
        return Read(*network, "/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", 32, vire::kFormatSingle, {from, from, 0});
    };
    const Answer first = q1Series();
    ASSERT_EQ(q3Spectrum().count, 32);  // the simulated past

    archiver.Stop();
    // While it is down: a recorded spectrum is written into its database.
    {
        net::ArchiveStore store(net::OpenSqlDatabase(Archive()));
        store.PutSnapshot("/ORKA/BPMHIST", "ORBIT.X.Q3.HIST", from, std::vector<float>(32, 42.5f), true);
        store.PutSnapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", from + 600, std::vector<float>(32, 77.25f), true);
    }
    ASSERT_TRUE(StartArchiver() && Registered());
    EXPECT_EQ(q3Spectrum().values, std::vector<float>(32, 42.5f));
    // The recorded spectrum wins over the simulated past, at its time only.
    const Answer q1 = q1Series();
    ASSERT_EQ(q1.times, first.times);
    for (size_t k = 0; k < q1.values.size(); ++k)
        EXPECT_EQ(q1.values[k], q1.times[k] == from + 600 ? 77.25f : first.values[k]) << k;
    // Reading wrote nothing: the database holds the two recorded spectra only.
    net::ArchiveStore store(net::OpenSqlDatabase(Archive()));
    const auto kept = store.Series("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", 0, from, to);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept.begin()->first, from + 600);
}

TEST(Recording, StoresSpectraInElementOrderLocallyEachStepAndInTheArchiveEachQuarterHour) {
    const std::string db = ::testing::TempDir() + "/recording-" + std::to_string(getpid()) + ".sqlite";
    std::filesystem::remove(db);
    auto store = std::make_shared<net::ArchiveStore>(net::OpenSqlDatabase(db));
    const int64_t quarter = 1'795'372'200;  // a whole quarter hour
    vire::SetTestClock(quarter * 1000);
    sim::SimulationSettings settings;
    settings.faults["/KALM/BPMSRV"] = sim::Fault{sim::Fault::Kind::Down, 0, 0, 0};
    auto devices = std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR, settings);
    net::Recorder recorder(LocalTwin(), store, devices);
    EXPECT_GT(recorder.RecordAt(quarter + 60), 0);
    EXPECT_GT(recorder.RecordAt(quarter), 0);
    const auto upright = Read(*devices, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32).values;
    auto reversed = Read(*devices, "/ORKA/BPMQ3/ORBIT", "ORBIT.X", 32).values;  // read out last first
    std::reverse(reversed.begin(), reversed.end());
    vire::UseSystemClock();
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter + 60), upright);
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q3.HIST", quarter + 60), reversed);
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter + 60), std::nullopt);  // not a quarter hour
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter), reversed);
    EXPECT_EQ(store->Snapshot("/KALM/BPMHIST", "POS.X.HIST", quarter), std::nullopt);  // its server failed

    // Three days later the local records of the first time are gone, the archive's are not.
    recorder.RecordAt(quarter + 3 * 86400 + 60);
    EXPECT_EQ(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter), std::nullopt);
    EXPECT_TRUE(store->Snapshot("/ORKA/BPMHIST", "ORBIT.X.Q1.HIST", quarter + 60).has_value());
    EXPECT_EQ(store->Snapshot("OKHISTORY", "ORBIT.X.Q3", quarter), reversed);
}

}  // namespace
}  // namespace net_test
