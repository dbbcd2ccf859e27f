// Element labels ("Device Name/Location"): thinned to what the axis can hold
// at 10, 500 and 8000 elements, cut when long, whole under the cursor.
#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QTest>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "plot_test_support.h"
#include "ui/plot/element_ticker.h"
#include "ui/plot/label_thinning.h"

namespace {

TEST(Labels, StepIsTheSmallestOf125ThatKeepsLabelsAPitchApart) {
    constexpr int64_t kOne = std::numeric_limits<int32_t>::max();  // at most one label
    struct Case { const char* name; double from, to, pixels, pitch; int64_t step; };
    const Case cases[] = {
        {"10 elements: every one", 0, 9, 1100, 14, 1},      {"500 elements", 0, 499, 1100, 14, 10},
        {"8000 elements", 0, 7999, 1100, 14, 200},           {"exactly one per pitch", 0, 100, 1400, 14, 1},
        {"just over one per pitch", 0, 100.5, 1400, 14, 2}, {"5 after 2", 0, 300, 1400, 14, 5},
        {"reversed range", 499, 0, 1100, 14, 10},           {"no room", 0, 10, 0, 14, kOne},
        {"NaN range", std::nan(""), 10, 100, 14, kOne},      {"huge span", 0, 1e300, 100, 14, kOne},
    };
    for (const Case& c : cases) EXPECT_EQ(ui::LabelStep(c.from, c.to, c.pixels, c.pitch), c.step) << c.name;
    EXPECT_EQ(ui::LabelledElements(-0.2, 9.2, 2, 10), (std::vector<int64_t>{0, 2, 4, 6, 8}));
    EXPECT_EQ(ui::LabelledElements(3.5, 1e9, 5, 17), (std::vector<int64_t>{5, 10, 15}));
    EXPECT_TRUE(ui::LabelledElements(-50, -1, 1, 10).empty());
    EXPECT_TRUE(ui::LabelledElements(0, 10, 0, 10).empty());
    // Part starts first (one a step from the one before is dropped), the rest a step clear of them.
    const std::vector<int64_t> starts{0, 37, 42, 81};
    EXPECT_EQ(ui::LabelledElements(0, 99, 10, 100, starts), (std::vector<int64_t>{0, 10, 20, 37, 50, 60, 70, 81}));
    EXPECT_EQ(ui::LabelledElements(40, 99, 10, 100, starts), (std::vector<int64_t>{42, 60, 70, 81}));
    EXPECT_EQ(ui::LabelledElements(0, 30, 10, 31, starts), (std::vector<int64_t>{0, 10, 20, 30}));
}

struct AxisLabels { QVector<double> ticks; QVector<QString> labels; double pixelsPerElement; int pitch; };

// A labelled trace of n elements on a 1200-pixel plot; the labels its x axis shows.
AxisLabels LabelsOf(ui::PlexPlot& plot, int n, const std::string& prefix, std::vector<int32_t> anchors = {}) {
    std::vector<std::string> labels;
    for (int i = 0; i < n; ++i) labels.push_back(prefix + std::to_string(i));
    plot.SetXRange(-0.2, n - 1 + 0.2);
    EXPECT_TRUE(plot.SetLabelAnchors(plot.CreateTrace(n, std::vector<float>(static_cast<size_t>(n), 1.0f), labels),
                                     std::move(anchors)));
    plot_test::Show(plot, 1200, 500);
    plot.Canvas()->grab();  // lays the frame out with the labels
    QCPAxis* axis = plot.Canvas()->xAxis;
    return {axis->tickVector(), axis->tickVectorLabels(), plot.Canvas()->PlotArea().width() / (n - 1 + 0.4),
            QFontMetrics(axis->tickLabelFont()).height()};
}

TEST(Labels, TheAxisShowsWhatFitsAt10And500And8000ElementsPartStartsFirst) {
    // Spectra read in parts name the parts' first elements (never multiples of the step here).
    const std::pair<int, std::vector<int32_t>> cases[] = {
        {10, {}}, {500, {}}, {8000, {}}, {500, {0, 167, 333, 499, 600, -1}}, {8000, {0, 2667, 5333, 5339}}};
    for (const auto& [n, anchors] : cases) {
        ui::PlexPlot plot;
        const AxisLabels axis = LabelsOf(plot, n, "BPM.S01.C", anchors);
        ASSERT_FALSE(axis.ticks.isEmpty()) << n;
        EXPECT_EQ(axis.labels.front(), "BPM.S01.C0") << n;
        EXPECT_TRUE(n != 10 || axis.ticks.size() == 10);
        for (int32_t anchor : anchors)  // only those in the trace, a label's room apart
            EXPECT_EQ(axis.ticks.contains(anchor), anchor >= 0 && anchor < n && anchor != 5339) << n << " " << anchor;
        // At least a text height apart, and not more than twice what is needed (beside part starts: four times).
        for (int i = 1; i < axis.ticks.size(); ++i) {
            const double apart = (axis.ticks[i] - axis.ticks[i - 1]) * axis.pixelsPerElement;
            EXPECT_GE(apart, axis.pitch) << n;
            EXPECT_LE(apart, (n == 10 ? 1e9 : anchors.empty() ? 2.5 : 5) * axis.pitch) << n;
            EXPECT_EQ(axis.labels[i], QString("BPM.S01.C%1").arg(axis.ticks[i])) << n;
        }
    }
}

TEST(Labels, LongLabelsAreCutOnTheAxisAndShownWholeUnderTheCursor) {
    ui::PlexPlot plot;
    const std::string whole = "Q3BPM.S11.C4 (tunnel sector 11, girder 4)";
    const AxisLabels axis = LabelsOf(plot, 10, whole + " #");
    constexpr int kMax = ui::ElementTicker::kMaxLabelLength;
    EXPECT_EQ(axis.labels.front(), QString::fromStdString(whole).left(kMax - 1) + QChar(0x2026));
    ui::PlexPlot fits;  // a label of just the longest length stays whole
    EXPECT_EQ(LabelsOf(fits, 10, std::string(kMax - 1, 'Q')).labels.front(), QString(kMax - 1, 'Q') + "0");
    plot.SetXRange(-2, 11);  // room beside the elements
    plot.Canvas()->grab();
    const std::pair<double, std::string> cases[] = {{3.0, whole + " #3"}, {3.4, whole + " #3"}, {3.6, whole + " #4"},
        {-0.6, ""}, {-0.4, whole + " #0"}, {9.4, whole + " #9"}, {9.6, ""}};
    for (const auto& [x, hover] : cases) {
        const QPoint at = plot.Canvas()->ToPixel(x, 1.0).toPoint();
        const double landed = plot.Canvas()->ToAxis(at).x();
        ASSERT_LT(std::abs(landed - x), 0.05) << x;  // 20 pixels per element
        QTest::mouseMove(plot.Canvas(), at);
        EXPECT_EQ(plot.HoverLabel(), hover) << x;
    }
}

TEST(Labels, TheFirstVisibleLabelledTraceLabelsTheAxis) {
    ui::PlexPlot plot;
    const std::vector<float> v(3, 1.0f);
    const int32_t first = plot.CreateTrace(3, v, std::vector<std::string>{"a0", "a1", "a2"});
    plot.CreateTrace(3, v);
    EXPECT_EQ(LabelsOf(plot, 3, "b").labels.front(), "a0");  // made before the "b" trace
    auto shown = [&] {
        plot.Canvas()->grab();
        const auto labels = plot.Canvas()->xAxis->tickVectorLabels();
        return labels.isEmpty() ? QString() : labels.front();
    };
    plot.ShowTrace(first, false);
    EXPECT_EQ(shown(), "b0");
    QTest::mouseMove(plot.Canvas(), plot.Canvas()->ToPixel(1, 1).toPoint());  // under the cursor too
    EXPECT_EQ(plot.HoverLabel(), "b1");
    plot.RemoveAllTraces();
    EXPECT_EQ(shown(), "0");  // plain numbers again
}

}  // namespace
