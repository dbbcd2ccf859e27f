// etcd for the names, one device server serving the whole sample
// configuration and an archiver, started once for a test suite, and a
// NetworkTransport on them.
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
        Etcd().BecomeReader();
        if (StartDevices()) StartArchiver();
    }
    // One etcd for every suite of the process.
    static const LocalEtcd& Etcd() {
        static const LocalEtcd etcd;
        return etcd;
    }
    static std::map<std::string, std::string> ServerEnvironment() {
        auto environment = kSimEnvironment;
        environment.merge(Etcd().ServerEnvironment());
        return environment;
    }
    static bool StartDevices(const std::vector<std::string>& more = {}) {
        // A short lease: the later tests need the heartbeats.
        std::vector<std::string> args{"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--shard", "0/1",
                                      "--names",  Etcd().endpoint,            "--lease-ms", "900"};
        args.insert(args.end(), more.begin(), more.end());
        return devices.Start("lumiscope-devserver", args, ServerEnvironment());
    }
    static bool StartArchiver() {
        return archiver.Start("lumiscope-archiver",
                              {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--db", Archive(), "--names", Etcd().endpoint,
                               "--record", "no"},
                              ServerEnvironment());
    }
    static std::string Archive() { return ::testing::TempDir() + "/archive-" + std::to_string(getpid()) + ".sqlite"; }
    void SetUp() override {
        ASSERT_FALSE(Etcd().endpoint.empty()) << "etcd did not start: see " << Etcd().directory;
        ASSERT_TRUE(devices.Running() && archiver.Running()) << "a server did not start";
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
    static std::shared_ptr<net::NetworkTransport> Transport() {
        return std::make_shared<net::NetworkTransport>(net::NetworkSettings{Etcd().endpoint, "", ""});
    }
    static inline ServerProcess devices, archiver;
};

}  // namespace net_test
