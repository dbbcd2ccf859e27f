// A name service, one device server serving the whole sample configuration
// and an archiver, started once for a test suite, and a NetworkTransport on them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
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

namespace net_test {

// The simulation's settings every server process and in-process twin share.
inline const std::map<std::string, std::string> kSimEnvironment{
    {"LUMISCOPE_SIM_SEED", "7"},
    {"LUMISCOPE_SIM_WRITERS", "operator"},
    {"LUMISCOPE_SIM_FAULTS", "/ORKA/BPMQ2=slow,/VESTA/BLMSRV=code:36"},
    {"LUMISCOPE_WRITE_HOSTS", "10.9.0.0/16"},
};

// The simulated accelerator in this process, with the servers' settings.
inline std::shared_ptr<sim::SimulatedAccelerator> LocalTwin() {
    for (const auto& [name, value] : kSimEnvironment) setenv(name.c_str(), value.c_str(), 1);
    return std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR);
}

using sim_test::Answer;
using sim_test::Read;

// The servers of a suite run until the next suite starts them again.
class NetworkSuite : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        archiver.Stop();  // before its database goes
        std::filesystem::remove(Archive());
        if (names.Start("lumiscope-names", {"--listen", "127.0.0.1:0"}) && StartDevices()) StartArchiver();
    }
    static bool StartDevices() {
        // A short lease: the later tests need the heartbeats.
        return devices.Start("lumiscope-devserver",
                             {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--shard", "0/1", "--names", names.Address(),
                              "--lease-ms", "900"},
                             kSimEnvironment);
    }
    static bool StartArchiver() {
        return archiver.Start("lumiscope-archiver",
                              {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--db", Archive(), "--names", names.Address(),
                               "--record", "no"},
                              kSimEnvironment);
    }
    static std::string Archive() { return ::testing::TempDir() + "/archive-" + std::to_string(getpid()) + ".sqlite"; }
    void SetUp() override {
        ASSERT_TRUE(names.Running() && devices.Running() && archiver.Running()) << "a server did not start";
        ASSERT_TRUE(Registered());
    }
    // The servers register their names as they start listening.
    static bool Registered() {
        return WaitUntil([] {
            auto transport = Transport();
            return Read(*transport, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 1).status == 0 &&
                   Read(*transport, "/ORKA/OKHISTORY/#1", "LOSS.INT", 1, vire::kFormatFltInt).status != vire::kLinkError;
        }, std::chrono::seconds(10));
    }
    static std::shared_ptr<net::NetworkTransport> Transport(const std::string& clientHost = "opsconsole") {
        return std::make_shared<net::NetworkTransport>(net::NetworkSettings{names.Address(), "", clientHost});
    }
    static inline ServerProcess names, devices, archiver;
};

}  // namespace net_test
