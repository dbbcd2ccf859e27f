// Percent of threshold, the threshold trace and the write addresses.
#include <gtest/gtest.h>

#include "viewer/threshold_display.h"

namespace {

using viewer::ThresholdPart;

TEST(ThresholdDisplay, PercentMeasuresEachSideAgainstItsOwnThreshold) {
    const struct { float v, h, l, percent; } cases[] = {
        {0, 10, -10, 0}, {-5, 10, -10, 50}, {-5, 10, 0, 0}, {5, 0, -10, 0},
        {5, 10, -10, 50}, {-5, 0, -20, 25}, {5, -1, 2, 0}, {15, 10, 0, 150},
    };
    for (const auto& c : cases)
        EXPECT_FLOAT_EQ(viewer::PercentOfThreshold(c.v, c.h, c.l), c.percent) << c.v << " " << c.h << " " << c.l;
}

TEST(ThresholdDisplay, PartsLieSideBySideAndPointsWithoutThresholdsShowZero) {
    const std::vector<float> high1{10, 20}, low1{-10}, high2{100};
    const std::vector<ThresholdPart> parts{{high1, low1}, {high2, {}}};
    std::vector<float> values{5, -5, 50, 7, 9};
    viewer::ConvertToPercent(values, 4, parts);
    // The short lower array gives no lower threshold to the second point.
    EXPECT_EQ(values, (std::vector<float>{50, 0, 50, 0, 9}));
}

TEST(ThresholdDisplay, TraceRunsAcrossPartsUpToItsLimit) {
    const std::vector<float> big(900, 3.0f), small{1, 2};
    const std::vector<ThresholdPart> twoParts{{small, {}}, {small, {}}}, long2{{big, {}}, {big, {}}};
    EXPECT_EQ(viewer::ThresholdTraceValues(twoParts, false), (std::vector<float>{1, 2, 1, 2}));
    EXPECT_EQ(viewer::ThresholdTraceValues(twoParts, true), (std::vector<float>(4, 100.0f)));
    EXPECT_EQ(viewer::ThresholdTraceValues(long2, false).size(), 1001u);
}

TEST(ThresholdDisplay, OneElementIsAddressedInsideTheSourceProperty) {
    const struct { const char* source; int element; const char* device, *property, *tool; } cases[] = {
        {"/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", 5, "/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[5]",
         "/ORKA/BLMSRV/LOSS.RING[THRESHOLD[5]]"},
        {"/A/B/C[ THR ]", 0, "/A/B/C", "THR[0]", "/A/B/C[THR[0]]"},
        {"/A/B/C[THR", 12, "/A/B/C", "THR[12]", "/A/B/C[THR[12]]"},
        {"configs\\X_THR.csv", 3, "configs\\X_THR.csv", "[3]", "configs\\X_THR.csv[3]"},
    };
    for (const auto& c : cases) {
        const viewer::ThresholdAddress address = viewer::ElementThresholdAddress(c.source, c.element);
        EXPECT_EQ(address.device, c.device) << c.source;
        EXPECT_EQ(address.property, c.property) << c.source;
        EXPECT_EQ(viewer::ThresholdToolDevice(c.source, c.element), c.tool) << c.source;
    }
}

}  // namespace
