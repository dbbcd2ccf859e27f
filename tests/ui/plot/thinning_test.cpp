// Thinning a trace to its pixel columns: the drawn picture must stay the
// picture of every point, for dense data, gaps, references and bad values.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "ui/plot/column_thinning.h"

namespace {

using ui::BuildShape;
using ui::PixelMapping;
using ui::ShapeKind;
using ui::TracePoints;

constexpr int kWidth = 400, kHeight = 200;
using Extents = std::vector<std::pair<int, int>>;  // top and bottom inked row per column, -1 for none

Extents Ink(const std::vector<QPointF>& shape, ShapeKind kind) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QPen pen(Qt::black);
    pen.setCosmetic(true);
    painter.setPen(pen);
    if (kind == ShapeKind::LinePairs)
        painter.drawLines(shape.data(), static_cast<int>(shape.size() / 2));
    else
        painter.drawPolyline(shape.data(), static_cast<int>(shape.size()));
    painter.end();
    Extents extents(kWidth, {-1, -1});
    for (int x = 0; x < kWidth; ++x)
        for (int y = 0; y < kHeight; ++y)
            if (image.pixel(x, y) != qRgb(255, 255, 255)) {
                auto& e = extents[static_cast<size_t>(x)];
                e = {e.first < 0 ? y : e.first, y};
            }
    return extents;
}

// A steep line between two columns splits its pixels between them where it
// crosses; thinned, it crosses at the column's edge. So a column's ink must
// lie within the other picture's ink of the column and its neighbours, give
// or take a pixel.
bool Within(const Extents& a, const Extents& b, int x) {
    const auto [top, bottom] = a[static_cast<size_t>(x)];
    if (top < 0) return true;
    int lo = kHeight, hi = -1;
    for (int n = std::max(0, x - 1); n <= std::min(kWidth - 1, x + 1); ++n)
        if (b[static_cast<size_t>(n)].first >= 0) {
            lo = std::min(lo, b[static_cast<size_t>(n)].first);
            hi = std::max(hi, b[static_cast<size_t>(n)].second);
        }
    return top >= lo - 1 && bottom <= hi + 1;
}

TEST(Thinning, ADenseTraceInksWhatEveryPointWould) {
    std::mt19937 random(7);
    std::normal_distribution<float> noise(0.0f, 6.0f);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::pair<size_t, std::function<float(size_t)>> cases[] = {
        {8000, [&](size_t) { return 50.0f + noise(random); }},
        {64000, [](size_t i) { return static_cast<float>(50 + 40 * std::sin(i * 0.013) + 5 * std::sin(i * 0.37)); }},
        {8000, [](size_t i) { return i % 997 == 0 ? 95.0f : 10.0f; }},              // lone spikes
        {8000, [&](size_t i) { return (i / 50) % 3 == 1 ? nan : 30.0f + (i % 50); }},  // gaps
    };
    for (const auto& [count, value] : cases) {
        std::vector<float> v(count);
        for (size_t i = 0; i < count; ++i) v[i] = value(i);
        PixelMapping m;  // x 0..count-1 across the image, y 0..100 bottom to top
        m.xScale = (kWidth - 1) / static_cast<double>(count - 1);
        m.yScale = -(kHeight - 1) / 100.0;
        m.yBottom = kHeight - 1;
        // Every point joined to the next one, unless a gap lies between them.
        std::vector<QPointF> shape, full;
        const auto at = [&](size_t i) { return QPointF(i * m.xScale, v[i] * m.yScale + m.yBottom); };
        for (size_t i = 0; i + 1 < count; ++i)
            if (!std::isnan(v[i]) && !std::isnan(v[i + 1])) full.insert(full.end(), {at(i), at(i + 1)});
        TracePoints t;
        t.values = v;
        ASSERT_EQ(BuildShape(t, m, 0, kWidth - 1, shape), ShapeKind::LinePairs) << count;
        EXPECT_LE(shape.size(), 4u * kWidth) << count;
        const Extents thin = Ink(shape, ShapeKind::LinePairs), all = Ink(full, ShapeKind::LinePairs);
        int differing = 0, thinColumns = 0, allColumns = 0;
        for (int x = 0; x < kWidth; ++x) {
            differing += !Within(thin, all, x) || !Within(all, thin, x);
            thinColumns += thin[static_cast<size_t>(x)].first >= 0;
            allColumns += all[static_cast<size_t>(x)].first >= 0;
        }
        EXPECT_EQ(differing, 0) << count;
        EXPECT_NEAR(thinColumns, allColumns, 1) << count;
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
