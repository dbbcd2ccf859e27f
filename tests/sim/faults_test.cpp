#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "sim/settings.h"
#include "sim_fixture.h"

namespace {

using sim_test::SimTest;

TEST_F(SimTest, FaultsComeBeforeEverythingAndAnswerTheirCodes) {
    struct Case { const char* target; sim::Fault fault; const char* device; vire::Status status; int64_t waitedMs; };
    const Case cases[] = {
        {"/ORKA/BPMQ1", {sim::Fault::Kind::Down, 0}, "/ORKA/BPMQ1/ORBIT", vire::kLinkError, 0},
        {"BPMQ1", {sim::Fault::Kind::Code, 36}, "/ORKA/BPMQ1/ORBIT", 36, 0},
        // Slow: the answer comes after the caller's time-out; the test clock shows the wait.
        {"/ORKA/BPMQ1", {sim::Fault::Kind::Slow, 0}, "/ORKA/BPMQ1/ORBIT", vire::kTimeout, 1000},
        {"OKHISTORY", {sim::Fault::Kind::Slow, 0}, "OKHISTORY", vire::kTimeout, 1000},
        {"/ORKA/BPMQ2", {sim::Fault::Kind::Down, 0}, "/ORKA/BPMQ1/ORBIT", 0, 0},  // another server
    };
    for (const Case& c : cases) {
        accelerator->SetFault(c.target, c.fault);
        const int64_t before = vire::NowMilliseconds();
        const auto r = Floats(c.device, "ORBIT.X", 32);
        EXPECT_EQ(r.status, c.status) << c.target;
        EXPECT_EQ(vire::NowMilliseconds() - before, c.waitedMs) << c.target;
        accelerator->ClearFault(c.target);
    }
}

class SettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = std::filesystem::temp_directory_path() / ("lumiscope-sim-" + std::to_string(::getpid()));
        std::filesystem::create_directories(dir);
    }
    void TearDown() override {
        ::unsetenv("LUMISCOPE_SIM_FAULTS");
        ::unsetenv("LUMISCOPE_SIM_WRITERS");
        ::unsetenv("LUMISCOPE_SIM_SEED");
        std::filesystem::remove_all(dir);
    }
    void Write(const std::string& text) { std::ofstream(dir / sim::kSimulationFileName) << text; }
    std::filesystem::path dir;
};

TEST_F(SettingsTest, TheFileSetsSeedWritersStepsAndFaultsAndSaysWhatItCouldNotUse) {
    Write("; comment\r\nSETTING,TARGET,VALUE\r\nSEED,,42\r\nWRITER,,alice\r\nwriter,,bob\r\n"
          "FAULT,/KALM/BPMSRV,down\r\nFAULT,OKHISTORY,code:36\r\nFAULT,X,sometimes\r\nFAULT,Y,code:0\r\n"
          "ARCHIVESTEP,,600\r\nLOCALHISTORYDAYS,,0\r\nCOLOUR,,blue\r\nSEED,only-two\r\n");
    const auto s = sim::LoadSimulationSettings(dir.string());
    EXPECT_EQ(s.seed, 42u);
    EXPECT_EQ(s.writers, (std::set<std::string>{"alice", "bob"}));
    ASSERT_EQ(s.faults.size(), 2u);
    EXPECT_EQ(s.faults.at("/KALM/BPMSRV").kind, sim::Fault::Kind::Down);
    EXPECT_EQ(s.faults.at("OKHISTORY").code, 36);
    EXPECT_EQ(s.archiveStepS, 600);
    EXPECT_EQ(s.localHistoryDays, 3);  // 0 days refused: the default stays
    ASSERT_EQ(s.problems.size(), 5u);
    EXPECT_NE(s.problems[0].find("unreadable fault \"X=sometimes\""), std::string::npos);
    EXPECT_NE(s.problems[1].find("\"Y=code:0\""), std::string::npos);
    EXPECT_NE(s.problems[2].find("LOCALHISTORYDAYS"), std::string::npos);
    EXPECT_NE(s.problems[3].find("unknown setting \"COLOUR\""), std::string::npos);
    EXPECT_NE(s.problems[4].find("expected SETTING,TARGET,VALUE"), std::string::npos);
}

TEST_F(SettingsTest, TheEnvironmentReplacesWritersAndAddsFaults) {
    Write("SETTING,TARGET,VALUE\nWRITER,,alice\nFAULT,A,down\n");
    ::setenv("LUMISCOPE_SIM_WRITERS", "carol, dave", 1);
    ::setenv("LUMISCOPE_SIM_FAULTS", "B=slow, A=code:45,broken", 1);
    ::setenv("LUMISCOPE_SIM_SEED", "9", 1);
    const auto s = sim::LoadSimulationSettings(dir.string());
    EXPECT_EQ(s.writers, (std::set<std::string>{"carol", "dave"}));
    EXPECT_EQ(s.faults.at("A").kind, sim::Fault::Kind::Code);
    EXPECT_EQ(s.faults.at("A").code, 45);
    EXPECT_EQ(s.faults.at("B").kind, sim::Fault::Kind::Slow);
    EXPECT_EQ(s.seed, 9u);
    ASSERT_EQ(s.problems.size(), 1u);
    EXPECT_NE(s.problems[0].find("\"broken\""), std::string::npos);
}

TEST_F(SettingsTest, AMissingFileOrGarbageLeavesTheDefaults) {
    auto s = sim::LoadSimulationSettings(dir.string());
    EXPECT_EQ(s.seed, 1u);
    EXPECT_TRUE(s.writers.empty());
    EXPECT_TRUE(s.problems.empty());
    Write(std::string("\x00\xff\xfe garbage,,,\n\x01", 18));
    s = sim::LoadSimulationSettings(dir.string());
    EXPECT_EQ(s.seed, 1u);
    EXPECT_TRUE(s.faults.empty());
}

TEST(SimulatedAcceleratorOfABrokenDirectory, ServesWhatItCouldReadAndSaysWhatItCouldNot) {
    sim::SimulatedAccelerator empty("/nonexistent-lumiscope-dir", sim::SimulationSettings{});
    EXPECT_TRUE(empty.model().channels.empty());
    EXPECT_FALSE(empty.model().problems.empty());
    std::vector<std::byte> buffer(4);
    vire::DataObject out{1, vire::kFormatSingle, "", buffer};
    EXPECT_EQ(empty.Call("/ORKA/BPMQ1/ORBIT", "ORBIT.X", out, {}, 1, 1000), vire::kLinkError);
}

}  // namespace
