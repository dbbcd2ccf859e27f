// The name service's table, names files, and who may write.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "net/allow_list.h"
#include "net/device_server.h"
#include "net/link_service.h"
#include "net/name_client.h"
#include "net/name_registry.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace {

class Registry : public ::testing::Test {
protected:
    vire::Status Ask(const std::string& property, int16_t access, const std::string& text, std::string* answer = nullptr,
                     int32_t room = 64, const std::string& device = net::kNamesDevice,
                     int16_t format = vire::kFormatText) {
        net::LinkRequest request;
        request.set_device(device);
        request.set_property(property);
        request.set_access(access);
        request.set_in_format(format);
        request.set_in_count(static_cast<int32_t>(text.size()));
        request.set_in_data(text);
        request.set_out_format(vire::kFormatText);
        request.set_out_count(room);
        request.set_out_capacity(room);
        net::ServerBuffers buffers;
        net::PrepareBuffers(request, buffers);
        const vire::Status status = registry.Answer(request, buffers, net::CallContext{}, 500);
        if (answer != nullptr)
            *answer = status == 0 ? std::string(reinterpret_cast<const char*>(buffers.out.data()),
                                                static_cast<size_t>(buffers.outObject.count))
                                  : "";
        return status;
    }
    std::string Where(const std::string& name) {
        std::string address;
        Ask("RESOLVE", vire::kAccessRead, name, &address);
        return address;
    }
    int64_t now = 1000;
    net::NameRegistry registry{[this] { return now; }};
};

TEST_F(Registry, ANameLivesAsLongAsItsLeaseAndHeartbeatsRenewIt) {
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 127.0.0.1:5001 3000"), 0);
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "OKHISTORY 127.0.0.1:5010 1"), 0);  // raised to the shortest
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "127.0.0.1:5001");
    now += net::NameRegistry::kShortestLeaseMs - 1;
    EXPECT_EQ(Where("OKHISTORY"), "127.0.0.1:5010");
    now += 1;
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "OKHISTORY"), vire::kUnknownDevice);
    now += 2000;  // 2999 ms after registering
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 127.0.0.1:5001 3000"), 0);  // heartbeat
    now += 2999;
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "127.0.0.1:5001");
    now += 1;
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1"), vire::kUnknownDevice);
}

TEST_F(Registry, OnlyTheHolderWithdrawsANameAndALaterServerTakesItOver) {
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-a:1 5000"), 0);
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-b:2 5000"), 0);
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "host-b:2");
    ASSERT_EQ(Ask("UNREGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-a:1"), 0);  // the old one leaving late
    EXPECT_EQ(Where("/ORKA/BPMQ1"), "host-b:2");
    ASSERT_EQ(Ask("UNREGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 host-b:2"), 0);
    EXPECT_EQ(Ask("RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1"), vire::kUnknownDevice);
}

TEST_F(Registry, MalformedCallsGetTheirCodes) {
    ASSERT_EQ(Ask("REGISTER", vire::kAccessWrite, "/ORKA/BPMQ1 a-very-long-host-name.example.org:5001 3000"), 0);
    struct Case {
        const char* property;
        int16_t access;
        const char* text;
        int32_t room;
        const char* device;
        int16_t format;
        vire::Status status;
    };
    const Case cases[] = {
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1", 64, net::kNamesDevice, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 soon", 64, net::kNamesDevice, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 -5", 64, net::kNamesDevice, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessWrite, "/ORKA/X host:1 5 6", 64, net::kNamesDevice, vire::kFormatText, vire::kInvalidInput},
        {"REGISTER", vire::kAccessRead, "/ORKA/X host:1 500", 64, net::kNamesDevice, vire::kFormatText, vire::kIllegalAccess},
        {"RESOLVE", vire::kAccessWrite, "/ORKA/BPMQ1", 64, net::kNamesDevice, vire::kFormatText, vire::kIllegalAccess},
        {"RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1", 10, net::kNamesDevice, vire::kFormatText, vire::kOutOfRange},
        {"RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1", 64, net::kNamesDevice, vire::kFormatLong, vire::kFormatMismatch},
        {"RESOLVE", vire::kAccessRead, "", 64, net::kNamesDevice, vire::kFormatText, vire::kUnknownDevice},
        {"LIST", vire::kAccessRead, "", 64, net::kNamesDevice, vire::kFormatText, vire::kUnknownProperty},
        {"RESOLVE", vire::kAccessRead, "/ORKA/BPMQ1", 64, "/ORKA/BPMQ1", vire::kFormatText, vire::kLinkError},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Ask(c.property, c.access, c.text, nullptr, c.room, c.device, c.format), c.status)
            << c.property << " \"" << c.text << "\"";
    EXPECT_EQ(Where("/ORKA/X"), "");  // nothing half-registered
}

