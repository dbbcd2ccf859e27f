// Zoom by dragging, unzoom, silent reset, clicks, cursor moves and the options
// request, driven by simulated mouse input.
#include <gtest/gtest.h>

#include <QTest>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "plot_test_support.h"

namespace {

using ui::PlexPlot;
using Pair = std::array<double, 2>;
using Ranges = std::array<double, 4>;

class ZoomTest : public ::testing::Test {
protected:
    void SetUp() override {
        plot_test::SetLimits(plot, 0, 100, 0, 50);
        plot_test::Show(plot);
        // The zoom state is asked inside the event, as the window's handler does.
        QObject::connect(&plot, &PlexPlot::ZoomEvent, [this](double a, double b, double c, double d) {
            zooms.push_back({a, b, c, d});
            zoomedInEvent.push_back(plot.IsZoomed());
        });
        QObject::connect(&plot, &PlexPlot::CursorClick, [this](double x, double y) { clicks.push_back({x, y}); });
        QObject::connect(&plot, &PlexPlot::CursorMove, [this](double x, double y) { moves.push_back({x, y}); });
    }
    QWidget* canvas() { return plot.Canvas(); }
    // A pixel of the plot area, as fractions of its width and height from its top left.
    QPoint At(double fx, double fy) {
        const QRect area = plot.Canvas()->PlotArea();
        return QPoint(area.left() + qRound(fx * area.width()), area.top() + qRound(fy * area.height()));
    }
    QPointF Axis(QPoint pixel) { return plot.Canvas()->ToAxis(pixel); }
    Ranges Limits() const { return {plot.XMin(), plot.XMax(), plot.YMin(), plot.YMax()}; }
    void Drag(QPoint from, QPoint to) {
        QTest::mousePress(canvas(), Qt::LeftButton, {}, from);
        QTest::mouseMove(canvas(), (from + to) / 2);
        QTest::mouseMove(canvas(), to);
        QTest::mouseRelease(canvas(), Qt::LeftButton, {}, to);
    }

