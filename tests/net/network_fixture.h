// A name service and one device server serving the whole sample
// configuration, started once for a test suite, and a NetworkTransport on them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "net/network_transport.h"
#include "server_processes.h"
#include "vire/data_object.h"
#include "vire/transport.h"

namespace net_test {

// The simulation's settings every server process and in-process twin share.
inline const std::map<std::string, std::string> kSimEnvironment{
    {"LUMISCOPE_SIM_SEED", "7"},
    {"LUMISCOPE_SIM_WRITERS", "operator"},
    {"LUMISCOPE_SIM_FAULTS", "/ORKA/BPMQ2=slow,/VESTA/BLMSRV=code:36"},
    {"LUMISCOPE_WRITE_HOSTS", "opsconsole,10.9.0.0/16"},
};

class NetworkSuite : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override;

    static std::shared_ptr<net::NetworkTransport> Transport(const std::string& clientHost = "opsconsole");

    static std::unique_ptr<ServerProcess> names;
    static std::unique_ptr<ServerProcess> devices;
};

struct Answer {
    vire::Status status = -1;
    int32_t count = 0;
    std::vector<std::byte> bytes;  // the delivered elements only
};

// One read through a transport: `count` elements of `format`, LONG input.
Answer Read(vire::Transport& transport, const std::string& device, const std::string& property, int16_t format,
            int32_t count, const std::vector<int32_t>& input = {}, int32_t timeoutMs = 1000);
vire::Status WriteSingle(vire::Transport& transport, const std::string& device, const std::string& property,
                         float value);

}  // namespace net_test