TEST(NameLookup, AddressesNameTheirServerAndNamesFilesSkipWhatTheyCannotUse) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"/ORKA/BPMQ1/ORBIT", {"/ORKA/BPMQ1", "BPMQ1"}},
        {"/ORKA/OKHISTORY/BLM.S01.1", {"/ORKA/OKHISTORY", "OKHISTORY"}},
        {"/ORKA/BLMSRV", {"/ORKA/BLMSRV", "BLMSRV"}},
        {"OKHISTORY", {"OKHISTORY"}},
        {"OKHISTORY/#1", {"OKHISTORY"}},
        {"/ORKA", {}},
        {"", {}},
    };
    for (const auto& [address, names] : cases) EXPECT_EQ(net::ServerNamesOf(address), names) << address;

    const std::string path = ::testing::TempDir() + "/names-file-" + std::to_string(getpid());
    std::ofstream(path) << "# site names\n/ORKA/BPMQ1 dev1:5901   # first\n\n  OKHISTORY\tarch:5910\n"
                           "broken-line-without-address\n/ORKA/X a:1 b:2\n* dev2:5901\n/ORKA/BPMQ1 dev9:5901\n";
    const auto names = net::ReadNamesFile(path);
    EXPECT_EQ(names, (std::map<std::string, std::string>{
                         {"/ORKA/BPMQ1", "dev9:5901"}, {"OKHISTORY", "arch:5910"}, {"*", "dev2:5901"}}));
    EXPECT_TRUE(net::ReadNamesFile(path + ".missing").empty());

    net::NameResolver resolver("", path);
    std::string address;
    EXPECT_EQ(resolver.Resolve("/ORKA/OKHISTORY/BLM.S01.1", 100, address), 0);
    EXPECT_EQ(address, "arch:5910");
    EXPECT_EQ(resolver.Resolve("/VESTA/BLMSRV/LOSS", 100, address), 0);
    EXPECT_EQ(address, "dev2:5901");
    net::NameResolver none("", "");
    EXPECT_EQ(none.Resolve("/VESTA/BLMSRV/LOSS", 100, address), vire::kLinkError);
}

TEST(WriteHosts, HostNamesMatchWhatTheClientSaysAndNetworksWhereTheCallCameFrom) {
    struct Case {
        const char* list;
        const char* claimed;
        const char* peer;
        bool allowed;
    };
    const Case cases[] = {
        {"opsconsole", "opsconsole", "10.0.0.7", true},
        {"opsconsole", "OpsConsole", "10.0.0.7", true},
        {"opsconsole", "opsconsole2", "10.0.0.7", false},
        {"opsconsole", "", "10.0.0.7", false},
        {"10.1.0.0/16", "anyone", "10.1.255.3", true},
        {"10.1.0.0/16", "anyone", "10.2.0.3", false},
        {"10.1.2.3", "", "10.1.2.3", true},
        {"10.1.2.3", "", "10.1.2.4", false},
        {"10.1.2.3/31", "", "10.1.2.2", true},
        {"0.0.0.0/0", "", "192.168.1.1", true},
        {"127.0.0.0/8", "", "::1", false},  // families do not mix
        {"::1", "", "::1", true},
        {"fd00::/8", "", "fd12::5", true},
        {"fd00::/8", "", "fe80::1", false},
        {"10.1.0.0/16", "10.1.0.9", "10.9.9.9", false},  // an address claimed as a host name proves nothing
        {"", "opsconsole", "127.0.0.1", false},
        {net::kDefaultWriteHosts, "", "127.0.0.1", true},
        {net::kDefaultWriteHosts, "", "192.168.0.2", false},
        {net::kDefaultWriteHosts, "localhost", "192.168.0.2", true},
    };
    for (const Case& c : cases) {
        net::HostAllowList list;
        std::string problem;
        ASSERT_TRUE(list.Parse(c.list, problem)) << c.list << ": " << problem;
        EXPECT_EQ(list.Allows(c.claimed, c.peer), c.allowed) << c.list << " / " << c.claimed << " / " << c.peer;
    }
    for (const char* bad : {"10.0.0.0/33", "::1/129", "10.0.0.0/x", "host name", "a/b", "10.0.0.0/"}) {
        net::HostAllowList list;
        std::string problem;
        EXPECT_FALSE(list.Parse(std::string("ok-host,") + bad, problem)) << bad;
        EXPECT_NE(problem.find(bad), std::string::npos) << problem;
        EXPECT_TRUE(list.Allows("ok-host", ""));  // what could be read stays
    }
}

TEST(WriteHosts, PeersAreReadFromTheEnginesNotation) {
    const std::pair<const char*, const char*> cases[] = {
        {"ipv4:127.0.0.1:5000", "127.0.0.1"}, {"ipv6:[::1]:5000", "::1"},
        {"ipv6:%5B::1%5D:5000", "::1"},       {"ipv6:[fd00::1:2]:1", "fd00::1:2"},
        {"unix:/tmp/socket", "unix"},         {"", ""},
    };
    for (const auto& [peer, address] : cases) EXPECT_EQ(net::PeerAddress(peer), address) << peer;
}

TEST(Shards, EveryDeviceServerIsServedByExactlyOneShardAndHistoryServersByNone) {
    const sim::Model model = sim::BuildModel(LUMISCOPE_SAMPLE_CONFIG_DIR, 7);
    const auto servers = net::DeviceServerAddresses(model);
    ASSERT_GT(servers.size(), 10u);
    EXPECT_TRUE(std::is_sorted(servers.begin(), servers.end()));
    for (const char* expected : {"/ORKA/BPMQ1", "/ORKA/BLMSRV", "/LYRAS/PSSTEER", "/KALM/BPMSRV"})
        EXPECT_NE(std::find(servers.begin(), servers.end(), expected), servers.end()) << expected;
    for (const char* history : {"/ORKA/BPMHIST", "/ORKA/BLMHIST", "/ORKA/OKHISTORY"})
        EXPECT_EQ(std::find(servers.begin(), servers.end(), history), servers.end()) << history;
    for (int n : {1, 2, 3, 7}) {
        std::map<std::string, int> served;
        for (int i = 0; i < n; ++i)
            for (const auto& s : net::ShareOf(servers, i, n)) served[s] += 1;
        EXPECT_EQ(served.size(), servers.size()) << n;
        for (const auto& [s, times] : served) EXPECT_EQ(times, 1) << s << " in " << n;
    }
    EXPECT_TRUE(net::ShareOf(servers, 3, 3).empty());
    EXPECT_TRUE(net::ShareOf(servers, -1, 3).empty());
    EXPECT_TRUE(net::ShareOf(servers, 0, 0).empty());
}

}  // namespace
