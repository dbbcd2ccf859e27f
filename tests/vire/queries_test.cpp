#include <gtest/gtest.h>

#include "fake_transport.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/queries.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace {

using vire_test::AnswerFields;
using Names = std::vector<std::string>;

class QueryTest : public ::testing::Test {
protected:
    void SetUp() override { vire::SetTransport(fake); }
    void TearDown() override { vire::SetTransport(nullptr); }
    std::shared_ptr<vire_test::FakeTransport> fake = std::make_shared<vire_test::FakeTransport>();
};

TEST_F(QueryTest, DeviceNamesAskForTheCountGivenAndRefuseCountsNoSpectrumHas) {
    struct Case { int32_t count, asked; vire::Status status; };
    const Case cases[] = {{0, 2000, 0}, {1, 1, 0}, {8000, 8000, 0}, {8001, 0, vire::kOutOfRange},
                          {-1, 0, vire::kOutOfRange}, {2000000000, 0, vire::kOutOfRange}};
    for (const Case c : cases) {
        fake->calls.clear();
        fake->answer = [](vire::DataObject& out) { return AnswerFields(out, {"A"}, 16); };
        int32_t count = c.count;
        Names names{"kept"};
        EXPECT_EQ(vire::GetDeviceNames("/ORKA/BPMQ1", "ORBIT.X", count, names), c.status) << c.count;
        if (c.status != 0) {
            EXPECT_TRUE(fake->calls.empty()) << c.count;
            EXPECT_EQ(count, c.count);
            EXPECT_EQ(names, Names{"kept"});
            continue;
        }
        ASSERT_EQ(fake->calls.size(), 1u);
        const auto& call = fake->calls[0];
        EXPECT_EQ(call.device + " " + call.property, "/ORKA/BPMQ1/#0 ORBIT.X.NAM");
        EXPECT_EQ(std::make_tuple(call.outCount, call.outFormat, call.access, call.timeoutMs),
                  std::make_tuple(c.asked, int16_t{521}, int16_t{1}, 1000));
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
        // "#0" first: the server has no names; the list runs to the count asked.
        {{"#0"}, '\0', 3, {"#0", "#1", "#2"}}, {{" #0 ", "whatever"}, ' ', 2, {"#0", "#1"}}, {{}, '\0', 4, {}},
    };
    for (const Case& c : cases) {
        fake->answer = [&](vire::DataObject& out) { return AnswerFields(out, c.fields, 16, c.pad); };
        int32_t count = c.count;
        Names names{"stale"};
        EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
        EXPECT_EQ(names, c.names) << (c.fields.empty() ? "" : c.fields[0]) << " pad " << int(c.pad);
        EXPECT_EQ(count, static_cast<int32_t>(c.names.size()));
    }
}

TEST_F(QueryTest, DeviceNamesKeepTheCountOnFailureAndNeverReadBeyondWhatWasAsked) {
    fake->answer = [](vire::DataObject& out) {
        AnswerFields(out, {"A"}, 16);
        return vire::kLinkError;
    };
    int32_t count = 7;
    Names names{"kept"};
    EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), vire::kLinkError);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(names, Names{"kept"});
    fake->answer = [](vire::DataObject& out) {
        out.count = 1'000'000;  // a server claiming more than it was given room for
        return vire::Status{0};
    };
    count = 2;
    EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
    EXPECT_EQ(count, 2);
}

TEST_F(QueryTest, PropertiesSendTheNameAndGive36WhenNoRecordCameBack) {
    fake->answer = [](vire::DataObject& out) {
        out.format = 525;
        return AnswerFields(out, {"ORBIT.X  ", "ORBIT.Y"}, 32, ' ');
    };
    vire::PropertyList list;
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "ORBIT.X", list), 0);
    EXPECT_EQ(list.names, (Names{"ORBIT.X", "ORBIT.Y"}));
    EXPECT_EQ(list.format, 525);
    const auto& call = fake->calls.at(0);
    EXPECT_EQ(call.device + " " + call.property + " " + vire::Bytes2String(call.input), "/ORKA/BPMQ1 PROPS ORBIT.X");
    EXPECT_EQ(call.timeoutMs, 1000);
    fake->answer = [](vire::DataObject& out) { return AnswerFields(out, {}, 32); };
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "NOPE", list), vire::kNoData);
    EXPECT_TRUE(list.names.empty());
    fake->answer = [](vire::DataObject&) { return vire::kTimeout; };
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "", list), vire::kTimeout);
}

TEST_F(QueryTest, FloatsAreReadAsSinglesAndKeptOnFailure) {
    fake->answer = [](vire::DataObject& out) {
        for (size_t i = 0; i < 2; ++i) vire::StoreFloat(out.buffer, 4 * i, 1.5f * static_cast<float>(i + 1));
        out.count = 5;  // more than asked: only what fits is taken
        return vire::Status{0};
    };
    std::vector<float> values(3, -7.0f);
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", values, 800), 0);
    EXPECT_EQ(values, (std::vector<float>{1.5f, 3.0f, 0.0f}));
    const auto& call = fake->calls.back();
    EXPECT_EQ(std::make_tuple(call.outFormat, call.outCount, call.timeoutMs), std::make_tuple(int16_t{517}, 3, 800));
    fake->answer = [](vire::DataObject&) { return vire::kLinkError; };
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", values, 800), vire::kLinkError);
    EXPECT_EQ(values[0], 1.5f);
}

}  // namespace