    PlexPlot plot;
    std::vector<Ranges> zooms;
    std::vector<bool> zoomedInEvent;
    std::vector<Pair> clicks, moves;
};

TEST_F(ZoomTest, ADraggedRectangleZoomsToItAndRaisesTheNewRanges) {
    // From and to as fractions of the plot area; a time axis' margin must not leak into the unzoomed x range.
    struct Case { const char* name; QPointF from, to; bool zoomX, zoomY, timeAxis; };
    const Case cases[] = {
        {"down and right", {0.2, 0.2}, {0.6, 0.7}, true, true, false},
        {"up and right", {0.3, 0.8}, {0.5, 0.1}, true, true, false},
        {"a sweep along x zooms x only", {0.1, 0.5}, {0.4, 0.5}, true, false, false},
        {"a sweep along y zooms y only", {0.5, 0.1}, {0.5, 0.6}, false, true, true},
    };
    for (const Case& c : cases) {
        plot.UnZoom();
        plot.SetTimeAxis(c.timeAxis);
        zooms.clear();
        zoomedInEvent.clear();
        const QPoint from = At(c.from.x(), c.from.y()), to = At(c.to.x(), c.to.y());
        const QPointF a = Axis(from), b = Axis(to);
        Drag(from, to);
        const Ranges expected{c.zoomX ? std::min(a.x(), b.x()) : 0, c.zoomX ? std::max(a.x(), b.x()) : 100,
                              c.zoomY ? std::min(a.y(), b.y()) : 0, c.zoomY ? std::max(a.y(), b.y()) : 50};
        EXPECT_EQ(zooms, std::vector<Ranges>{expected}) << c.name;
        EXPECT_EQ(zoomedInEvent, std::vector<bool>{true}) << c.name;
        EXPECT_TRUE(clicks.empty()) << c.name;
    }
}

TEST_F(ZoomTest, UnzoomReturnsToTheRangeBeforeTheFirstZoomAResetKeepsTheLimitsSilently) {
    struct Case { const char* name; int zoomsFirst; std::string how; size_t events; Ranges after; };  // zoom events
    const Ranges home{0, 100, 0, 50}, fromCode{10, 20, 0, 50};
    const Case cases[] = {
        {"backward drag after two zooms", 2, "back", 1, home},
        {"backward drag of the least length that counts", 1, "back4", 1, home},
        {"double click after one zoom", 1, "double", 1, home},
        {"call after three zooms", 3, "call", 1, home},
        {"backward drag when not zoomed", 0, "back", 0, fromCode},
        {"call when not zoomed", 0, "call", 0, fromCode},
        {"silent reset after two zooms: limits as code set them", 2, "reset", 0, fromCode},
        {"clear: as the reset", 1, "clear", 0, fromCode},
    };
    for (const Case& c : cases) {
        for (int i = 0; i < c.zoomsFirst; ++i) Drag(At(0.1, 0.1), At(0.8, 0.8));
        plot_test::SetLimits(plot, 10, 20, 0, 50);  // from code while zoomed: still zoomed, home kept
        EXPECT_EQ(plot.IsZoomed(), c.zoomsFirst > 0) << c.name;
        zooms.clear();
        zoomedInEvent.clear();
        if (c.how == "back") Drag(At(0.8, 0.2), At(0.2, 0.7));
        if (c.how == "back4") Drag(At(0.5, 0.5), At(0.5, 0.5) - QPoint(4, 0));
        if (c.how == "double") QTest::mouseDClick(canvas(), Qt::LeftButton, {}, At(0.5, 0.5));
        const bool undone = c.how == "call" ? plot.UnZoom() : c.how == "reset" ? plot.ResetZoom() : c.zoomsFirst > 0;
        EXPECT_EQ(undone, c.zoomsFirst > 0) << c.name;
        if (c.how == "clear") plot.Clear();
        EXPECT_EQ(zooms, std::vector<Ranges>(c.events, home)) << c.name;
        EXPECT_EQ(zoomedInEvent, std::vector<bool>(c.events, false)) << c.name;
        EXPECT_FALSE(plot.IsZoomed()) << c.name;
        EXPECT_EQ(Limits(), c.after) << c.name;
        EXPECT_FALSE(plot.UnZoom() || plot.ResetZoom()) << c.name;  // nothing left to undo
        plot.SetXRange(0, 100);
    }
}

TEST_F(ZoomTest, ShortMovesAreClicksTheCursorFollowsAndTheRightButtonAsksForOptions) {
    const QPoint at = At(0.25, 0.5), nudged = at + QPoint(3, -3);
    QTest::mousePress(canvas(), Qt::LeftButton, {}, at);
    QTest::mouseMove(canvas(), nudged);
    QTest::mouseRelease(canvas(), Qt::LeftButton, {}, nudged);
    EXPECT_EQ(clicks, (std::vector<Pair>{{Axis(nudged).x(), Axis(nudged).y()}}));
    EXPECT_TRUE(zooms.empty());

    moves.clear();
    const QPoint over = At(0.75, 0.25);
    QTest::mouseMove(canvas(), over);
    EXPECT_EQ(moves, (std::vector<Pair>{{Axis(over).x(), Axis(over).y()}}));
    EXPECT_DOUBLE_EQ(plot.CursorX(), Axis(over).x());
    EXPECT_TRUE(plot.CursorVisible());
    plot.SetCursorX(42);  // from code: no event
    plot.SetCursorX(std::nan(""));
    EXPECT_EQ(plot.CursorX(), 42);
    EXPECT_EQ(moves.size(), 1u);

    // Outside the plot area (on the axis labels): no event, no zoom, no click.
    clicks.clear();
    const QPoint outside = plot.Canvas()->PlotArea().bottomLeft() + QPoint(-10, 10);
    QTest::mouseMove(canvas(), outside);
    Drag(outside, outside + QPoint(-30, 20));
    EXPECT_EQ(moves.size() + clicks.size() + zooms.size(), 1u);

    std::vector<QPoint> requests;
    QObject::connect(&plot, &PlexPlot::OptionsRequest, [&](QPoint p) { requests.push_back(p); });
    for (QPoint p : {At(0.5, 0.5), QPoint(2, 2)}) QTest::mouseClick(canvas(), Qt::RightButton, {}, p);
    EXPECT_EQ(requests, (std::vector<QPoint>{canvas()->mapToGlobal(At(0.5, 0.5)), canvas()->mapToGlobal(QPoint(2, 2))}));
    EXPECT_TRUE(clicks.empty());
}

}  // namespace
