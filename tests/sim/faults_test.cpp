#include <cstdlib>

#include "../catalogue/test_support.h"
#include "sim/settings.h"
#include "sim_fixture.h"

namespace {

using sim_test::SimTest;

// Each call of a fault's sequence: the caller's time-out, the answer and how
// long the caller waited (the test clock shows the wait).
struct Step { int32_t timeoutMs; vire::Status status; int64_t waitedMs; };

TEST_F(SimTest, FaultsComeBeforeEverythingAndRecoverAfterTheirCalls) {
    struct Case { const char* target; const char* fault; std::vector<Step> steps; };
    const Case cases[] = {
        {"/ORKA/BPMQ1", "down", {{1000, vire::kLinkError, 0}, {1000, vire::kLinkError, 0}}},
        {"BPMQ1", "code:36", {{1000, 36, 0}}},
        {"/ORKA/BPMQ1", "SLOW", {{500, vire::kTimeout, 500}, {2500, vire::kTimeout, 2500}}},
        {"BPMQ1", "code:-7", {{1000, -7, 0}}},
        {"/ORKA/BPMQ1", "slow:600000*1000000", {{2500, vire::kTimeout, 2500}}},  // the largest delay and count
        {"/ORKA/BPMQ2", "down", {{1000, 0, 0}}},  // another server
        // Slow by a given time: a shorter time-out fails after itself, a longer one waits for the answer.
        {"/ORKA/BPMQ1", "slow:1500", {{500, vire::kTimeout, 500}, {2500, 0, 1500}, {1500, vire::kTimeout, 1500}}},
        // Failing for the first calls only; the server answers from then on.
        {"/ORKA/BPMQ1", "down*2", {{1000, vire::kLinkError, 0}, {1000, vire::kLinkError, 0}, {1000, 0, 0}, {1000, 0, 0}}},
        {"BPMQ1", "code:45*1", {{1000, 45, 0}, {1000, 0, 0}}},
        {"/ORKA/BPMQ1", "slow*2", {{800, vire::kTimeout, 800}, {2500, vire::kTimeout, 2500}, {800, 0, 0}}},
        {"/ORKA/BPMQ1", "slow:1500*1", {{2500, 0, 1500}, {500, 0, 0}}},
    };
    for (const Case& c : cases) {
        sim::Fault fault;
        ASSERT_TRUE(sim::ParseFault(c.fault, fault)) << c.fault;
        accelerator->SetFault(c.target, fault);
        for (size_t i = 0; i < c.steps.size(); ++i) {
            const int64_t before = vire::NowMilliseconds();
            const auto r = Read("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kFormatSingle, {}, -1, c.steps[i].timeoutMs);
            EXPECT_EQ(r.status, c.steps[i].status) << c.target << "=" << c.fault << " call " << i;
            EXPECT_EQ(r.values.size(), r.status == 0 ? 32u : 0u);
            EXPECT_EQ(vire::NowMilliseconds() - before, c.steps[i].waitedMs) << c.target << "=" << c.fault << " call " << i;
        }
        accelerator->ClearFault(c.target);
    }
}

TEST(ParseFault, DelaysAndCallCountsOutOfTheirRangesAndOtherTextsAreRefused) {
    for (const char* text : {"slow:0", "slow:-5", "slow:600001", "slow:1.5", "down*0", "down*", "*2", "down*1000001",
                             "down*2*3", "code:0", "code:32768", "sometimes", ""}) {
        sim::Fault fault{sim::Fault::Kind::Code, 99, 0, 0};
        EXPECT_FALSE(sim::ParseFault(text, fault)) << text;
        EXPECT_EQ(fault.code, 99) << "an unreadable fault changes nothing";
    }
}

TEST(SimulationSettings, TheFileThenTheEnvironmentAndWhatCouldNotBeUsedOrFound) {
    catalogue_test::ScratchDir dir;
    auto load = [&](const std::string& text) {
        dir.Write(sim::kSimulationFileName, text);
        return sim::LoadSimulationSettings(dir.Path());
    };
    auto s = load("; comment\r\nSETTING,TARGET,VALUE\r\nSEED,,42\r\nWRITER,,alice\r\nwriter,,bob\r\n"
                  "FAULT,/KALM/BPMSRV,down*2\r\nFAULT,OKHISTORY,slow:1500\r\nFAULT,X,sometimes\r\nFAULT,Y,code:0\r\n"
                  "ARCHIVESTEP,,600\r\nLOCALHISTORYDAYS,,0\r\nCOLOUR,,blue\r\nSEED,only-two\r\n");
    EXPECT_EQ(s.seed, 42u);
    EXPECT_EQ(s.writers, (std::set<std::string>{"alice", "bob"}));
    ASSERT_EQ(s.faults.size(), 2u);
    EXPECT_EQ(s.faults.at("/KALM/BPMSRV").calls, 2);
    EXPECT_EQ(s.faults.at("OKHISTORY").delayMs, 1500);
    EXPECT_EQ(s.archiveStepS + s.localHistoryDays, 600 + 3) << "0 days refused: the default stays";
    const char* problems[] = {"unreadable fault \"X=sometimes\"", "\"Y=code:0\"", "LOCALHISTORYDAYS",
                              "unknown setting \"COLOUR\"", "expected SETTING,TARGET,VALUE"};
    ASSERT_EQ(s.problems.size(), 5u);
    for (size_t i = 0; i < 5; ++i) EXPECT_NE(s.problems[i].find(problems[i]), std::string::npos) << s.problems[i];

    ::setenv("LUMISCOPE_SIM_WRITERS", "carol, dave", 1);
    ::setenv("LUMISCOPE_SIM_FAULTS", "B=slow*1, A=code:45,broken", 1);
    ::setenv("LUMISCOPE_SIM_SEED", "9", 1);
    s = load("SETTING,TARGET,VALUE\nWRITER,,alice\nFAULT,A,down\n");
    for (const char* name : {"LUMISCOPE_SIM_FAULTS", "LUMISCOPE_SIM_WRITERS", "LUMISCOPE_SIM_SEED"}) ::unsetenv(name);
    EXPECT_EQ(s.writers, (std::set<std::string>{"carol", "dave"}));
    EXPECT_EQ(std::make_pair(s.faults.at("A").kind, s.faults.at("A").code), std::make_pair(sim::Fault::Kind::Code, int16_t{45}));
    EXPECT_EQ(std::make_pair(s.faults.at("B").kind, s.faults.at("B").calls), std::make_pair(sim::Fault::Kind::Slow, 1));
    EXPECT_EQ(s.seed, 9u);
    ASSERT_EQ(s.problems.size(), 1u);
    EXPECT_NE(s.problems[0].find("\"broken\""), std::string::npos);

    constexpr char kGarbage[] = "\x00\xff\xfe garbage,,,\n\x01";
    s = load(std::string(kGarbage, sizeof kGarbage - 1));
    EXPECT_EQ(s.seed, 1u);
    EXPECT_TRUE(s.faults.empty() && s.writers.empty());
    EXPECT_TRUE(sim::LoadSimulationSettings(dir.Path("none")).problems.empty()) << "no file: the defaults";

    // No configuration at all: the simulation serves nothing and says why.
    sim::SimulatedAccelerator empty(dir.Path("none"), sim::SimulationSettings{});
    EXPECT_TRUE(empty.model().channels.empty());
    EXPECT_FALSE(empty.model().problems.empty());
    EXPECT_EQ(sim_test::Read(empty, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 1).status, vire::kLinkError);
}

}  // namespace
