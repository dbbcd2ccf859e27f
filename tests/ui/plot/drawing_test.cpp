// What ends up on screen: traces where their (relative, own-scale) values
// put them, reference traces beneath, texts, marks and cursor in their colours.
#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <vector>

#include "plot_test_support.h"

namespace {

constexpr ui::Colour kGreen = 0x008000, kDarkRed = 0x000080, kBlue = 0xFF0000;

class DrawingTest : public ::testing::Test {
protected:
    void SetUp() override {
        plot_test::SetLimits(plot, 0, 9, 0, 100);
        plot_test::Show(plot);
    }
    // A flat trace of 10 points.
    int32_t Flat(float value, ui::Colour colour) {
        plot.SetForeColour(colour);
        return plot.CreateTrace(10, std::vector<float>(10, value));
    }
    // The colour drawn at (x, y): without antialiasing a point inks the pixel whose square holds it.
    QColor At(double y, double x = 4.5) {
        const QImage image = plot.Canvas()->grab().toImage();
        const QPointF p = plot.Canvas()->ToPixel(x, y);
        return image.pixelColor(static_cast<int>(std::floor(p.x())), static_cast<int>(std::floor(p.y())));
    }
    ui::PlexPlot plot;
};

TEST_F(DrawingTest, RelativeTracesAreDrawnAgainstTheReference) {
    struct Case { const char* name; bool relative; size_t reference; double drawnAt, notAt; };  // reference: n x 40
    const Case cases[] = {
        {"off: as the values are", false, 10, 70, 30},
        {"on: values minus reference", true, 10, 30, 70},
        {"on, reference shorter than the trace: the rest as it is", true, 2, 70, 30},
        {"on, no reference data: as the values are", true, 0, 70, 30},
    };
    for (const Case& c : cases) {
        plot.Clear();
        const int32_t spectrum = Flat(70, kGreen);
        if (c.reference) {
            // Given with the frozen copy's trace; it stays when that trace goes.
            const int32_t frozen = Flat(0, kDarkRed);
            plot.SetReferenceData(frozen, std::vector<float>(c.reference, 40.0f), static_cast<int32_t>(c.reference));
            plot.DeleteTrace(frozen);
        }
        plot.SetRelativeDisplay(c.relative, spectrum);
        EXPECT_EQ(At(c.drawnAt), ui::ToQColor(kGreen)) << c.name;
        EXPECT_NE(At(c.notAt), ui::ToQColor(kGreen)) << c.name;
    }
}

TEST_F(DrawingTest, ReferenceTracesLieBeneathOwnScalesApplyOutsideTheCommonScale) {
    const int32_t live = Flat(50, kGreen);
    plot.SetTraceStyle(ui::kTraceStyleReference);
    Flat(50, kDarkRed);  // made after, still beneath
    EXPECT_EQ(At(50), ui::ToQColor(kGreen));
    plot.ShowTrace(live, false);
    EXPECT_EQ(At(50), ui::ToQColor(kDarkRed));
    plot.RemoveAllTraces();

    const int32_t own = Flat(5, kGreen);
    plot.SetTraceRange(own, 0, 10);  // 5 is half its own range
    EXPECT_EQ(At(5), ui::ToQColor(kGreen));  // common scale (25) at start
    plot.SetAxisMode(0);
    EXPECT_EQ(At(50), ui::ToQColor(kGreen));
    EXPECT_NE(At(5), ui::ToQColor(kGreen));
}

TEST_F(DrawingTest, TheAxesFrameIsDrawnAgainOnlyWhenItChanged) {
    const int32_t t = Flat(50, kGreen);
    const int first = plot.Canvas()->FrameRenders();
    auto renders = [&] {
        plot.Canvas()->grab();
        return plot.Canvas()->FrameRenders() - first;
    };
    plot.UpdateTrace(t, std::vector<float>(10, 60.0f), 10);
    plot.SetCursorX(1);
    plot.DrawText(1, 1, "Live : ");
    plot.AutoScale(0, 0, 0, 0);
    EXPECT_EQ(renders(), 0);
    plot.AutoScale(0, 0, 1, 1);  // the limits move
    EXPECT_EQ(renders(), 1);
    plot.AutoScale(0, 0, 1, 1);  // same data, same limits
    EXPECT_EQ(renders(), 1);
}

TEST_F(DrawingTest, OnlyWhatChangedIsDrawnAgainAndTheXAxisStaysInThePicture) {
    const int32_t trace = Flat(50, kGreen);
    plot.SetCaption("Orbit");
    const ui::PlotCanvas& canvas = *plot.Canvas();
    const auto axisInk = [&] {  // the x axis's line, ticks and numbers below the plot area
        const QImage image = plot.Canvas()->grab().toImage();
        int ink = 0;
        for (int y = canvas.PlotArea().bottom() + 1; y < image.height(); ++y)
            for (int x = canvas.PlotArea().left(); x <= canvas.PlotArea().right(); ++x)
                ink += image.pixelColor(x, y) != Qt::white;
        return ink;
    };
    const int ink = axisInk();
    const struct { const char* change; std::function<void()> make; int frames, xAxes; } cases[] = {
        {"the same caption", [&] { plot.SetCaption("Orbit"); }, 0, 0},
        {"the same limits", [&] { plot_test::SetLimits(plot, 0, 9, 0, 100); }, 0, 0},
        {"new values", [&] { plot.UpdateTrace(trace, std::vector<float>(10, 70.0f), 10); }, 0, 0},
        {"a new y range", [&] { plot.SetYMax(120); }, 1, 0},
        {"a new x range", [&] { plot.SetXRange(0, 19); }, 1, 1},
        {"a new caption", [&] { plot.SetCaption("Orbit vertical"); }, 1, 1},
    };
    for (const auto& c : cases) {
        const int frames = canvas.FrameRenders(), xAxes = canvas.XAxisRenders();
        c.make();
        EXPECT_GT(axisInk(), ink / 2) << c.change;
        EXPECT_EQ(canvas.FrameRenders() - frames, c.frames) << c.change;
        EXPECT_EQ(canvas.XAxisRenders() - xAxes, c.xAxes) << c.change;
    }
}

TEST_F(DrawingTest, TextsStandInTheirBandAboveTheDataAtTheirXWithoutCoveringEachOther) {
    Flat(80, kGreen);  // data right where the captions are placed
    plot.SetForeColour(kBlue);
    const int32_t live = plot.DrawText(5.85, 85, "\u2588\u2588\u2588\u2588");  // solid blocks
    const int32_t mode = plot.DrawText(0.45, 85, " Autoscale");
    const int32_t close = plot.DrawText(0.5, 85, "Marker:  Nov 14 23:13:20");
    plot.DrawText(-3, 85, "left of the range");
    std::map<int32_t, QRectF> at;
    for (const auto& [handle, box] : plot.Canvas()->TextBoxes()) at[handle] = box;
    ASSERT_EQ(at.size(), 3u);
    EXPECT_LE(std::max({at[live].bottom(), at[mode].bottom(), at[close].bottom()}), plot.Canvas()->PlotArea().top());
    EXPECT_EQ(std::pair(at[live].left(), at[mode].left()),
              std::pair(plot.Canvas()->ToPixel(5.85, 0).x(), plot.Canvas()->ToPixel(0.45, 0).x()));
    EXPECT_GE(at[close].left(), at[mode].right()) << "moved past the text it would cover";
    const QColor ink = plot.Canvas()->grab().toImage().pixelColor(at[live].center().toPoint());  // edges smoothed
    EXPECT_TRUE(ink.blue() > 200 && ink.red() < 80 && ink.green() < 80) << ink.name().toStdString();
    EXPECT_EQ(At(80, 5.9), ui::ToQColor(kGreen)) << "the trace under the caption's x is not hidden";
}

TEST_F(DrawingTest, ANoticeIsReadOverTheDataAndStaysUntilItsOwnerTakesItAway) {
    for (const char* notice : {"Part 2 of 4 failing", "Parts 3 to 4 of 4 missing\nPart 1 of 4 failing"}) {
        plot.SetNotice(notice);
        const QRectF box = plot.Canvas()->NoticeBox();
        EXPECT_TRUE(QRectF(plot.Canvas()->PlotArea()).contains(box)) << notice;
        // Opaque: a trace through the box does not show on its ground.
        const int32_t through = Flat(float(plot.Canvas()->ToAxis(box.center()).y()), kGreen);
        EXPECT_NE(At(plot.Canvas()->ToAxis(box.center()).y(), plot.Canvas()->ToAxis(box.topLeft() + QPointF(3, 0)).x()),
                  ui::ToQColor(kGreen)) << notice;
        plot.DeleteTrace(through);
    }
    plot.Clear();
    EXPECT_EQ(plot.Notice(), "Parts 3 to 4 of 4 missing\nPart 1 of 4 failing");
    plot.SetNotice("");
    EXPECT_TRUE(plot.Canvas()->NoticeBox().isEmpty());
}

TEST_F(DrawingTest, MarksAndCursorAppearWhereAndInTheColourGivenAndNowhereWhenAbsurd) {
    plot.SetMarkColour(0x0000FF);
    plot.AddMark(6);
    EXPECT_EQ(At(99, 6), ui::ToQColor(0x0000FF));  // its arrow at the top

    EXPECT_FALSE(plot.CursorVisible());
    plot.SetCursorX(3);
    EXPECT_EQ(At(45, 3), QColor(0x50, 0x50, 0x50));
    plot.SetCursorVisible(false);
    EXPECT_EQ(At(45, 3), QColor(Qt::white));

    // At absurd positions: drawn nowhere.
    Flat(50, kGreen);
    const QImage before = plot.Canvas()->grab().toImage();
    for (double v : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e300}) {
        plot.DrawText(v, 50, "x");
        if (!std::isfinite(v)) plot.DrawText(5, v, "x");
        plot.AddMark(v);
        plot.SetCursorX(v);
    }
    EXPECT_EQ(plot.Canvas()->grab().toImage(), before);
}

