// The name service's table, names files and the shards.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include "net/device_server.h"
#include "net/environment.h"
#include "net/name_client.h"
#include "net/name_registry.h"
#include "net/wire_codec.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace {

class Registry : public ::testing::Test {
protected:
    // One call; the answer's text for RESOLVE.
    vire::Status Ask(const std::string& property, int16_t access, const std::string& text, std::string* answer = nullptr,
                     int32_t room = 64, int16_t format = vire::kFormatText, const char* device = net::kNamesDevice) {
        const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
        std::vector<std::byte> in(bytes, bytes + text.size()), out(static_cast<size_t>(room));
        const auto request = net::EncodeRequest(device, property, vire::DataObject{room, vire::kFormatText, "", out},
                                                vire::DataObject{static_cast<int32_t>(text.size()), format, "", in},
                                                access, 500, {});
        net::ServerBuffers buffers;
        net::PrepareBuffers(request, 512, buffers);
        const vire::Status status = registry.Answer(request, buffers, net::CallContext{}, 500);
        if (answer != nullptr && status == 0)
            answer->assign(reinterpret_cast<const char*>(buffers.out.data()), size_t(buffers.outObject.count));
        return status;
    }
    std::string Where(const std::string& name) {
        std::string address;
        Ask("RESOLVE", vire::kAccessRead, name, &address);
        return address;
    }
    vire::Status Register(const std::string& text) { return Ask("REGISTER", vire::kAccessWrite, text); }
    int64_t now = 1000;
    net::NameRegistry registry{[this] { return now; }};
};

TEST_F(Registry, LeasesRunOutUnlessRenewedAndOnlyTheHolderWithdrawsAName) {
    ASSERT_EQ(Register("/ORKA/BPMQ1 host-a:5001 3000"), 0);
    ASSERT_EQ(Register("OKHISTORY host-h:5010 1"), 0);  // raised to the shortest lease
    now += net::NameRegistry::kShortestLeaseMs - 1;
    EXPECT_EQ(Where("OKHISTORY"), "host-h:5010");
    now += 1;
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "OKHISTORY"), vire::kUnknownDevice);
    now += 2000;  // 2999 ms after registering: a heartbeat renews
    ASSERT_EQ(Register("/ORKA/BPMQ1 host-a:5001 3000"), 0);
    now += 2999;
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "host-a:5001");
    // A server restarted elsewhere takes the name over; the old one leaving late changes nothing.
    ASSERT_EQ(Register("/ORKA/BPMQ1 host-b:5001 3000"), 0);
    ASSERT_EQ(Ask("UNREGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-a:5001"), 0);
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "host-b:5001");
    ASSERT_EQ(Ask("UNREGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-b:5001"), 0);
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1"), vire::kUnknownDevice);
}

TEST_F(Registry, MalformedCallsGetTheirCodesAndRegisterNothing) {
    ASSERT_EQ(Register("/ORKA/LONG a-long-host-name.example.org:5001 3000"), 0);
    // property, access, input text, room for the answer, input format, status
    const std::tuple<const char*, int16_t, const char*, int32_t, int16_t, vire::Status> cases[] = {
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1", 64, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 soon", 64, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 -5", 64, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 5 6", 64, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessRead, "/ORKA/X host:1 500", 64, vire::kFormatText, vire::kIllegalAccess},
        {"RESOLVE", vire::kAccessWrite, "/ORKA/LONG", 64, vire::kFormatText, vire::kIllegalAccess},
        {"RESOLVE", vire::kAccessRead, "/ORKA/LONG", 10, vire::kFormatText, vire::kOutOfRange},
        {"RESOLVE", vire::kAccessRead, "/ORKA/LONG", 64, vire::kFormatLong, vire::kFormatMismatch},
        {"LIST", vire::kAccessRead, "", 64, vire::kFormatText, vire::kUnknownProperty},
    };
    for (const auto& [property, access, text, room, format, status] : cases)
        EXPECT_EQ(Ask(property, access, text, nullptr, room, format), status) << property << " " << text;
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "/ORKA/LONG", nullptr, 64, vire::kFormatText, "/ORKA/BPMQ1"),
              vire::kLinkError);  // not the name service's device
    EXPECT_EQ(Where("/ORKA/X"), "");
}

