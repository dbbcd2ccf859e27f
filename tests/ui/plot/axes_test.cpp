// Axis limits as the caller sets them, auto-scale with its four flags, the
// kept frame, time texts and ticks, and trend points.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <regex>
#include <vector>

#include "plot_test_support.h"
#include "scoped_time_zone.h"
#include "vire/utils.h"

namespace {

using ui::PlexPlot;

TEST(Axes, LimitsAreKeptAsSetAndTheAxisShowsThemInOrder) {
    const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
    // Sets: 'X' max, 'x' min, 'T' time axis on/off.
    struct Case { const char* name; std::vector<std::pair<char, double>> sets; double xMin, xMax, shownLo, shownUp; };
    const Case cases[] = {
        {"min then max", {{'x', -0.2}, {'X', 31.2}}, -0.2, 31.2, -0.2, 31.2},
        {"max below the current min stays as set", {{'x', 100}, {'X', 200}, {'X', 10}}, 100, 10, 10, 100},
        {"then a min below it: both as set", {{'x', 100}, {'X', 200}, {'X', 10}, {'x', 5}}, 5, 10, 5, 10},
        {"a far time range, max first", {{'x', 0}, {'X', 10}, {'X', 1.7e9}, {'x', 1.7e9 - 600}},
         1.7e9 - 600, 1.7e9, 1.7e9 - 600, 1.7e9},
        {"NaN and infinity ignored", {{'x', 1}, {'X', 2}, {'X', nan}, {'x', inf}, {'x', -inf}}, 1, 2, 1, 2},
        {"equal limits: the axis still has a span", {{'x', 3}, {'X', 3}}, 3, 3, 2.5, 3.5},
        {"time axis: room right of the newest point", {{'x', 1000}, {'X', 1600}, {'T', 1}}, 1000, 1600, 1000, 1618},
        {"time axis on before the limits", {{'T', 1}, {'X', 1600}, {'x', 1000}}, 1000, 1600, 1000, 1618},
        {"time axis off again", {{'x', 1000}, {'X', 1600}, {'T', 1}, {'T', 0}}, 1000, 1600, 1000, 1600},
    };
    for (const Case& c : cases) {
        PlexPlot plot;
        for (auto [which, v] : c.sets) which == 'X' ? plot.SetXMax(v) : which == 'x' ? plot.SetXMin(v) : plot.SetTimeAxis(v);
        const QCPRange shown = plot.Canvas()->xAxis->range();
        EXPECT_EQ((std::array<double, 4>{plot.XMin(), plot.XMax(), shown.lower, shown.upper}),
                  (std::array<double, 4>{c.xMin, c.xMax, c.shownLo, c.shownUp})) << c.name;
    }
    PlexPlot plot;
    plot.SetXRange(7, nan);  // one bad limit: neither is taken
    EXPECT_EQ(plot.XMin(), 0);
}

TEST(Axes, AutoScaleMovesOnlyTheFlaggedLimitsToTheValuesAsDrawn) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    // Values at x 0..n-1 (or at xs), relative or not to a reference of 4, 4; flags xMin, xMax, yMin, yMax.
    struct Case { const char* name; std::vector<float> values; bool relative; ui::AxisLimits before; int16_t flags[4];
                  ui::AxisLimits after; std::vector<double> xs = {}; };
    const std::vector<float> data{10, 30, 20, 15, 12};
    const ui::AxisLimits wide{-100, 100, -100, 100};
    const Case cases[] = {
        {"nothing flagged", data, false, wide, {0, 0, 0, 0}, wide},
        {"y: 5 % of the span added", data, false, wide, {0, 0, 1, 1}, {-100, 100, 9, 31}},
        {"x: exactly the data", data, false, wide, {1, 1, 0, 0}, {0, 4, -100, 100}},
        {"any non-zero value is a flag", data, false, wide, {-1, 0, 0, 0}, {0, 100, -100, 100}},
        {"y over the points within x only", data, false, {1.5, 3.5, 0, 1}, {0, 0, 1, 1}, {1.5, 3.5, 14.75, 20.25}},
        {"x first, then y within the new x", data, false, {1.5, 3.5, 0, 1}, {1, 1, 1, 1}, {0, 4, 9, 31}},
        {"flat data: 0.5 either side", {7, 7, 7}, false, wide, {0, 0, 1, 1}, {-100, 100, 6.5, 7.5}},
        {"a span below 1: still 5 % of it", {0, 0.5}, false, wide, {0, 0, 1, 1}, {-100, 100, -0.025, 0.525}},
        {"flat large data: 5 % of the value", {100, 100}, false, wide, {0, 0, 1, 1}, {-100, 100, 95, 105}},
        {"flat negative data: 5 % of its size", {-80, -80}, false, wide, {0, 0, 1, 1}, {-100, 100, -84, -76}},
        {"relative: against the reference", {14, 24}, true, wide, {0, 0, 1, 1}, {-100, 100, 9.5, 20.5}},
        {"NaN and infinity ignored", {nan, 10, inf, 20}, false, wide, {0, 0, 1, 1}, {-100, 100, 9.5, 20.5}},
        {"no data in view: unchanged", {1, 2}, false, {10, 20, -1, 1}, {0, 0, 1, 1}, {10, 20, -1, 1}},
        {"x: points without a value left out", {1, 2, nan}, false, wide, {1, 1, 0, 0}, {5, 6, -100, 100}, {5, 6, 50}},
    };
    for (const Case& c : cases) {
        PlexPlot plot;
        plot_test::SetLimits(plot, c.before.xMin, c.before.xMax, c.before.yMin, c.before.yMax);
        const auto n = static_cast<int32_t>(c.values.size());
        const int32_t t = c.xs.empty() ? plot.CreateTrace(n, c.values) : plot.CreateTraceXY(n, c.xs, c.values);
        const std::vector<float> far{1e6f, -1e6f}, reference{4, 4};
        plot.ShowTrace(plot.CreateTrace(2, far), false);  // hidden traces do not count
        plot.SetReferenceData(t, reference, 2);
        plot.SetRelativeDisplay(c.relative, t);
        plot.AutoScale(c.flags[0], c.flags[1], c.flags[2], c.flags[3]);
        EXPECT_EQ((std::array<double, 4>{plot.XMin(), plot.XMax(), plot.YMin(), plot.YMax()}),
                  (std::array<double, 4>{c.after.xMin, c.after.xMax, c.after.yMin, c.after.yMax})) << c.name;
    }
}

