// Names in etcd, names files and the shards.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include "net/device_server.h"
#include "net/environment.h"
#include "net/name_client.h"
#include "net/etcd_client.h"
#include "network_fixture.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace net_test {
namespace {

class Names : public NetworkSuite {
protected:
    // What etcd holds for a name, as a client reads it.
    static std::string InEtcd(const std::string& name) {
        std::map<std::string, std::string> keys;
        int64_t revision = 0;
        net::EtcdClient(net::EtcdSettingsFrom(Etcd().endpoint))
            .GetPrefix(net::NameKey(name), keys, revision, std::chrono::seconds(1));
        return keys.empty() ? "" : keys.begin()->second;
    }
};

TEST_F(Names, OnlyTheServersCredentialsRegisterANameAndReadersCannot) {
    // user, password, may register
    const std::tuple<std::string, std::string, bool> cases[] = {
        {"", "", false},
        {"lumiscope-reader", Etcd().readerPassword, false},
        {"lumiscope-server", "wrong", false},
        {"lumiscope-server", Etcd().serverPassword, true},
    };
    for (const auto& [user, password, allowed] : cases) {
        net::EtcdClient etcd(net::EtcdSettings{{Etcd().endpoint}, user, password});
        const grpc::Status status = etcd.Put(net::NameKey("/ORKA/BPMQ1"), "rogue:1", 0, std::chrono::seconds(1));
        EXPECT_EQ(status.ok(), allowed) << user << ": " << status.error_message();
    }
    EXPECT_EQ(InEtcd("/ORKA/BPMQ1"), "rogue:1");  // the one that may: a server's credentials
    devices.Stop();
    EXPECT_EQ(InEtcd("/ORKA/BLMSRV"), "");  // a clean stop withdraws its names at once
    ASSERT_TRUE(StartDevices());  // registered by the time it says it listens
    EXPECT_EQ(InEtcd("/ORKA/BPMQ1"), devices.Address());
}

TEST_F(Names, AKilledServerVanishesWhenItsLeaseEndsAndClientsFollowItToItsNewPortByTheWatch) {
    net::NameResolver resolver(Etcd().endpoint, "");
    std::string address;
    ASSERT_EQ(resolver.Resolve("/ORKA/BPMQ1/ORBIT", 500, address), vire::kOk);
    EXPECT_EQ(address, devices.Address());
    const std::string old = devices.Address();
    devices.Kill();
    EXPECT_EQ(InEtcd("/ORKA/BPMQ1"), old);  // nobody withdrew it
    EXPECT_TRUE(WaitUntil([] { return InEtcd("/ORKA/BPMQ1").empty(); }, std::chrono::seconds(5)));
    ASSERT_TRUE(StartDevices());
    ASSERT_NE(devices.Address(), old);
    // Nothing is forgotten or asked again: the watch brings the new address.
    EXPECT_TRUE(WaitUntil(
        [&] { return resolver.Resolve("/ORKA/BPMQ1/ORBIT", 0, address) == vire::kOk && address == devices.Address(); },
        std::chrono::milliseconds(500)));
}

TEST(NameLookup, EndpointsAreCommaSeparatedWithOrWithoutScheme) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"a:1", {"a:1"}}, {" a:1, http://b:2,,https://c:3 ", {"a:1", "b:2", "c:3"}}, {"", {}}, {",", {}}};
    for (const auto& [text, endpoints] : cases) EXPECT_EQ(net::EtcdSettingsFrom(text).endpoints, endpoints) << text;
}

TEST(NameLookup, AddressesNameTheirServersAndNamesFilesAnswerWhereEtcdDoesNot) {
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
    // An etcd that is not there: the file answers, "*" for the rest.
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
    // LUMISCOPE_TRANSPORT, LUMISCOPE_NAMES_FILE, a names file in the configuration, "address | names file"
    // chosen ("" for no network)
    const std::string inConfig = config + "/lumiscope-names.txt";
    const std::tuple<const char*, const char*, bool, std::string> cases[] = {
        {"", "", false, ""}, {"sim", "", false, ""}, {"Network", "", false, ""},
        {"network", "", false, "names-host:5900 | "},
        {"network", "", true, "names-host:5900 | " + inConfig},
        {"network", "/site/names.txt", true, "names-host:5900 | /site/names.txt"},
    };
    setenv("LUMISCOPE_NAMES", "names-host:5900", 1);
    for (const auto& [transport, namesFile, hasFile, chosen] : cases) {
        setenv("LUMISCOPE_TRANSPORT", transport, 1);
        setenv("LUMISCOPE_NAMES_FILE", namesFile, 1);
        if (hasFile) std::ofstream(inConfig) << "* a:1\n";
        net::NetworkSettings settings;
        const bool network = net::NetworkSettingsFromEnvironment(config, settings);
        EXPECT_EQ(network ? settings.namesAddress + " | " + settings.namesFile : "", chosen) << transport << namesFile;
    }
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
}  // namespace net_test
