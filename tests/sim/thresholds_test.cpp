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
    EXPECT_EQ(high, Read(kDevice, "THRESHOLD", 96).values);
    // The hook reads on the transport installed when it reads: a slow server
    // is waited for with the reader's time-out.
    accelerator->SetFault("BLMSRV", sim::Fault{sim::Fault::Kind::Slow, 0, 0, 1});
    const int64_t before = vire::NowMilliseconds();
    EXPECT_EQ(catalogue::ReadThresholds(cat, window, "/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", high, low), -1);
    EXPECT_EQ(vire::NowMilliseconds() - before, catalogue::kThresholdLinkTimeoutMs);
    EXPECT_NE(cat.LastReport.error.find("failed with code 45"), std::string::npos) << cat.LastReport.error;
}

TEST_F(SimTest, OnlyUsersOnTheListMayWriteAThresholdElementOfTheTableInItsFormat) {
    const float before = Read(kDevice, "THRESHOLD[5]", 1).values.at(0);
    struct Case { const char* user; const char* property; int16_t format; vire::Status status; };
    const Case cases[] = {
        {"visitor", "THRESHOLD[5]", vire::kFormatSingle, vire::kAccessDenied},
        {"operator", "THRESHOLD[95]", vire::kFormatSingle, 0}, {"operator", "THRESHOLD[96]", vire::kFormatSingle, vire::kOutOfRange},
        {"operator", "THRESHOLD[x]", vire::kFormatSingle, vire::kOutOfRange}, {"operator", "THRESHOLD[]", vire::kFormatSingle, vire::kOutOfRange},
        {"operator", "THRESHOLD[0]", vire::kFormatLong, vire::kFormatMismatch},
        {"operator", "THRESHOLD[0]", 5, 0},  // 5 is SINGLE once raised
        {"operator", "THRESHOLD", vire::kFormatSingle, 0},  // from element 0
        {"operator", "LOSS.INT", vire::kFormatSingle, vire::kIllegalAccess},  // live properties cannot be written
    };
    for (const Case& c : cases) {
        vire::SetUserName(c.user);
        EXPECT_EQ(sim_test::Write(*accelerator, kDevice, c.property, 7.0f, c.format), c.status) << c.user << " " << c.property;
    }
    const auto all = Read(kDevice, "THRESHOLD", 96).values;
    EXPECT_EQ(std::make_tuple(all.at(0), all.at(5), all.at(95)), std::make_tuple(7.0f, before, 7.0f));
    EXPECT_EQ(Read(kDevice, "THRESHOLD[95]", 1).values, std::vector<float>{7.0f});
    std::vector<std::byte> in(4);
    vire::DataObject out{};
    EXPECT_EQ(vire::LinkCall(kDevice, "THRESHOLD[1]", out, vire::DataObject{0, vire::kFormatSingle, "", in}, 3, 3000),
              vire::kInvalidInput);
    EXPECT_EQ(vire::LinkCall(kDevice, "THRESHOLD[1]", out, vire::DataObject{1, vire::kFormatSingle, "", in}, 2, 3000),
              vire::kIllegalAccess);
}

}  // namespace
