// Numbers as the window writes them into range boxes and grids, at the
// bounds where the format changes.
#include <gtest/gtest.h>

#include <limits>

#include "viewer/value_text.h"

namespace {

TEST(ValueText, GridFormatsChangeAtTheirBoundsOnSinglePrecisionValues) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct { float value; const char* grid; const char* overview; } cases[] = {
        {0.0f, "0", "0.0"}, {-0.0f, "0", "-0.0"},
        // 0.01 and 9999 as singles still take four decimals.
        {0.01f, "0.0100", "0.0"}, {-0.01f, "-0.0100", "-0.0"}, {0.00999f, "9.99E-03", "0.0"},
        {9999.0f, "9999.0000", "9999.0"}, {10000.0f, "1.00E+04", "10000.0"}, {10000.5f, "1.00E+04", "? (10^30)"},
        {-123456.0f, "-1.23E+05", "-123456.0"}, {1e-30f, "1.00E-30", "0.0"}, {nan, "NAN", "? (10^30)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(viewer::GridValueText(c.value), c.grid) << c.value;
        EXPECT_EQ(viewer::OverviewValueText(c.value), c.overview) << c.value;
    }
}

TEST(ValueText, RangeBoxesWriteTheShortestSingle) {
    EXPECT_EQ(viewer::LimitText(0.1), "0.1") << "not 0.100000001";
    EXPECT_EQ(viewer::LimitText(1e6), "1e+06");
}

}  // namespace
