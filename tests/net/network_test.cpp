// The network transport against real server processes on loopback.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "network_fixture.h"
#include "sim/simulated_accelerator.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net_test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The shortest of a few tries: a behaviour that waits (for a back-off, for
// the whole time-out) is slow every time, while a loaded machine delays an
// odd try only now and then.
milliseconds ShortestOf(int tries, const std::function<vire::Status()>& call, vire::Status expected) {
    auto best = milliseconds::max();
    for (int i = 0; i < tries; ++i) {
        const auto start = Clock::now();
        EXPECT_EQ(call(), expected);
        best = std::min(best, std::chrono::duration_cast<milliseconds>(Clock::now() - start));
    }
    return best;
}

std::string NamesFile(const std::string& text) {
    const std::string path = ::testing::TempDir() + "/names-" + std::to_string(getpid()) + ".txt";
    std::ofstream(path) << text;
    return path;
}

TEST(NetworkTransportAlone, ADeadPortOrAnUnknownNameAnswersLinkErrorAtOnce) {
    const std::string file = NamesFile("# dead\n/ORKA/DEAD 127.0.0.1:" + std::to_string(DeadPort()) + "\n");
    net::NetworkTransport transport(net::NetworkSettings{"", file, ""});
    // A refused connection is known at once: well under the 1000 ms time-out.
    EXPECT_LT(ShortestOf(3, [&] { return Read(transport, "/ORKA/DEAD/X", "P", vire::kFormatSingle, 4).status; },
                         vire::kLinkError),
              milliseconds(50));
    EXPECT_LT(ShortestOf(3, [&] { return Read(transport, "/ORKA/NOWHERE/X", "P", vire::kFormatSingle, 4).status; },
                         vire::kLinkError),
              milliseconds(50));
}

TEST(NetworkTransportAlone, GarbageFromAServerIsAFailedCallAndNothingElse) {
    // A "server" that answers every connection with noise and hangs up.
    int port = 0;
    const int listener = LoopbackListener(port);
    ASSERT_NE(port, 0);
    std::atomic<bool> done{false};
    std::thread noise([&] {
        for (int i = 0; i < 20 && !done; ++i) {
            const int client = accept(listener, nullptr, nullptr);
            if (client < 0) return;
            std::string junk(4096, '\0');
            for (size_t k = 0; k < junk.size(); ++k) junk[k] = static_cast<char>((k * 7919 + i) & 0xFF);
            [[maybe_unused]] const auto written = write(client, junk.data(), junk.size());
            close(client);
        }
    });
    const std::string file = NamesFile("* 127.0.0.1:" + std::to_string(port) + "\n");
    net::NetworkTransport transport(net::NetworkSettings{"", file, ""});
    std::vector<std::byte> buffer(64, std::byte{0x5A});
    vire::DataObject out{8, vire::kFormatSingle, "", std::span<std::byte>(buffer).first(32)};
    const vire::Status status = transport.Call("/ORKA/NOISE/X", "P", out, {}, vire::kAccessRead, 500);
    EXPECT_TRUE(status == vire::kLinkError || status == vire::kServerError || status == vire::kTimeout) << status;
    EXPECT_EQ(out.count, 0);
    for (std::byte b : buffer) ASSERT_EQ(b, std::byte{0x5A});  // nothing written anywhere
    done = true;
    shutdown(listener, SHUT_RDWR);
    close(listener);
    noise.join();
}

class NetworkCalls : public NetworkSuite {};

TEST_F(NetworkCalls, ASlowServerAnswersTimeOutWhenTheDeadlinePasses) {
    auto transport = Transport();
    const auto shortest = ShortestOf(
        2, [&] { return Read(*transport, "/ORKA/BPMQ2/ORBIT", "ORBIT.X", vire::kFormatSingle, 32, {}, 300).status; },
        vire::kTimeout);
    EXPECT_GE(shortest, milliseconds(295));  // it really waited for the deadline
    EXPECT_LT(shortest, milliseconds(350));  // and not for the engine's own ideas of a time-out
}

