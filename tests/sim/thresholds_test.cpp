#include "catalogue/readers.h"
#include "sim_fixture.h"
#include "vire/threshold_link.h"

namespace {

using sim_test::SimTest;

constexpr const char* kDevice = "/ORKA/BLMSRV/LOSS.RING";

TEST_F(SimTest, ThresholdLinkSourcesOfTheSampleReadThroughTheCatalogue) {
    catalogue::Catalogue cat;
    vire::InstallThresholdLink(cat);
    catalogue::QuietWindow window;
    std::vector<float> high(96, -1.0f), low(96, -1.0f);
    EXPECT_EQ(catalogue::ReadThresholds(cat, window, "/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", high, low), 3);
    for (float h : high) {
        EXPECT_GT(h, 0.0f);
        EXPECT_LT(h, 5000.0f);
    }
    EXPECT_EQ(low[0], -1.0f);  // a link fills the upper thresholds only
    EXPECT_EQ(catalogue::ReadThresholds(cat, window, "/ORKA/BLMSRV/LOSS.RING[LIMIT]", high, low), -1);
    EXPECT_EQ(high.size(), 1u);
    // The hook reads on the transport installed when it reads: a slow server
    // is waited for with the reader's time-out.
    accelerator->SetFault("BLMSRV", sim::Fault{sim::Fault::Kind::Slow, 0, 0, 1});
    const int64_t before = vire::NowMilliseconds();
    high.assign(96, 0.0f);
    EXPECT_EQ(catalogue::ReadThresholds(cat, window, "/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", high, low), -1);
    EXPECT_EQ(vire::NowMilliseconds() - before, catalogue::kThresholdLinkTimeoutMs);
    EXPECT_NE(cat.LastReport.error.find("failed with code 45"), std::string::npos) << cat.LastReport.error;
    high.assign(96, 0.0f);
    EXPECT_EQ(catalogue::ReadThresholds(cat, window, "/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", high, low), 3);
}

TEST_F(SimTest, OnlyUsersOnTheListMayChangeAThresholdAndTheChangeIsReadBack) {
    const float before = Floats(kDevice, "THRESHOLD[5]", 1).values.at(0);
    vire::SetUserName("visitor");
    EXPECT_EQ(WriteFloat(kDevice, "THRESHOLD[5]", 123.5f), vire::kAccessDenied);
    EXPECT_EQ(Floats(kDevice, "THRESHOLD[5]", 1).values.at(0), before);

    vire::SetUserName("operator");
    EXPECT_EQ(WriteFloat(kDevice, "THRESHOLD[5]", 123.5f), 0);
    const auto all = Floats(kDevice, "THRESHOLD", 96);
    EXPECT_EQ(all.values.at(5), 123.5f);
    EXPECT_NE(all.values.at(4), 123.5f);
    EXPECT_EQ(Floats(kDevice, "THRESHOLD[5]", 1).values, std::vector<float>{123.5f});
}

TEST_F(SimTest, ThresholdWritesCheckElementFormatAndAccess) {
    vire::SetUserName("operator");
    struct Case { const char* property; int16_t format; vire::Status status; };
    const Case cases[] = {
        {"THRESHOLD[95]", vire::kFormatSingle, 0},
        {"THRESHOLD[96]", vire::kFormatSingle, vire::kOutOfRange},
        {"THRESHOLD[x]", vire::kFormatSingle, vire::kOutOfRange},
        {"THRESHOLD[]", vire::kFormatSingle, vire::kOutOfRange},
        {"THRESHOLD[0]", vire::kFormatLong, vire::kFormatMismatch},
        {"THRESHOLD[0]", 5, 0},  // 5 is SINGLE once raised
        {"THRESHOLD", vire::kFormatSingle, 0},  // from element 0
        // Live properties cannot be written.
        {"LOSS.INT", vire::kFormatSingle, vire::kIllegalAccess},
    };
    for (const Case& c : cases) EXPECT_EQ(WriteFloat(kDevice, c.property, 7.0f, c.format), c.status) << c.property;
    EXPECT_EQ(Floats(kDevice, "THRESHOLD[0]", 1).values, std::vector<float>{7.0f});

    std::vector<std::byte> in(4);
    vire::DataObject out{};
    EXPECT_EQ(vire::LinkCall(kDevice, "THRESHOLD[1]", out, vire::DataObject{0, vire::kFormatSingle, "", in}, 3, 3000),
              vire::kInvalidInput);
    EXPECT_EQ(vire::LinkCall(kDevice, "THRESHOLD[1]", out, vire::DataObject{1, vire::kFormatSingle, "", in}, 2, 3000),
              vire::kIllegalAccess);
}

}  // namespace
