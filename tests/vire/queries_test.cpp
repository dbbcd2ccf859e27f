#include <gtest/gtest.h>

#include "fake_transport.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/queries.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace {

using vire_test::AnswerFields;
using vire_test::FakeTransport;

class QueryTest : public ::testing::Test {
protected:
    void SetUp() override { vire::SetTransport(fake); }
    void TearDown() override { vire::SetTransport(nullptr); }
    std::shared_ptr<FakeTransport> fake = std::make_shared<FakeTransport>();
};

TEST_F(QueryTest, DeviceNamesAskTheServersNameListWithTheCallersCount) {
    struct Case { int32_t count; int32_t asked; };
    for (const Case c : {Case{0, 2000}, Case{5, 5}, Case{1, 1}}) {
        fake->calls.clear();
        fake->answer = [](vire::DataObject& out) { return AnswerFields(out, {"A"}, 16); };
        int32_t count = c.count;
        std::vector<std::string> names;
        EXPECT_EQ(vire::GetDeviceNames("/ORKA/BPMQ1", "ORBIT.X", count, names), 0);
        ASSERT_EQ(fake->calls.size(), 1u);
        EXPECT_EQ(fake->calls[0].device, "/ORKA/BPMQ1/#0");
        EXPECT_EQ(fake->calls[0].property, "ORBIT.X.NAM");
        EXPECT_EQ(fake->calls[0].outFormat, 521);
        EXPECT_EQ(fake->calls[0].outCount, c.asked);
        EXPECT_EQ(fake->calls[0].access, 1);
        EXPECT_EQ(fake->calls[0].timeoutMs, 1000);
    }
}

TEST_F(QueryTest, DeviceNamesTrimJoinContinuationsAndNumberServersWithoutNames) {
    struct Case {
        std::vector<std::string> fields;
        int32_t count;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {{"  BPM.S01.C1 ", "BPM.S01.C2"}, 4, {"BPM.S01.C1", "BPM.S01.C2"}},
        // A full field ending in "&" goes on in the next one.
        {{"LINAC.STEERER.H&", "01", "Q1"}, 8, {"LINAC.STEERER.H01", "Q1"}},
        {{"ABCDEFGHIJKLMNO&", "PQRSTUVWXYZ0123&", "45", "X"}, 8, {"ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "X"}},
        // "&" in a field that is not full is part of the name.
        {{"SHORT&", "NEXT"}, 8, {"SHORT&", "NEXT"}},
        // A continuation mark on the last field: what came is kept.
        {{"ABCDEFGHIJKLMNO&"}, 8, {"ABCDEFGHIJKLMNO"}},
        // "#0" first: the server has no names; the list runs to the count asked.
        {{"#0"}, 3, {"#0", "#1", "#2"}},
        {{" #0 ", "whatever"}, 2, {"#0", "#1"}},
        {{}, 4, {}},
    };
    for (const Case& c : cases) {
        fake->answer = [&](vire::DataObject& out) { return AnswerFields(out, c.fields, 16); };
        int32_t count = c.count;
        std::vector<std::string> names{"stale"};
        EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
        EXPECT_EQ(names, c.names);
        EXPECT_EQ(count, static_cast<int32_t>(c.names.size()));
    }
    int32_t count = 0;
    std::vector<std::string> names;
    fake->answer = [](vire::DataObject& out) { return AnswerFields(out, {"#0"}, 16); };
    ASSERT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
    EXPECT_EQ(count, 2000);
    EXPECT_EQ(names.back(), "#1999");
}

TEST_F(QueryTest, DeviceNamesReturnAFailureAtOnceWithTheCountAsked) {
    fake->answer = [](vire::DataObject& out) {
        AnswerFields(out, {"A"}, 16);
        return vire::kLinkError;
    };
    int32_t count = 7;
    std::vector<std::string> names{"kept"};
    EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), vire::kLinkError);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(names, std::vector<std::string>{"kept"});
}

TEST_F(QueryTest, DeviceNamesNeverReadBeyondWhatWasAsked) {
    fake->answer = [](vire::DataObject& out) {
        out.count = 1'000'000;  // a server claiming more than it was given room for
        return vire::Status{0};
    };
    int32_t count = 2;
    std::vector<std::string> names;
    EXPECT_EQ(vire::GetDeviceNames("/S/SRV", "P", count, names), 0);
    EXPECT_EQ(count, 2);
}

TEST_F(QueryTest, PropertiesSendTheNameAndGive36WhenNoRecordCameBack) {
    fake->answer = [](vire::DataObject& out) {
        out.format = 525;
        return AnswerFields(out, {"ORBIT.X  ", "ORBIT.Y"}, 32);
    };
    vire::PropertyList list;
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "ORBIT.X", list), 0);
    EXPECT_EQ(list.names, (std::vector<std::string>{"ORBIT.X", "ORBIT.Y"}));
    EXPECT_EQ(vire::FormatName(list.format), "NAME32");
    ASSERT_EQ(fake->calls.size(), 1u);
    EXPECT_EQ(fake->calls[0].device, "/ORKA/BPMQ1");
    EXPECT_EQ(fake->calls[0].property, "PROPS");
    EXPECT_EQ(vire::Bytes2String(fake->calls[0].input), "ORBIT.X");
    EXPECT_EQ(fake->calls[0].timeoutMs, 1000);

    fake->answer = [](vire::DataObject& out) { return AnswerFields(out, {}, 32); };
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "NOPE", list), vire::kNoData);
    EXPECT_TRUE(list.names.empty());
    fake->answer = [](vire::DataObject&) { return vire::kTimeout; };
    EXPECT_EQ(vire::GetProperties("/ORKA/BPMQ1", "", list), vire::kTimeout);
}

TEST_F(QueryTest, FloatsAreReadAsSinglesAndKeptOnFailure) {
    fake->answer = [](vire::DataObject& out) {
        for (int i = 0; i < 2; ++i) vire::StoreFloat(out.buffer, 4 * static_cast<size_t>(i), 1.5f * (i + 1));
        out.count = 2;
        return vire::Status{0};
    };
    std::vector<float> values(3, -7.0f);
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", values, 800), 0);
    EXPECT_EQ(values, (std::vector<float>{1.5f, 3.0f, -7.0f}));
    EXPECT_EQ(fake->calls.back().outFormat, 517);
    EXPECT_EQ(fake->calls.back().outCount, 3);
    EXPECT_EQ(fake->calls.back().timeoutMs, 800);
    fake->answer = [](vire::DataObject&) { return vire::kLinkError; };
    EXPECT_EQ(vire::ReadFloats("/A/B/C", "THR", values, 800), vire::kLinkError);
    EXPECT_EQ(values[0], 1.5f);
}

}  // namespace
