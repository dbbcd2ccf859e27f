#include <gtest/gtest.h>

#include <vector>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "fake_live_transport.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace {

TEST(LinkCall, PassesEveryArgumentAndNeverThrows) {
    std::vector<std::byte> buffer(16), input(4, std::byte{7});
    vire::DataObject out{4, 517, "", buffer};
    const vire::DataObject in{1, 515, "", input};
    vire::SetTransport(nullptr);
    EXPECT_EQ(vire::LinkCall("/A/B/C", "P", out, in, 1, 1000), vire::kNoTransport);
    EXPECT_EQ(out.count, 0);

    auto fake = std::make_shared<test_support::FakeLiveTransport>();
    vire::SetTransport(fake);
    fake->call = [](auto&&, auto&&, vire::DataObject& o, auto&&...) { return o.count = 3, vire::Status{36}; };
    out.count = 4;
    EXPECT_EQ(vire::LinkCall("/ORKA/SRV/DEV", "PROP", out, in, 3, 800), 36);
    EXPECT_EQ(fake->calls, std::vector<std::string>{"/ORKA/SRV/DEV PROP 4 517 3 800 4"});
    EXPECT_EQ(out.count, 3);
    fake->call = [](auto&&...) -> vire::Status { throw std::runtime_error("broken"); };
    EXPECT_EQ(vire::LinkCall("/ORKA/SRV/DEV", "PROP", out, in, 1, 800), vire::kServerError);
    EXPECT_EQ(out.count, 0);
    vire::SetTransport(nullptr);
}

TEST(ErrorText, TheTextRpcerrWritesUpToItsNulOrErrorUndefined) {
    for (vire::Status status : {vire::kOk, vire::kNoData, vire::kTimeout}) {
        char text[256];
        ASSERT_EQ(vire::RPCERR(status, text, sizeof text), 0) << status;
        EXPECT_EQ(vire::ErrorText(status), text) << status;
        char small[6];
        std::memset(small, 'x', sizeof small);
        EXPECT_EQ(vire::RPCERR(status, small, sizeof small), 0);
        EXPECT_EQ(std::string(small), std::string(text).substr(0, 5)) << "cut to fit with its NUL";
    }
    for (vire::Status status : {1, -1, 999, 32767}) EXPECT_EQ(vire::ErrorText(status), "Error undefined") << status;
    char untouched[4] = {'a', 'b', 'c', '\0'};
    EXPECT_NE(vire::RPCERR(999, untouched, sizeof untouched), 0);
    EXPECT_STREQ(untouched, "abc");
    EXPECT_NE(vire::RPCERR(0, untouched, 0), 0);
    EXPECT_NE(vire::RPCERR(0, nullptr, 10), 0);
}

TEST(UserName, TheEnvironmentUnlessSetAndBackAfterAReset) {
    const char* variables[] = {"USERNAME", "USER", "LOGNAME"};
    std::vector<std::string> saved;
    for (const char* v : variables) saved.push_back(std::getenv(v) ? std::getenv(v) : std::string("\x01"));
    // The first variable with a name wins; the login name stands in for "USERNAME".
    const struct { const char *username, *user, *logname, *expected; } cases[] = {
        {"from-env", "login", "log", "from-env"}, {"", "login", "log", "login"}, {nullptr, nullptr, "log", "log"},
        {nullptr, "", "", ""},
    };
    for (const auto& c : cases) {
        const char* values[] = {c.username, c.user, c.logname};
        for (int i = 0; i < 3; ++i) values[i] ? ::setenv(variables[i], values[i], 1) : ::unsetenv(variables[i]);
        vire::SetUserName("operator");
        EXPECT_EQ(vire::UserName(), "operator");
        vire::ResetUserName();
        EXPECT_EQ(vire::UserName(), c.expected) << c.expected;
    }
    for (int i = 0; i < 3; ++i)
        saved[i] == "\x01" ? ::unsetenv(variables[i]) : ::setenv(variables[i], saved[i].c_str(), 1);
}

}  // namespace
