// Who may write: the write-host list, the write gate's rule, the TLS set-up,
// and certificate identities against a real device server.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <tuple>

#include "net/allow_list.h"
#include "net/network_transport.h"
#include "net/tls_settings.h"
#include "net/write_gate.h"
#include "network_fixture.h"
#include "server_processes.h"

namespace net_test {
namespace {

TEST(WriteHosts, AddressesAndNetworksMatchWhereTheCallCameFromAndHostNamesTheirAddresses) {
    const auto lookup = [](const std::string& host) {
        return host == "opsconsole" ? std::vector<std::string>{"10.0.0.7", "fd00::7"} : std::vector<std::string>{};
    };
    // the list, the address the call came from, allowed
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"opsconsole", "10.0.0.7", true},       {"opsconsole", "fd00::7", true},
        {"opsconsole", "10.0.0.8", false},      {"10.1.0.0/16", "10.1.255.3", true},
        {"10.1.0.0/16", "10.2.0.3", false},     {"10.1.2.3", "10.1.2.4", false},
        {"10.1.2.3/31", "10.1.2.2", true},      {"0.0.0.0/0", "192.168.1.1", true},
        {"127.0.0.0/8", "::1", false},          {"fd00::/8", "fd12::5", true},
        {"fd00::/8", "fe80::1", false},         {"10.1.0.0/16", "::ffff:10.1.0.9", true},
        {"10.1.0.0/16", "opsconsole", false},   {"", "127.0.0.1", false},
        {net::kDefaultWriteHosts, "127.0.0.1", true}, {net::kDefaultWriteHosts, "192.168.0.2", false},
    };
    for (const auto& [text, peer, allowed] : cases) {
        net::HostAllowList list;
        std::string problem;
        ASSERT_TRUE(list.Parse(text, problem, lookup)) << text << ": " << problem;
        EXPECT_EQ(list.Allows(peer), allowed) << text << " / " << peer;
    }
    for (const char* bad : {"10.0.0.0/33", "::1/129", "10.0.0.0/x", "host name", "a/b", "nowhere"}) {
        net::HostAllowList list;
        std::string problem;
        EXPECT_FALSE(list.Parse(std::string("10.0.0.1,") + bad, problem, lookup)) << bad;
        EXPECT_NE(problem.find(bad), std::string::npos) << problem;
        EXPECT_TRUE(list.Allows("10.0.0.1"));  // what could be read stays
    }
    const std::pair<const char*, const char*> peers[] = {
        {"ipv4:127.0.0.1:5000", "127.0.0.1"}, {"ipv6:[::1]:5000", "::1"}, {"ipv6:%5B::1%5D:5000", "::1"}, {"", ""}};
    for (const auto& [peer, address] : peers) EXPECT_EQ(net::PeerAddress(peer), address) << peer;
}

TEST(WriteGate, ACertificateNamesTheWriterAndWithoutOneOnlyLoopbackWrites) {
    net::HostAllowList hosts;
    std::string problem;
    ASSERT_TRUE(hosts.Parse("10.9.0.0/16", problem));
    // user claimed, peer address, certificate's name, status, the writer
    const std::tuple<const char*, const char*, const char*, vire::Status, const char*> cases[] = {
        {"operator", "127.0.0.1", "", vire::kOk, "operator"},
        {"operator", "127.0.0.2", "", vire::kOk, "operator"},
        {"operator", "::1", "", vire::kOk, "operator"},
        {"operator", "::ffff:127.0.0.1", "", vire::kOk, "operator"},
        {"operator", "10.9.1.5", "", vire::kAccessDenied, ""},     // on the list, but nothing proves who it is
        {"operator", "192.168.4.4", "", vire::kAccessDenied, ""},  // whatever host it claims
        {"operator", "", "", vire::kAccessDenied, ""},
        {"operator", "10.9.1.5", "guest", vire::kOk, "guest"},     // the certificate names the writer
        {"", "127.0.0.1", "guest", vire::kAccessDenied, ""},       // certified writers need a listed host
        {"operator", "192.168.4.4", "operator", vire::kAccessDenied, ""},
    };
    for (const auto& [user, peer, certified, status, writer] : cases) {
        const auto verdict = net::JudgeWrite(net::CallContext{user, peer, certified}, hosts);
        EXPECT_EQ(verdict.status, status) << user << "@" << peer << " / " << certified;
        if (status == vire::kOk) {
            EXPECT_EQ(verdict.user, writer) << user << "@" << peer << " / " << certified;
        }
    }
}

