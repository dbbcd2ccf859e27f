#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "vire/clock.h"
#include "vire/utils.h"

namespace {

class UtcZone : public ::testing::Test {
protected:
    void SetUp() override {
        ::setenv("TZ", "UTC", 1);
        ::tzset();
    }
    void TearDown() override { vire::UseSystemClock(); }
};

TEST_F(UtcZone, CtimeIsTheFixedWidthTextAndEmptyForNegativeTimes) {
    struct Case { int64_t t; const char* text; };
    const Case cases[] = {
        {0, "Thu Jan  1 00:00:00 1970"},
        {1000000000, "Sun Sep  9 01:46:40 2001"},
        {1795372500, "Sun Nov 22 18:35:00 2026"},
        {2147483647, "Tue Jan 19 03:14:07 2038"},
        {-1, ""},
        {-86400, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(vire::CTIME(c.t), c.text) << c.t;
        if (c.t >= 0) {
            EXPECT_EQ(vire::CTIME(c.t).size(), 24u);
        }
    }
}

TEST_F(UtcZone, MktimeBuildsUnixSecondsAndRefusesWhatDoesNotFit) {
    struct Case { int y, mo, d, h, mi, s; int32_t t; };
    const Case cases[] = {
        {1970, 1, 1, 0, 0, 0, 0},
        {2001, 9, 9, 1, 46, 40, 1000000000},
        {2026, 11, 22, 18, 35, 0, 1795372500},
        {2026, 2, 29, 0, 0, 0, 1772323200},  // no 29 February: rolls into March
        {1969, 12, 31, 23, 59, 59, -1},      // before 1970
        {2038, 1, 19, 3, 14, 8, -1},         // past 32 bits
    };
    for (const Case& c : cases) EXPECT_EQ(vire::MKTIME(c.y, c.mo, c.d, c.h, c.mi, c.s), c.t) << c.y << "-" << c.mo << "-" << c.d;
    EXPECT_EQ(vire::CTIME(vire::MKTIME(2026, 3, 1, 0, 0, 0)), "Sun Mar  1 00:00:00 2026");
}

TEST_F(UtcZone, UnixtimeFollowsTheTestClockAndFloors) {
    vire::SetTestClock(1795372500999);
    EXPECT_EQ(vire::UNIXTIME(), 1795372500);
    vire::AdvanceTestClock(1);
    EXPECT_EQ(vire::UNIXTIME(), 1795372501);
    vire::SetTestClock(-1);
    EXPECT_EQ(vire::UNIXTIME(), -1);
}

TEST(FixedWidthText, BytesStopAtNulAndKeepBlanksStringsArePaddedOrCut) {
    const std::string raw("AB  \0CD", 7);
    std::vector<std::byte> field(raw.size());
    for (size_t i = 0; i < raw.size(); ++i) field[i] = static_cast<std::byte>(raw[i]);
    EXPECT_EQ(vire::Bytes2String(field), "AB  ");
    EXPECT_EQ(vire::Bytes2String({}), "");

    struct Case { std::string text; size_t width; size_t size; std::string back; };
    const Case cases[] = {
        {"ORBIT.X", 16, 16, "ORBIT.X"},
        {"ORBIT.X", 4, 4, "ORBI"},   // cut, and no room left for a NUL
        {"ORBIT.X", 0, 8, "ORBIT.X"},  // its own length plus a NUL
        {"", 0, 1, ""},
    };
    for (const Case& c : cases) {
        const auto bytes = vire::String2Bytes(c.text, c.width);
        EXPECT_EQ(bytes.size(), c.size) << c.text;
        EXPECT_EQ(vire::Bytes2String(bytes), c.back) << c.text;
    }
}

}  // namespace
