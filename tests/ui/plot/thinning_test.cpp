// Thinning a trace to its pixel columns: the drawn picture must stay the
// picture of every point, for dense data, gaps, references and bad values.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "ui/plot/column_thinning.h"

namespace {

using ui::BuildShape;
using ui::PixelMapping;
using ui::ShapeKind;
using ui::TracePoints;

TEST(Thinning, ADenseTraceIsALinePerColumnFromItsLowestToItsHighestValueJoinedToTheNextColumn) {
    // Eight points a pixel column: each column enters at 50, has one point at 90 and one at 10 (lone
    // spikes), and leaves at 60. Column 50 is all gap, column 70 starts with one: no line leads into either.
    const float nan = std::numeric_limits<float>::quiet_NaN(), shown[8] = {50, 40, 40, 90, 40, 10, 40, 60};
    std::vector<QPointF> shape, expected;  // y pixels = 100 - y
    for (double c = 0; c < 100; ++c) {
        if (c == 50) continue;
        if (c > 0 && c != 51 && c != 70) expected.insert(expected.end(), {{c - 1, 40}, {c, 50}});
        expected.insert(expected.end(), {{c, 90}, {c, 10}});
    }
    for (const float offset : {0.0f, 5.0f}) {  // 5: drawn against a reference of 5
        std::vector<float> values(800), reference(offset > 0 ? 800 : 0, offset);
        for (size_t i = 0; i < values.size(); ++i) values[i] = i / 8 == 50 || i == 70 * 8 ? nan : shown[i % 8] + offset;
        TracePoints t;
        t.values = values;
        t.reference = reference;
        PixelMapping m;
        m.xScale = 0.125;
        m.yBottom = 100;
        ASSERT_EQ(BuildShape(t, m, 0, 99, shape), ShapeKind::LinePairs) << offset;
        EXPECT_EQ(shape, expected) << offset;
    }
}

TEST(Thinning, ShapesKeepPositionsRangeAndOrderSurviveBadValuesAndBreakAtGaps) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    constexpr ShapeKind kLine = ShapeKind::Polyline, kPairs = ShapeKind::LinePairs;
    struct Case { const char* name; std::vector<float> values, reference; std::vector<double> xs; bool ascending;
        double xLower; ShapeKind kind; std::vector<QPointF> expected; };
    // x pixels = x - xLower on columns 0..100, y pixels = 100 - y.
    const Case cases[] = {
        {"few points: exactly where they are", {0, 100, 50}, {}, {}, true, 0, kLine, {{0, 100}, {1, 0}, {2, 50}}},
        {"time axis: sub-second positions at 1.7e9", {1, 2}, {}, {1.7e9 + 0.25, 1.7e9 + 0.5}, true, 1.7e9, kLine,
         {{0.25, 99}, {0.5, 98}}},
        {"against a reference, beyond it as they are", {10, 20, 30}, {4, 4}, {}, true, 0, kLine,
         {{0, 94}, {1, 84}, {2, 70}}},
        {"leading NaN left out", {nan, 10, 30}, {}, {}, true, 0, kLine, {{1, 90}, {2, 70}}},
        {"all NaN: nothing", {nan, nan}, {}, {}, true, 0, kLine, {}},
        {"far off scale: held within 1e7 pixels", {1e30f, -inf}, {}, {}, true, 0, kLine, {{0, -1e7}, {1, 1e7}}},
        {"x out of order: as given", {1, 2, 3}, {}, {2, 0, 1}, false, 0, kLine, {{2, 99}, {0, 98}, {1, 97}}},
        {"NaN x left out", {1, 2}, {}, {std::nan(""), 1}, false, 0, kLine, {{1, 98}}},
        {"fewer x than values: the points with both", {1, 2, 3}, {}, {0, 1}, true, 0, kLine, {{0, 99}, {1, 98}}},
        {"scrolled: the view and one neighbour each side", std::vector<float>(500, 10), {}, {}, true, 300, kLine,
         [] {
             std::vector<QPointF> p;
             for (int x = -1; x <= 102; ++x) p.emplace_back(x, 90);
             return p;
         }()},
        {"nothing in view", std::vector<float>(50, 10), {}, {}, true, 300, kLine, {{-251, 90}}},
        {"a gap between runs", {10, 20, nan, 40, 50}, {}, {}, true, 0, kPairs, {{0, 90}, {1, 80}, {3, 60}, {4, 50}}},
        {"lone points stay as dots", {10, nan, 30}, {}, {}, true, 0, kPairs, {{0, 90}, {0, 90}, {2, 70}, {2, 70}}},
        {"a trailing gap ends the line", {10, 20, nan}, {}, {}, true, 0, kPairs, {{0, 90}, {1, 80}}},
        {"two gaps in a row are one break", {10, nan, nan, 40, 50}, {}, {}, true, 0, kPairs,
         {{0, 90}, {0, 90}, {3, 60}, {4, 50}}},
    };
    for (const Case& c : cases) {
        PixelMapping m;
        m.xLower = c.xLower;
        m.yScale = -1;
        m.yBottom = 100;
        TracePoints t;
        t.values = c.values;
        t.reference = c.reference;
        t.xs = c.xs;
        t.ascending = c.ascending;
        std::vector<QPointF> shape{{5, 5}};  // emptied first
        EXPECT_EQ(BuildShape(t, m, 0, 100, shape), c.kind) << c.name;
        EXPECT_EQ(shape, c.expected) << c.name;
    }
}

}  // namespace