TEST_F(DrawingTest, NamedVisibleTracesAreListedInARowOfTheirOwnAboveThePlotArea) {
    const QRect bare = plot.Canvas()->PlotArea();
    const int32_t green = Flat(50, kGreen), blue = Flat(60, kBlue);
    // Which colours the legend row shows (none when there is no row).
    auto legend = [&] {
        const QImage image = plot.Canvas()->grab().toImage();
        const QRect row = plot.Canvas()->LegendArea();
        bool seen[2] = {false, false};
        for (int y = row.top(); y <= row.bottom(); ++y)
            for (int x = row.left(); x <= row.right(); ++x) {
                seen[0] |= image.pixelColor(x, y) == ui::ToQColor(kGreen);
                seen[1] |= image.pixelColor(x, y) == ui::ToQColor(kBlue);
            }
        EXPECT_TRUE(row.isEmpty() || row.bottom() < plot.Canvas()->PlotArea().top());
        return std::string(seen[0] ? "green" : "") + (seen[1] ? "blue" : "");
    };
    EXPECT_EQ(legend(), "");
    EXPECT_TRUE(plot.SetTraceName(green, "BPM01") && plot.SetTraceName(blue, "BPM02"));
    EXPECT_EQ(legend(), "greenblue");
    EXPECT_LT(plot.Canvas()->PlotArea().height(), bare.height());
    plot.ShowTrace(blue, false);
    EXPECT_EQ(legend(), "green");
    plot.SetTraceName(green, "");
    EXPECT_EQ(legend(), "");
    EXPECT_EQ(plot.Canvas()->PlotArea(), bare);
    EXPECT_FALSE(plot.SetTraceName(green + 100, "x"));
}

}  // namespace
