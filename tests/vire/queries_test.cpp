#include <gtest/gtest.h>

#include "fake_live_transport.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/queries.h"
#include "vire/wire.h"

namespace {

using test_support::AnswerFields;
using Names = std::vector<std::string>;

class QueryTest : public ::testing::Test {
protected:
    void SetUp() override { vire::SetTransport(fake); }
    void TearDown() override { vire::SetTransport(nullptr); }
    std::shared_ptr<test_support::FakeLiveTransport> fake = std::make_shared<test_support::FakeLiveTransport>();
};

TEST_F(QueryTest, DeviceNamesAskForTheCountGivenRefuseCountsNoSpectrumHasAndKeepTheCountOnFailure) {
    // claimed: the count the server reports after writing one name.
    struct Case { int32_t count, asked; vire::Status answered, status; int32_t claimed, countAfter; };
    const Case cases[] = {
        {0, 2000, 0, 0, 1, 1}, {1, 1, 0, 0, 1, 1}, {8000, 8000, 0, 0, 1, 1},
        {8001, 0, 0, vire::kOutOfRange, 1, 8001}, {-1, 0, 0, vire::kOutOfRange, 1, -1},
        {2000000000, 0, 0, vire::kOutOfRange, 1, 2000000000},
        {7, 7, vire::kLinkError, vire::kLinkError, 1, 7},
        {2, 2, 0, 0, 1'000'000, 2},  // more than it was given room for: never read beyond what was asked
    };
    for (const Case c : cases) {
        fake->calls.clear();
        fake->call = [&](auto&&, auto&&, vire::DataObject& out, auto&&...) {
            AnswerFields(out, {"A"}, 16);
            return out.count = c.claimed, c.answered;
        };
        int32_t count = c.count;
        Names names{"kept"};
        EXPECT_EQ(vire::GetDeviceNames("/ORKA/BPMQ1", "ORBIT.X", count, names), c.status) << c.count;
        EXPECT_EQ(count, c.countAfter) << c.count;
        EXPECT_EQ(names.front(), c.status == 0 ? "A" : "kept") << c.count;
        ASSERT_EQ(fake->calls.size(), c.asked > 0 ? 1u : 0u) << c.count;
        for (const auto& call : fake->calls)
            EXPECT_EQ(call, "/ORKA/BPMQ1/#0 ORBIT.X.NAM " + std::to_string(c.asked) + " 521 1 1000 0") << c.count;
    }
}

TEST_F(QueryTest, DeviceNamesTrimJoinContinuationsAndNumberServersWithoutNames) {
    struct Case { Names fields; char pad; int32_t count; Names names; };
    const Case cases[] = {
        {{"  BPM.S01.C1 ", "BPM.S01.C2"}, ' ', 4, {"BPM.S01.C1", "BPM.S01.C2"}},
        // A full field ending in "&" goes on in the next one...
        {{"LINAC.STEERER.H&", "01", "Q1"}, '\0', 8, {"LINAC.STEERER.H01", "Q1"}},
        {{"ABCDEFGHIJKLMNO&", "PQRSTUVWXYZ0123&", "45", "X"}, ' ', 8, {"ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "X"}},
        // ...one that is not full keeps its "&", padded with NULs or blanks.
        {{"SHORT&", "NEXT"}, '\0', 8, {"SHORT&", "NEXT"}}, {{"SHORT&", "NEXT"}, ' ', 8, {"SHORT&", "NEXT"}},
        {{"ABCDEFGHIJKLMNO&"}, '\0', 8, {"ABCDEFGHIJKLMNO"}},  // a mark on the last field: what came is kept
        // Every character of a continued name survives, at each field edge:
        // a full last field, a blank before the mark or after it, four fields.
        {{"ABCDEFGHIJKLMNO&", "PQRSTUVWXYZ01234", "Z"}, '\0', 8, {"ABCDEFGHIJKLMNOPQRSTUVWXYZ01234", "Z"}},
        {{"ABCDEFGHIJKLMNOP", "Q"}, '\0', 8, {"ABCDEFGHIJKLMNOP", "Q"}},
        {{"STEERER H 01 S &", "A"}, ' ', 8, {"STEERER H 01 S A"}},
        {{"ABCDEFGHIJKLMNO&", " P"}, ' ', 8, {"ABCDEFGHIJKLMNO P"}},
        {{"ABCDEFGHIJKLMNO&", "PQRSTUVWXYZ0123&", "456789abcdefghi&", "j"}, '\0', 8,
         {"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcdefghij"}},
        // "#0" first: the server has no names; the list runs to the count asked.
        {{"#0"}, '\0', 3, {"#0", "#1", "#2"}}, {{" #0 ", "whatever"}, ' ', 2, {"#0", "#1"}}, {{}, '\0', 4, {}},
    };
    for (const Case& c : cases) {
        fake->call = [&](auto&&, auto&&, vire::DataObject& out, auto&&...) {
            return AnswerFields(out, c.fields, 16, c.pad);
        };
        int32_t count = c.count;
        Names names{"stale"};
        EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
        EXPECT_EQ(names, c.names) << (c.fields.empty() ? "" : c.fields[0]) << " pad " << int(c.pad);
        EXPECT_EQ(count, static_cast<int32_t>(c.names.size()));
    }
}

// Property lists are tested against the simulated servers (tests/sim).
TEST_F(QueryTest, FloatsAreReadAsSinglesNeverBeyondTheValuesAndKeptOnFailure) {
    fake->call = [](auto&&, auto&&, vire::DataObject& out, auto&&...) {
        vire::StoreFloat(out.buffer, 4, 1.5f);
        return out.count = 5, vire::Status{0};  // more than asked: only what fits is taken
    };
    std::vector<float> values(4, -7.0f);  // the last one is not the caller's
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", std::span(values).first(3), 800), 0);
    EXPECT_EQ(values, (std::vector<float>{0.0f, 1.5f, 0.0f, -7.0f}));
    EXPECT_EQ(fake->calls[0], "/A/B/C THR 3 517 1 800 0");
    fake->call = [](auto&&...) { return vire::kLinkError; };
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", values, 800), vire::kLinkError);
    EXPECT_EQ(values[1], 1.5f);
}

}  // namespace