TEST(Axes, TimeTextIsTheMiddlewaresTextOfTheNearestSecond) {
    const double t = 1'795'373'940;
    const std::pair<double, std::string> cases[] = {
        {t, vire::CTIME(1'795'373'940)},       {t + 0.4, vire::CTIME(1'795'373'940)},
        {t + 0.5, vire::CTIME(1'795'373'941)}, {-0.4, vire::CTIME(0)},
        {-1, ""},                               {2147483647.0, vire::CTIME(2147483647)},
        {2147483648.0, ""},                     {std::nan(""), ""},
        {std::numeric_limits<double>::infinity(), ""},
    };
    PlexPlot plot;
    for (const auto& [x, expected] : cases) EXPECT_EQ(plot.XToTimeText(x), expected) << x;
}

TEST(Axes, TimeTicksAreReadableForTheSpanShown) {
    const std::string time = "[0-9]{2}:[0-9]{2}", seconds = time + ":[0-9]{2}", year = "\n[0-9]{2}\\.[0-9]{2}\\.[0-9]{4}";
    const std::string day = "\n[0-9]{2}\\.[0-9]{2}\\.";
    struct Case { double span; bool history; std::string pattern; double end; };  // the pattern of every tick label
    // Local time in Berlin: the first window ends at 19:59, the second at
    // 00:30 on the next day, so its ticks either side of midnight carry the day.
    constexpr double evening = 1'795'373'940, afterMidnight = 1'795'390'200;
    const Case cases[] = {
        {600, false, seconds, evening},       {3600, false, seconds, evening},    {3601, false, time, evening},
        {21600, false, time, evening},        {3 * 86400, false, time + day, evening},
        {600, true, seconds + year, evening}, {86400, true, time + year, evening},
        {3600, false, seconds + day, afterMidnight}, {21600, false, time + day, afterMidnight},
    };
    test_support::ScopedTimeZone zone("Europe/Berlin");
    for (const Case& c : cases) {
        PlexPlot plot;
        plot_test::Show(plot, 1000, 300);
        plot.SetTimeAxis(true);
        plot.SetHistoryDisplay(c.history);
        plot.SetXRange(c.end - c.span, c.end);
        plot.Canvas()->grab();
        const auto labels = plot.Canvas()->xAxis->tickVectorLabels();
        EXPECT_GE(labels.size(), 3) << c.span;
        EXPECT_LE(labels.size(), 12) << c.span;
        for (const QString& label : labels)
            EXPECT_TRUE(std::regex_match(label.toStdString(), std::regex(c.pattern))) << c.span << " " << label.toStdString();
    }
}

TEST(Axes, TrendPointsGoAtTheClocksTimeAndTheOldestLeave) {
    plot_test::LiveFixture live;  // the test clock
    PlexPlot plot;
    plot.SetTrendCapacity(3);
    const int32_t t = plot.CreateTraceXY(0, {}, std::vector<float>{});
    for (int i = 0; i < 4; ++i) {
        vire::AdvanceTestClock(1500);
        plot.AppendPoint(t, static_cast<float>(i), 99, 1);
    }
    plot.AppendPoint(t, 8.0f, 41, 2);  // any flag but 1: at x = the counter
    plot.AppendPoint(t, 9.0f, 42, 0);
    std::vector<float> values;
    std::vector<double> xs;
    ASSERT_EQ(plot.ReadTracePoints(t, values, xs), 3);
    const double start = plot_test::kStartMs / 1000.0;
    EXPECT_EQ(values, (std::vector<float>{3, 8, 9}));
    EXPECT_EQ(xs, (std::vector<double>{start + 6.0, 41, 42}));
    EXPECT_FALSE(plot.Model().traces.Find(t)->ascending);  // no longer binned by column
    // Points at one time (two appends within a tick) still ascend and are binned.
    EXPECT_TRUE(plot.Model().traces.Find(plot.CreateTraceXY(3, std::vector<double>{1, 1, 2}, std::vector<float>{1, 2, 3}))->ascending);

    const int32_t u = plot.CreateTrace(2, std::vector<float>{5, 6});  // from values alone:
    plot.AppendPoint(u, 7.0f, 2, 0);                                  // indices become x
    plot.ReadTracePoints(u, values, xs);
    EXPECT_EQ(xs, (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(values, (std::vector<float>{5, 6, 7}));
    plot.SetTrendCapacity(0);
    EXPECT_EQ(plot.TrendCapacity(), 1);
}

}  // namespace
