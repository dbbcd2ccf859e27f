// The trend plots' zoom stack: how deep it goes, what counts as a zoom out,
// and what each entry keeps of the plots that were not zoomed.
#include <gtest/gtest.h>

#include "catalogue/runtime_error.h"
#include "viewer/zoom_stack.h"

namespace {

using viewer::ZoomStack;
using viewer::ZoomView;
using Step = ZoomStack::Step;

constexpr std::array<std::array<double, 2>, 4> kOthers{{{-1, 1}, {-2, 2}, {-3, 3}, {-4, 4}}};

ZoomStack Full() {
    ZoomStack stack;
    stack.SetFull(0, 1000);
    for (int c = 0; c < 4; ++c) stack.SetFullYRange(c, -10, 10);
    return stack;
}

TEST(ZoomStack, EachViewAfterTwoZoomInsStepsAsItEnclosesTheTop) {
    // Two zoom-ins on column 0 (to 100..900 x -5..5, then 200..800 x -4..4),
    // then the view under test.
    struct Case { ZoomView view; bool zoomed; Step step; int depth; double from; };
    const Case cases[] = {
        {{100, 900, -5, 5}, true, Step::Out, 1, 100},     // exactly the top entry's parent: encloses the top
        {{150, 850, -4, 4}, true, Step::Out, 1, 100},     // encloses on all four sides, equal in y
        {{150, 850, -3, 4}, true, Step::In, 3, 150},      // wider in time, lower in y: a zoom in
        {{150, 850, -4, 3.5}, true, Step::In, 3, 150},    // narrower at the top
        {{250, 850, -9, 9}, true, Step::In, 3, 250},      // starts later
        {{0, 1000, -10, 10}, true, Step::Reset, 0, 0},    // back at entry 0
        {{0, 1000, -10, 9}, true, Step::Out, 1, 100},     // almost entry 0 is one step out
        {{300, 400, -1, 1}, false, Step::Reset, 0, 0},    // the plot says it is not zoomed
    };
    for (const Case& c : cases) {
        ZoomStack stack = Full();
        stack.Zoom(0, {100, 900, -5, 5}, true, kOthers);
        stack.Zoom(0, {200, 800, -4, 4}, true, kOthers);
        EXPECT_EQ(stack.Zoom(0, c.view, c.zoomed, kOthers), c.step) << c.view.start << " " << c.view.yMin;
        EXPECT_EQ(stack.Depth(), c.depth) << c.view.start;
        EXPECT_EQ(stack.Top().from, c.from) << c.view.start;
    }
}

TEST(ZoomStack, TwentyZoomInsStopAtNineteenAndReplaceTheTop) {
    ZoomStack stack = Full();
    for (int k = 1; k <= 20; ++k) stack.Zoom(1, {double(k), 1000.0 - k, -10.0 + k * 0.1, 10}, true, kOthers);
    EXPECT_EQ(stack.Depth(), 19);
    EXPECT_EQ(stack.Top().from, 20) << "the twentieth zoom is the top";
    EXPECT_EQ(stack.Entry(18).from, 18);
    EXPECT_EQ(ZoomStack::Caption(stack.Depth()), "Zooms: 19");
    // The zoomed column keeps the view, the two other plots their ranges of
    // the moment; the unused column is left alone.
    EXPECT_EQ(stack.Top().yMin, (std::array<double, 4>{-1, -8.0, -3, 0}));
    EXPECT_EQ(stack.Top().yMax, (std::array<double, 4>{1, 10, 3, 0}));
    stack.SetTopYRange(2, -7, 7);
    EXPECT_EQ(stack.Entry(19).yMax[2], 7);
    EXPECT_EQ(stack.Entry(0).yMax[2], 10) << "only the shown entry is rescaled";
}

TEST(ZoomStack, BackStopsAtZeroAndAColumnOutsideTheFourThrows) {
    ZoomStack stack = Full();
    stack.Zoom(2, {10, 20, 0, 1}, true, kOthers);
    stack.Back();
    stack.Back();
    EXPECT_EQ(stack.Depth(), 0);
    EXPECT_THROW(stack.Zoom(4, {10, 20, 0, 1}, true, kOthers), catalogue::RuntimeError);
    EXPECT_THROW(stack.SetTopYRange(-1, 0, 1), catalogue::RuntimeError);
    EXPECT_EQ(stack.Depth(), 0);
}

}  // namespace
