// The network transport against real server processes on loopback.
#include <unistd.h>

#include <fstream>
#include <limits>
#include <tuple>

#include "network_fixture.h"
#include "vire/clock.h"

namespace net_test {
namespace {

using std::chrono::milliseconds;

// The shortest of a few tries: a behaviour that waits (for a back-off, for
// the whole time-out) is slow every time, while a loaded machine delays an
// odd try only now and then.
milliseconds ShortestOf(int tries, const std::function<vire::Status()>& call, vire::Status expected) {
    auto best = milliseconds::max();
    for (int i = 0; i < tries; ++i) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(call(), expected);
        best = std::min(best, std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start));
    }
    return best;
}

TEST(NetworkTransportAlone, ADeadPortOrAnUnknownNameAnswersLinkErrorAtOnceAndDeliversNothing) {
    // No name service: the servers are found in a names file.
    const std::string names = ::testing::TempDir() + "/names-" + std::to_string(getpid()) + ".txt";
    std::ofstream(names) << "# dead\n/ORKA/DEAD 127.0.0.1:" << DeadPort() << "\n";
    net::NetworkTransport transport(net::NetworkSettings{"", names, ""});
    // A refused connection is known at once: well under the 1000 ms time-out.
    for (const char* device : {"/ORKA/DEAD/X", "/ORKA/NOWHERE/X"}) {
        const auto call = [&] {
            const Answer answer = Read(transport, device, "P", 4);
            EXPECT_EQ(answer.count, 0) << device;
            return answer.status;
        };
        EXPECT_LT(ShortestOf(3, call, vire::kLinkError), milliseconds(50)) << device;
    }
}

TEST_F(NetworkSuite, ASlowServerAnswersTimeOutWhenTheDeadlinePasses) {
    auto transport = Transport();
    const auto call = [&] {
        return Read(*transport, "/ORKA/BPMQ2/ORBIT", "ORBIT.X", 32, vire::kFormatSingle, {}, -1, 300).status;
    };
    const auto shortest = ShortestOf(2, call, vire::kTimeout);
    EXPECT_GE(shortest, milliseconds(295));  // it really waited for the deadline
    EXPECT_LT(shortest, milliseconds(350));  // and not for the engine's own ideas of a time-out
}

TEST_F(NetworkSuite, DeterministicAnswersOfDevicesAndArchiverAreTheSimulatedAcceleratorsByteForByte) {
    auto local = LocalTwin();
    auto network = Transport();
    const int32_t now = static_cast<int32_t>(vire::NowMilliseconds() / 1000);
    const int32_t from = (now - 7200) / 60 * 60, to = (now - 3600) / 60 * 60;  // whole minutes
    // device, property, format, count, input (a history read's time window), status; no live values, they
    // change with the time of the call. The codes themselves are the simulation's: one of each way suffices.
    const std::tuple<const char*, const char*, int16_t, int32_t, std::vector<int32_t>, vire::Status> cases[] = {
        {"/ORKA/BPMQ1/#0", "ORBIT.X.NAM", vire::kFormatName16, 2000, {}, 0},
        {"/ORKA/NOWHERE/#0", "ORBIT.X.NAM", vire::kFormatName16, 5, {}, vire::kLinkError},
        {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD", vire::kFormatSingle, 96, {}, 0},
        {"/ORKA/BLMSRV/LOSS.RING/", "THRESHOLD[95]", vire::kFormatSingle, 1, {}, 0},  // a trailing "/" is no part
        {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[96]", vire::kFormatSingle, 1, {}, vire::kOutOfRange},
        {"/ORKA/BLMSRV/LOCATIONS", "LOCATION", vire::kFormatName32, 96, {}, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatDouble, 32, {}, vire::kFormatMismatch},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 600, 32, {}, vire::kFormatMismatch},
        {"/ORKA/BPMQ1/NOPE", "ORBIT.X", vire::kFormatSingle, 32, {}, vire::kUnknownDevice},
        {"/ORKA/BPMQ1/ORBIT", "NOPE", vire::kFormatSingle, 32, {}, vire::kUnknownProperty},
        {"", "ORBIT.X", vire::kFormatSingle, 32, {}, vire::kLinkError},
        {"/VESTA/BLMSRV/LOSS", "LOSS.FAST", vire::kFormatSingle, 24, {}, vire::kNoData},  // its fault: code 36
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatSingle, -1, {}, vire::kOutOfRange},
        // The archiver: the simulated past, kept in its database.
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 999, {from, to}, 0},
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 20, {from, to}, 0},  // spread out
        {"/ORKA/OKHISTORY/BLM.S02.3", "LOSS.INT", vire::kFormatFltInt, 999, {now - 86400, now}, 0},
        {"/ORKA/BPMHIST/#1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 1, {from, to, 0}, 0},
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", vire::kFormatSingle, 32, {from, from, 0}, 0},
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", vire::kFormatSingle, 8, {from, from, 0}, 0},
        {"/ORKA/BPMHIST/NOPE", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 10, {from, to}, vire::kUnknownDevice},
        {"/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", vire::kFormatFltInt, 10, {from}, vire::kInvalidInput},
        {"/ORKA/BPMHIST/#0", "ORBIT.X.Q1.HIST", vire::kFormatSingle, 32, {1000, 1000, 0}, vire::kNoData},  // long ago
    };
    for (const auto& [device, property, format, count, input, status] : cases) {
        const Answer here = Read(*local, device, property, count, format, input);
        EXPECT_EQ(here.status, status) << device << " " << property;
        EXPECT_EQ(Read(*network, device, property, count, format, input), here) << device << " " << property;
    }
}

TEST_F(NetworkSuite, WritesWithoutACertificateComeFromLoopbackAsTheWriterTheyNameAndOnlyFiniteValues) {
    // user, value written, status; the test's calls come from 127.0.0.1 (the rule for other peers: the
    // write gate's table)
    const std::tuple<const char*, float, vire::Status> cases[] = {
        {"operator", 321.5f, vire::kOk},
        {"intruder", 2.0f, vire::kAccessDenied},  // not one of the simulation's writers
        {"operator", std::numeric_limits<float>::quiet_NaN(), vire::kInvalidInput},
        {"operator", -std::numeric_limits<float>::infinity(), vire::kInvalidInput},
    };
    float expected = 0;
    auto transport = Transport();
    for (const auto& [user, value, status] : cases) {
        vire::SetUserName(user);
        EXPECT_EQ(sim_test::Write(*transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[7]", value), status)
            << user << " " << value;
        if (status == vire::kOk) expected = value;
        EXPECT_EQ(Read(*transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[7]", 1).values, std::vector<float>{expected})
            << user << " " << value;
    }
    vire::SetUserName("");
}

}  // namespace
}  // namespace net_test
