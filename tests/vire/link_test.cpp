#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "fake_transport.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace {

class LinkCallTest : public ::testing::Test {
protected:
    void TearDown() override { vire::SetTransport(nullptr); }
};

TEST_F(LinkCallTest, WithoutTransportEveryCallFailsWithItsOwnCode) {
    vire::SetTransport(nullptr);
    std::vector<std::byte> buffer(8);
    vire::DataObject out{2, 517, "", buffer};
    EXPECT_EQ(vire::LinkCall("/A/B/C", "P", out, vire::DataObject{}, 1, 1000), vire::kNoTransport);
    EXPECT_EQ(out.count, 0);
    EXPECT_EQ(vire::ErrorText(vire::kNoTransport), "no link transport installed");
}

TEST_F(LinkCallTest, PassesEveryArgumentAndAThrowingTransportBecomesAServerError) {
    auto fake = std::make_shared<vire_test::FakeTransport>();
    vire::SetTransport(fake);
    std::vector<std::byte> buffer(16), input(4, std::byte{7});
    vire::DataObject out{4, 517, "", buffer};
    const vire::DataObject in{1, 515, "", input};
    fake->answer = [](vire::DataObject& o) {
        o.count = 3;
        return vire::Status{36};
    };
    EXPECT_EQ(vire::LinkCall("/ORKA/SRV/DEV", "PROP", out, in, 3, 800), 36);
    ASSERT_EQ(fake->calls.size(), 1u);
    const auto& call = fake->calls[0];
    EXPECT_EQ(call.device, "/ORKA/SRV/DEV");
    EXPECT_EQ(call.property, "PROP");
    EXPECT_EQ(call.outCount, 4);
    EXPECT_EQ(call.outFormat, 517);
    EXPECT_EQ(call.input.size(), 4u);
    EXPECT_EQ(call.inFormat, 515);
    EXPECT_EQ(call.access, 3);
    EXPECT_EQ(call.timeoutMs, 800);
    EXPECT_EQ(out.count, 3);

    fake->answer = [](vire::DataObject&) -> vire::Status { throw std::runtime_error("broken"); };
    EXPECT_EQ(vire::LinkCall("/ORKA/SRV/DEV", "PROP", out, in, 1, 800), vire::kServerError);
    EXPECT_EQ(out.count, 0);
}

TEST(ErrorText, KnownCodesHaveTheirTextOthersAreUndefined) {
    struct Case { vire::Status status; const char* text; };
    const Case cases[] = {
        {0, "success"},
        {45, "time-out: no answer from the server"},
        {36, "no data"},
        {20, "access denied: user not allowed to write"},
        {2, "link error: server not reachable"},
        {1, "Error undefined"},
        {-1, "Error undefined"},
        {999, "Error undefined"},
        {32767, "Error undefined"},
    };
    for (const Case& c : cases) EXPECT_EQ(vire::ErrorText(c.status), c.text) << c.status;
}

TEST(RPCERR, CutsToTheBufferAndAnswersNonZeroWithoutAText) {
    char small[6];
    std::memset(small, 'x', sizeof small);
    EXPECT_EQ(vire::RPCERR(36, small, sizeof small), 0);
    EXPECT_STREQ(small, "no da");
    char untouched[4] = {'a', 'b', 'c', '\0'};
    EXPECT_NE(vire::RPCERR(999, untouched, sizeof untouched), 0);
    EXPECT_STREQ(untouched, "abc");
    EXPECT_NE(vire::RPCERR(0, untouched, 0), 0);
    EXPECT_NE(vire::RPCERR(0, nullptr, 10), 0);
}

}  // namespace