TEST(NameLookup, AddressesNameTheirServersAndNamesFilesAnswerWhereTheServiceDoesNot) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"/ORKA/BPMQ1/ORBIT", {"/ORKA/BPMQ1", "BPMQ1"}}, {"/ORKA/OKHISTORY/BLM.S01.1", {"/ORKA/OKHISTORY", "OKHISTORY"}},
        {"/ORKA/BLMSRV", {"/ORKA/BLMSRV", "BLMSRV"}},    {"OKHISTORY/#1", {"OKHISTORY"}},
        {"/ORKA", {}},                                   {"", {}},
    };
    for (const auto& [address, names] : cases) EXPECT_EQ(net::ServerNamesOf(address), names) << address;

    const std::string path = ::testing::TempDir() + "/names-file-" + std::to_string(getpid());
    std::ofstream(path) << "# site names\n/ORKA/BPMQ1 dev1:5901   # first\n\n  OKHISTORY\tarch:5910\n"
                           "no-address\n/ORKA/X a:1 b:2\n* dev2:5901\n/ORKA/BPMQ1 dev9:5901\n";
    EXPECT_EQ(net::ReadNamesFile(path), (std::map<std::string, std::string>{
                                            {"/ORKA/BPMQ1", "dev9:5901"}, {"OKHISTORY", "arch:5910"}, {"*", "dev2:5901"}}));
    // A name service that is not there: the file answers, "*" for the rest.
    net::NameResolver resolver("127.0.0.1:1", path);
    std::string address;
    EXPECT_EQ(resolver.Resolve("/ORKA/OKHISTORY/BLM.S01.1", 100, address), 0);
    EXPECT_EQ(address, "arch:5910");
    EXPECT_EQ(resolver.Resolve("/VESTA/BLMSRV/LOSS", 100, address), 0);
    EXPECT_EQ(address, "dev2:5901");
    EXPECT_EQ(net::NameResolver("", path + ".missing").Resolve("/VESTA/BLMSRV/LOSS", 100, address), vire::kLinkError);
}

TEST(NameLookup, TheEnvironmentChoosesTheNetworkAndWhereItsNamesAre) {
    const std::string config = ::testing::TempDir() + "/env-config-" + std::to_string(getpid());
    std::filesystem::create_directories(config);
    net::NetworkSettings settings;
    unsetenv("LUMISCOPE_NAMES_FILE");
    for (const char* other : {"", "sim", "Network"}) {
        setenv("LUMISCOPE_TRANSPORT", other, 1);
        EXPECT_FALSE(net::NetworkSettingsFromEnvironment(config, settings)) << other;
    }
    setenv("LUMISCOPE_TRANSPORT", "network", 1);
    setenv("LUMISCOPE_NAMES", "names-host:5900", 1);
    ASSERT_TRUE(net::NetworkSettingsFromEnvironment(config, settings));
    EXPECT_EQ(settings.namesAddress, "names-host:5900");
    EXPECT_EQ(settings.namesFile, "");  // the configuration has none
    std::ofstream(config + "/lumiscope-names.txt") << "* a:1\n";
    ASSERT_TRUE(net::NetworkSettingsFromEnvironment(config, settings));
    EXPECT_EQ(settings.namesFile, config + "/lumiscope-names.txt");
    setenv("LUMISCOPE_NAMES_FILE", "/site/names.txt", 1);
    ASSERT_TRUE(net::NetworkSettingsFromEnvironment(config, settings));
    EXPECT_EQ(settings.namesFile, "/site/names.txt");
    for (const char* name : {"LUMISCOPE_TRANSPORT", "LUMISCOPE_NAMES", "LUMISCOPE_NAMES_FILE"}) unsetenv(name);
}

TEST(Shards, EveryDeviceServerIsServedByExactlyOneShardAndHistoryServersByNone) {
    const auto servers = net::DeviceServerAddresses(sim::BuildModel(LUMISCOPE_SAMPLE_CONFIG_DIR, 7));
    for (const char* expected : {"/ORKA/BPMQ1", "/ORKA/BLMSRV", "/LYRAS/PSSTEER", "/KALM/BPMSRV"})
        EXPECT_NE(std::find(servers.begin(), servers.end(), expected), servers.end()) << expected;
    for (const char* history : {"/ORKA/BPMHIST", "/ORKA/BLMHIST", "/ORKA/OKHISTORY"})
        EXPECT_EQ(std::find(servers.begin(), servers.end(), history), servers.end()) << history;
    for (int n : {1, 3, 7}) {
        std::map<std::string, int> served;
        for (int i = 0; i < n; ++i)
            for (const auto& s : net::ShareOf(servers, i, n)) served[s] += 1;
        EXPECT_EQ(served.size(), servers.size()) << n;
        for (const auto& [s, times] : served) EXPECT_EQ(times, 1) << s << " in " << n;
    }
    EXPECT_TRUE(net::ShareOf(servers, 3, 3).empty());
}

}  // namespace
