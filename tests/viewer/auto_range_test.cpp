// The three ways of fitting a plot's vertical range to its data.
#include <gtest/gtest.h>

#include <cmath>

#include "viewer/auto_range.h"

namespace {

std::vector<float> Ramp(int n, float spike) {
    std::vector<float> v;
    for (int i = 1; i <= n; ++i) v.push_back(static_cast<float>(i));
    v.push_back(spike);
    return v;
}

TEST(AutoRange, EachModeFitsItsWay) {
    const float nan = std::nanf("");
    const struct { std::vector<float> values; int16_t mode; double min, max; } cases[] = {
        {{2, 12}, 1, 1.5, 12.5},
        {{2, nan, 12}, 1, 1.5, 12.5},
        {{4, 4}, 1, 3.8, 4.2},
        {{0, 0}, 1, -1, 1},
        {{2, 12}, 2, 0, 12.6},
        {{-12, -2}, 2, -12.6, 0},
        {{-2, 8}, 2, -2.5, 8.5},
        {{2, 12, 7, 5}, 3, 1.5, 12.5},        // too few points to call any an outlier
        {Ramp(99, 1000), 3, -2.85, 103.85},   // the spike left out, and the lowest point with it
        {Ramp(99, 1000), 1, 1 - 49.95, 1049.95},
    };
    for (const auto& c : cases) {
        const auto range = viewer::FitRange(c.values, c.mode);
        ASSERT_TRUE(range.has_value()) << c.mode;
        EXPECT_NEAR(range->min, c.min, 1e-6) << c.mode << " " << c.values.size();
        EXPECT_NEAR(range->max, c.max, 1e-6) << c.mode << " " << c.values.size();
    }
}

TEST(AutoRange, NothingToFitGivesNoRange) {
    EXPECT_FALSE(viewer::FitRange({}, 1).has_value());
    const std::vector<float> gaps{std::nanf(""), INFINITY};
    EXPECT_FALSE(viewer::FitRange(gaps, 2).has_value());
    const std::vector<float> some{1, 2};
    EXPECT_FALSE(viewer::FitRange(some, 0).has_value());
    EXPECT_FALSE(viewer::FitRange(some, 4).has_value());
}

}  // namespace
