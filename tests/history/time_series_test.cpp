#include "history/time_series.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Times of the points, "x" for a break.
std::string Shown(const std::vector<history::SeriesPoint>& points) {
    std::string text;
    for (const auto& p : points) text += (text.empty() ? "" : " ") + (std::isnan(p.value) ? "x" : std::to_string(p.time));
    return text;
}

TEST(TimeSeries, GapsLongerThanTheLimitBreakTheLineAndSourcesStayWithTheirValues) {
    history::TimeSeries series;
    // The local history server was down for an hour after 120; unsorted, repeated and NaN values come in too.
    const std::vector<int32_t> times{120, 0, 60, 60, 3720, 3780, 500};
    series.SetRecorded(std::vector<float>{3, 1, 2, 9, 4, 5, NAN}, times, history::ValueSource::LocalHistory);
    for (int32_t t : {3781, 3782, 3782, 100, 7000}) series.AppendLive(t, static_cast<float>(t));  // lost after 3782
    const auto& p = series.Points();
    EXPECT_EQ(std::to_string(p.at(1).value) + SourceName(p.at(4).source) + SourceName(p.at(5).source), "2.000000local historylive");
    EXPECT_EQ(series.BridgeLimit(1), 180);    // 3 x the median recorded step
    EXPECT_EQ(series.BridgeLimit(100), 300);  // 3 x a coarser live interval
    struct Case { int32_t from, to, maxGap; const char* shown; };
    for (const Case& c : {Case{0, 10000, 180, "0 60 120 x 3720 3780 3781 3782 x 7000"}, Case{0, 10000, 4000, "0 60 120 3720 3780 3781 3782 7000"},
                          Case{100, 3720, 180, "120 x 3720"}, Case{0, 120, 60, "0 60 120"}, Case{0, 10000, 0, "0 60 120 3720 3780 3781 3782 7000"},
                          Case{7001, 9000, 180, ""}})
        EXPECT_EQ(Shown(series.WithBreaks(c.from, c.to, c.maxGap)), c.shown) << c.from << " " << c.maxGap;
    EXPECT_EQ(series.WithBreaks(0, 3720, 180).at(3).time, 1920);  // the gap's middle
    for (const auto& [time, index] : std::vector<std::pair<int32_t, int32_t>>{{-5, 0}, {0, 0}, {61, 2}, {7000, 7}, {7001, 8}})
        EXPECT_EQ(series.IndexAt(time), index) << time;
    // A new record replaces the old one and the live values it covers; those after its end stay.
    series.SetRecorded(std::vector<float>(5, 1.0f), std::vector<int32_t>{0, 900, 1800, 2700, 3781}, history::ValueSource::Archive);
    EXPECT_EQ(Shown(series.Points()), "0 900 1800 2700 3781 3782 7000");
    series.DropBefore(2700);
    EXPECT_EQ(Shown(series.Points()), "2700 3781 3782 7000");
}

}  // namespace