TEST(TlsSetup, HalfASetUpIsRefusedNamingTheMissingPiece) {
    const std::string dir = ::testing::TempDir() + "/tls-setup-" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/a.pem") << "CERT";
    std::ofstream(dir + "/b.pem") << "KEY";
    std::ofstream(dir + "/empty.pem");
    const std::string a = dir + "/a.pem", b = dir + "/b.pem";
    // certificate, key, trusted, the problem's telling part ("" when usable), an identity
    const std::tuple<std::string, std::string, std::string, std::string, bool> cases[] = {
        {"", "", "", "", false},
        {a, b, "", "", true},
        {a, b, a, "", true},
        {"", "", a, "", false},
        {a, "", "", "LUMISCOPE_TLS_CERT is set but LUMISCOPE_TLS_KEY", false},
        {"", b, a, "LUMISCOPE_TLS_KEY is set but LUMISCOPE_TLS_CERT", false},
        {a, dir + "/none.pem", "", "LUMISCOPE_TLS_KEY names \"" + dir + "/none.pem\"", false},
        {a, b, dir + "/empty.pem", "LUMISCOPE_TLS_CA names", false},
        {dir, b, "", "LUMISCOPE_TLS_CERT names", false},  // a directory is no certificate
    };
    for (const auto& [cert, key, ca, problem, identity] : cases) {
        const auto setup = net::ReadTlsSetup([&](const char* name) {
            const std::string n = name;
            return n == "LUMISCOPE_TLS_CERT" ? cert : n == "LUMISCOPE_TLS_KEY" ? key : n == "LUMISCOPE_TLS_CA" ? ca : "";
        });
        const std::string label = cert + " | " + key + " | " + ca;
        EXPECT_TRUE(problem.empty() ? setup.problem.empty() : setup.problem.find(problem) != std::string::npos)
            << label << ": " << setup.problem;
        EXPECT_EQ(setup.HasIdentity(), identity) << label;
        EXPECT_EQ(setup.key, identity ? "KEY" : "") << label;
    }
}

// A site authority, a server certificate for 127.0.0.1 and client
// certificates, made with the openssl tool.
struct TestAuthority {
    std::string dir = ::testing::TempDir() + "/tls-" + std::to_string(getpid());
    bool ok = true;

    TestAuthority() {
        std::filesystem::create_directories(dir);
        const std::string key = " -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes";
        ok = Run("openssl req -x509" + key + " -keyout ca.key -out ca.crt -days 2 -subj /CN=site-ca") &&
             Issue("server", "localhost", " -addext subjectAltName=IP:127.0.0.1,DNS:localhost") &&
             Issue("operator", "operator", "") && Issue("guest", "guest", "");
    }
    bool Issue(const std::string& file, const std::string& name, const std::string& extra) {
        return Run("openssl req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout " + file +
                   ".key -out " + file + ".csr -subj /CN=" + name + extra) &&
               Run("openssl x509 -req -in " + file + ".csr -CA ca.crt -CAkey ca.key -CAcreateserial -days 2 -out " +
                   file + ".crt -copy_extensions copy");
    }
    bool Run(const std::string& command) {
        return std::system(("cd " + dir + " && " + command + " >>openssl.log 2>&1").c_str()) == 0;
    }
    std::string File(const std::string& name) const { return dir + "/" + name; }
};

class CertifiedWrites : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (!authority.ok) return;
        auto environment = kSimEnvironment;
        environment["LUMISCOPE_TLS_CERT"] = authority.File("server.crt");
        environment["LUMISCOPE_TLS_KEY"] = authority.File("server.key");
        environment["LUMISCOPE_TLS_CA"] = authority.File("ca.crt");
        environment["LUMISCOPE_WRITE_HOSTS"] = "127.0.0.0/8";
        server.Start("lumiscope-devserver", {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR}, environment);
        std::ofstream(authority.File("names.txt")) << "* " << server.Address() << "\n";
    }
    static void TearDownTestSuite() { server.Stop(); }
    void TearDown() override {
        for (const char* name : {"LUMISCOPE_TLS_CA", "LUMISCOPE_TLS_CERT", "LUMISCOPE_TLS_KEY"}) unsetenv(name);
        vire::SetUserName("");
    }
    static inline TestAuthority authority;
    static inline ServerProcess server;
};

TEST_F(CertifiedWrites, TheCertificateNotTheUserFieldDecidesWhoWrites) {
    ASSERT_TRUE(authority.ok) << "see " << authority.dir << "/openssl.log";
    ASSERT_TRUE(server.Running());
    // client certificate ("" for none), user field, value, status
    const std::tuple<const char*, const char*, float, vire::Status> cases[] = {
        {"operator", "guest", 11.5f, vire::kOk},
        {"guest", "operator", 12.5f, vire::kAccessDenied},  // a guest's certificate, claiming a writer
        {"", "operator", 13.5f, vire::kOk},                  // no certificate: loopback, the claimed writer
    };
    float expected = 0;
    for (const auto& [certificate, user, value, status] : cases) {
        setenv("LUMISCOPE_TLS_CA", authority.File("ca.crt").c_str(), 1);
        if (*certificate != '\0') {
            setenv("LUMISCOPE_TLS_CERT", authority.File(std::string(certificate) + ".crt").c_str(), 1);
            setenv("LUMISCOPE_TLS_KEY", authority.File(std::string(certificate) + ".key").c_str(), 1);
        } else {
            unsetenv("LUMISCOPE_TLS_CERT");
            unsetenv("LUMISCOPE_TLS_KEY");
        }
        vire::SetUserName(user);
        net::NetworkTransport transport(net::NetworkSettings{"", authority.File("names.txt"), ""});
        EXPECT_EQ(sim_test::Write(transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[3]", value), status) << certificate;
        if (status == vire::kOk) expected = value;
        EXPECT_EQ(sim_test::Read(transport, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[3]", 1).values,
                  std::vector<float>{expected})
            << certificate;
    }
}

TEST_F(CertifiedWrites, AServerWithHalfATlsSetUpDoesNotStart) {
    ServerProcess half;
    EXPECT_FALSE(half.Start("lumiscope-devserver", {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR},
                            {{"LUMISCOPE_TLS_CERT", authority.File("server.crt")}}));
}

}  // namespace
}  // namespace net_test