TEST_F(NetworkCalls, DeterministicAnswersAreTheSimulatedAcceleratorsByteForByte) {
    for (const auto& [name, value] : kSimEnvironment) setenv(name.c_str(), value.c_str(), 1);
    sim::SimulatedAccelerator local(LUMISCOPE_SAMPLE_CONFIG_DIR);
    auto network = Transport();
    struct Case {
        const char* device;
        const char* property;
        int16_t format;
        int32_t count;
    };
    const Case cases[] = {
        {"/ORKA/BPMQ1/#0", "ORBIT.X.NAM", vire::kFormatName16, 2000},
        {"/LYRAS/PSSTEER/#0", "CURRENT.SET.NAM", vire::kFormatName16, 2000},  // continued names
        {"/ORKA/BCMSRV/#0", "CHARGE.NAM", vire::kFormatName16, 5},             // "#0": no names
        {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD", vire::kFormatSingle, 96},
        {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[95]", vire::kFormatSingle, 1},
        {"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[96]", vire::kFormatSingle, 1},  // 14
        {"/ORKA/BLMSRV/LOCATIONS", "LOCATION", vire::kFormatName32, 96},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatDouble, 32},             // 13
        {"/ORKA/BPMQ1/NOPE", "ORBIT.X", vire::kFormatSingle, 32},              // 11
        {"/ORKA/BPMQ1/ORBIT", "NOPE", vire::kFormatSingle, 32},                // 12
        {"/ORKA/NOSUCH/ORBIT", "ORBIT.X", vire::kFormatSingle, 32},            // 2
        {"/VESTA/BLMSRV/LOSS", "LOSS.FAST", vire::kFormatSingle, 24},          // fault code:36
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatSingle, -1},             // 14
    };
    for (const Case& c : cases) {
        const Answer here = Read(local, c.device, c.property, c.format, c.count);
        const Answer there = Read(*network, c.device, c.property, c.format, c.count);
        EXPECT_EQ(there.status, here.status) << c.device << " " << c.property;
        EXPECT_EQ(there.count, here.count) << c.device << " " << c.property;
        EXPECT_EQ(there.bytes, here.bytes) << c.device << " " << c.property;
    }
    // Live values move with time; their shape does not.
    const Answer live = Read(*network, "/ORKA/BPMQ3/ORBIT", "ORBIT.X", vire::kFormatSingle, 32);
    ASSERT_EQ(live.status, 0);
    ASSERT_EQ(live.count, 32);
    for (int32_t i = 0; i < 32; ++i) EXPECT_TRUE(std::isfinite(vire::LoadFloat(live.bytes, 4 * static_cast<size_t>(i))));
}

TEST_F(NetworkCalls, ThresholdWritesNeedAWriterOnAnAllowedHost) {
    struct Case {
        const char* user;
        const char* host;
        float value;
        vire::Status status;
    };
    const Case cases[] = {
        {"operator", "opsconsole", 321.5f, vire::kOk},
        {"guest", "opsconsole", 1.0f, vire::kAccessDenied},     // user off the list
        {"operator", "intruder", 2.0f, vire::kAccessDenied},    // host off the list, loopback not listed
        {"operator", "", 3.0f, vire::kAccessDenied},            // no host given
        {"operator", "OPSCONSOLE", 654.25f, vire::kOk},         // host names ignore letter case
    };
    float expected = 0;
    for (const Case& c : cases) {
        vire::SetUserName(c.user);
        auto transport = Transport(c.host);
        EXPECT_EQ(WriteSingle(*transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[7]", c.value), c.status)
            << c.user << "@" << c.host;
        if (c.status == vire::kOk) expected = c.value;
        const Answer now = Read(*transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[7]", vire::kFormatSingle, 1);
        ASSERT_EQ(now.count, 1);
        EXPECT_EQ(vire::LoadFloat(now.bytes, 0), expected) << c.user << "@" << c.host;
    }
    vire::SetUserName("");
}

TEST_F(NetworkCalls, NoiseSentToAServerLeavesItServing) {
    const std::string& address = devices->Address();
    const size_t colon = address.rfind(':');
    for (const std::string& junk : {std::string("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n") + std::string(9, '\xFF'),
                                   std::string(2048, '\xA5')}) {
        const int s = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in peer{AF_INET, htons(static_cast<uint16_t>(std::stoi(address.substr(colon + 1)))),
                         {htonl(INADDR_LOOPBACK)}, {}};
        ASSERT_EQ(connect(s, reinterpret_cast<sockaddr*>(&peer), sizeof peer), 0);
        [[maybe_unused]] const auto written = write(s, junk.data(), junk.size());
        close(s);
    }
    auto transport = Transport();
    EXPECT_EQ(Read(*transport, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatSingle, 32).count, 32);
}

}  // namespace
}  // namespace net_test
