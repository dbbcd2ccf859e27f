#include <gtest/gtest.h>

#include "scoped_time_zone.h"
#include "vire/clock.h"
#include "vire/utils.h"

namespace {

using Zone = test_support::ScopedTimeZone;

TEST(TimeTexts, CtimeIsLocalFixedWidthTextAndEmptyForNegativeTimes) {
    struct Case { const char* zone; int64_t t; const char* text; };
    const Case cases[] = {
        {"UTC", 0, "Thu Jan  1 00:00:00 1970"}, {"UTC", 2147483647, "Tue Jan 19 03:14:07 2038"},
        {"UTC", -1, ""}, {"Europe/Berlin", -86400, ""},
        // Winter and summer time, and both sides of the spring change.
        {"Europe/Berlin", 1795372500, "Sun Nov 22 19:35:00 2026"}, {"Europe/Berlin", 1000000000, "Sun Sep  9 03:46:40 2001"},
        {"Europe/Berlin", 1774745999, "Sun Mar 29 01:59:59 2026"}, {"Europe/Berlin", 1774746000, "Sun Mar 29 03:00:00 2026"},
    };
    for (const Case& c : cases) {
        Zone zone(c.zone);
        EXPECT_EQ(vire::CTIME(c.t), c.text) << c.zone << " " << c.t;
    }
}

TEST(TimeTexts, MktimeTakesLocalPartsAndRefusesWhatDoesNotFit) {
    struct Case { const char* zone; int y, mo, d, h, mi, s; int32_t t; };
    const Case cases[] = {
        {"UTC", 1970, 1, 1, 0, 0, 0, 0}, {"UTC", 2026, 11, 22, 18, 35, 0, 1795372500},
        {"UTC", 2026, 2, 29, 0, 0, 0, 1772323200},  // no 29 February: rolls into March
        {"UTC", 1969, 12, 31, 23, 59, 59, -1}, {"UTC", 2038, 1, 19, 3, 14, 8, -1},  // before 1970, past 32 bits
        {"Europe/Berlin", 2026, 1, 1, 0, 0, 0, 1767222000}, {"Europe/Berlin", 2026, 7, 1, 12, 0, 0, 1782900000},
        {"Europe/Berlin", 2026, 3, 29, 3, 0, 0, 1774746000},
    };
    for (const Case& c : cases) {
        Zone zone(c.zone);
        EXPECT_EQ(vire::MKTIME(c.y, c.mo, c.d, c.h, c.mi, c.s), c.t) << c.zone << " " << c.y << "-" << c.mo << "-" << c.d;
    }
}

TEST(TimeTexts, UnixtimeFollowsTheTestClockAndFloors) {
    for (const auto& [ms, s] : {std::pair<int64_t, int64_t>{1795372500999, 1795372500}, {1795372501000, 1795372501},
                                {-1, -1}}) {
        vire::SetTestClock(ms);
        EXPECT_EQ(vire::UNIXTIME(), s) << ms;
    }
    vire::UseSystemClock();
}

TEST(FixedWidthText, BytesStopAtNulAndKeepBlanksStringsArePaddedOrCut) {
    const std::string raw("AB  \0CD", 7);
    std::vector<std::byte> field(raw.size());
    for (size_t i = 0; i < raw.size(); ++i) field[i] = static_cast<std::byte>(raw[i]);
    EXPECT_EQ(vire::Bytes2String(field), "AB  ");
    struct Case { std::string text; size_t width, size; std::string back; };
    const Case cases[] = {{"ORBIT.X", 16, 16, "ORBIT.X"}, {"ORBIT.X", 4, 4, "ORBI"}, {"ORBIT.X", 0, 8, "ORBIT.X"}, {"", 0, 1, ""}};
    for (const Case& c : cases) {
        const auto bytes = vire::String2Bytes(c.text, c.width);
        EXPECT_EQ(bytes.size(), c.size) << c.text;
        EXPECT_EQ(vire::Bytes2String(bytes), c.back) << c.text;
        EXPECT_EQ(bytes.back(), c.text.size() < c.size ? std::byte{0} : std::byte{'I'}) << c.text;
    }
}

}  // namespace
