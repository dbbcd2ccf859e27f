// A name service and one device server serving the whole sample
// configuration, started once for a test suite, and a NetworkTransport on them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "net/network_transport.h"
#include "../sim/transport_read.h"
#include "server_processes.h"
#include "sim/simulated_accelerator.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net_test {

// The simulation's settings every server process and in-process twin share.
inline const std::map<std::string, std::string> kSimEnvironment{
    {"LUMISCOPE_SIM_SEED", "7"},
    {"LUMISCOPE_SIM_WRITERS", "operator"},
    {"LUMISCOPE_SIM_FAULTS", "/ORKA/BPMQ2=slow,/VESTA/BLMSRV=code:36"},
    {"LUMISCOPE_WRITE_HOSTS", "opsconsole,10.9.0.0/16"},
};

// The simulated accelerator in this process, with the servers' settings.
inline std::shared_ptr<sim::SimulatedAccelerator> LocalTwin() {
    for (const auto& [name, value] : kSimEnvironment) setenv(name.c_str(), value.c_str(), 1);
    return std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR);
}

using sim_test::Answer;
using sim_test::Read;

class NetworkSuite : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        names = std::make_unique<ServerProcess>();
        devices = std::make_unique<ServerProcess>();
        if (!names->Start("lumiscope-names", {"--listen", "127.0.0.1:0"})) return;
        devices->Start("lumiscope-devserver",
                       // A short lease: the later tests need the heartbeats.
                       {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--shard", "0/1", "--names", names->Address(),
                        "--lease-ms", "900"},
                       kSimEnvironment);
    }
    static void TearDownTestSuite() {
        devices.reset();
        names.reset();
    }
    void SetUp() override {
        ASSERT_TRUE(names->Running()) << "the name service did not start";
        ASSERT_TRUE(devices->Running()) << "the device server did not start";
        // The device server registers its names as it starts listening.
        ASSERT_TRUE(WaitUntil(
            [] { return Read(*Transport(), "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 1).status == 0; },
            std::chrono::seconds(10)));
    }
    static std::shared_ptr<net::NetworkTransport> Transport(const std::string& clientHost = "opsconsole") {
        return std::make_shared<net::NetworkTransport>(net::NetworkSettings{names->Address(), "", clientHost});
    }
    static inline std::unique_ptr<ServerProcess> names;
    static inline std::unique_ptr<ServerProcess> devices;
};

}  // namespace net_test
