// Handles of traces, texts and marks: what each operation answers for a live,
// a deleted, a cleared and a never-issued handle; how handles wrap; what a clear keeps.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "plot_test_support.h"
#include "ui/plot/handle_table.h"

namespace {

using ui::PlexPlot;

const std::vector<float> kValues{1, 2, 3, 4};

struct Handles { int32_t trace, text, mark; };

TEST(PlotHandles, OnlyALiveHandleReachesItsObject) {
    enum Kind { Live, Deleted, Cleared, Unknown };
    const std::pair<const char*, Kind> kinds[] = {
        {"live", Live}, {"deleted before", Deleted}, {"removed by remove-all", Cleared}, {"never issued", Unknown}};
    using Op = std::function<bool(PlexPlot&, const Handles&)>;
    const std::pair<const char*, Op> ops[] = {
        {"UpdateTrace", [](PlexPlot& p, const Handles& h) { return p.UpdateTrace(h.trace, kValues, 4); }},
        {"ShowTrace", [](PlexPlot& p, const Handles& h) { return p.ShowTrace(h.trace, false); }},
        {"SetReferenceData", [](PlexPlot& p, const Handles& h) { return p.SetReferenceData(h.trace, kValues, 4); }},
        {"SetRelativeDisplay", [](PlexPlot& p, const Handles& h) { return p.SetRelativeDisplay(true, h.trace); }},
        {"SetTraceRange", [](PlexPlot& p, const Handles& h) { return p.SetTraceRange(h.trace, 0, 1); }},
        {"SetLabelAnchors", [](PlexPlot& p, const Handles& h) { return p.SetLabelAnchors(h.trace, {0}); }},
        {"AppendPoint", [](PlexPlot& p, const Handles& h) { return p.AppendPoint(h.trace, 1, 0, 0); }},
        {"DeleteTrace", [](PlexPlot& p, const Handles& h) { return p.DeleteTrace(h.trace); }},
        {"RemoveText", [](PlexPlot& p, const Handles& h) { return p.RemoveText(h.text); }},
        {"RemoveMark", [](PlexPlot& p, const Handles& h) { return p.RemoveMark(h.mark); }},
    };
    for (const auto& [kindName, kind] : kinds)
        for (const auto& [opName, op] : ops) {
            PlexPlot plot;
            Handles h{plot.CreateTrace(4, kValues), plot.DrawText(1, 1, "t"), plot.AddMark(2)};
            if (kind == Deleted) {
                plot.DeleteTrace(h.trace);
                plot.RemoveText(h.text);
                plot.RemoveMark(h.mark);
            } else if (kind == Cleared) {
                plot.RemoveAllTraces();
                plot.RemoveAllTexts();
                plot.RemoveAllMarks();
            } else if (kind == Unknown) {
                h = {h.trace + 100, h.trace + 100, h.trace + 100};
            }
            // Objects made afterwards must not answer to the old handles, and
            // a refused call must leave them alone.
            const Handles later{plot.CreateTrace(2, kValues), plot.DrawText(2, 2, "u"), plot.AddMark(3)};
            EXPECT_EQ(op(plot, h), kind == Live) << kindName << " / " << opName;
            EXPECT_EQ(plot.Model().traces.Find(later.trace)->values.size(), 2u) << kindName << " / " << opName;
            EXPECT_NE(plot.Model().texts.Find(later.text), nullptr) << kindName << " / " << opName;
            EXPECT_NE(plot.Model().marks.Find(later.mark), nullptr) << kindName << " / " << opName;
        }
}

TEST(PlotHandles, HandlesCountUpAndWrapPastTheLargest) {
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    ui::HandleTable<int> table(kMax - 1);
    EXPECT_EQ(table.Add(0), kMax - 1);
    EXPECT_EQ(table.Add(0), kMax);
    EXPECT_EQ(table.Add(0), 1);
    table.Remove(kMax - 1);
    EXPECT_EQ(table.Add(0), 2);  // the count goes on; a freed handle is not taken back
}

TEST(PlotHandles, CountsAreHeldToTheBuffersGiven) {
    struct Case { const char* name; int32_t count; size_t values, labels, points, keptLabels; };
    const Case cases[] = {{"count as given", 3, 4, 4, 3, 3}, {"count beyond the buffer", 10, 4, 4, 4, 4},
                          {"negative count", -5, 4, 4, 0, 0}, {"fewer labels than points", 4, 4, 2, 4, 2}};
    for (const Case& c : cases) {
        PlexPlot plot;
        const std::vector<float> values(c.values, 1.0f);
        const int32_t h = plot.CreateTrace(c.count, values, std::vector<std::string>(c.labels, "L"));
        ASSERT_GT(h, 0) << c.name;
        EXPECT_EQ(plot.Model().traces.Find(h)->values.size(), c.points) << c.name;
        EXPECT_EQ(plot.Model().traces.Find(h)->labels.size(), c.keptLabels) << c.name;
        plot.UpdateTrace(h, values, c.count);
        EXPECT_EQ(plot.Model().traces.Find(h)->values.size(), c.points) << c.name << " (update)";
    }
}

TEST(PlotHandles, ClearRemovesWhatThePlotHoldsButKeepsItsAxes) {
    for (bool keepMarks : {false, true}) {  // links stopping on clear: see the live link tests
        PlexPlot plot;
        plot.SetXRange(5, 50);
        plot.SetYLabel("mm");
        plot.SetCaption("Orbit");
        plot.SetReferenceData(plot.CreateTrace(4, kValues, std::vector<std::string>{"a", "b", "c", "d"}), kValues, 4);
        plot.DrawText(0, 0, "x");
        plot.AddMark(1);
        plot.Clear(keepMarks);
        const ui::PlotModel& m = plot.Model();
        EXPECT_TRUE(m.traces.empty() && m.texts.empty() && m.reference.empty());
        EXPECT_EQ(m.marks.size(), keepMarks ? 1u : 0u);
        EXPECT_EQ((std::array<double, 2>{plot.XMin(), plot.XMax()}), (std::array<double, 2>{5, 50}));
        EXPECT_EQ(plot.YLabel() + " " + plot.Caption(), "mm Orbit");
    }
}

}  // namespace
