// Following elements on the window, against the simulated accelerator:
// adding, removing and recolouring items, their histories and sources, the
// trend's breaks, the cursor read-out and the time navigation.
#include <gtest/gtest.h>

#include <QDate>
#include <QSpinBox>
#include <cmath>

#include "form_fixture.h"
#include "ui/controls/value_grid.h"
#include "viewer/value_text.h"

namespace {

using viewer_test::FormFixture;

// The sample configuration's first channel: ORKA's horizontal orbit.
struct ItemWindow {
    ItemWindow() { f.Load(); }
    viewer::SpectrumForm& form() { return *f.form; }
    viewer::ItemList& items() { return f.State().Items; }
    void Add(int row) {
        form().ComboDevs->setCurrentIndex(row);
        form().ComSelDevice_Click();
        f.Settle();  // the new link's first reading, taken at once
    }
    std::vector<float> TraceValues(int slot) {
        std::vector<float> values;
        std::vector<double> xs;
        form().PLEXPlotSelected->ReadTracePoints(items()[slot].traceNumber, values, xs);
        return values;
    }
    std::string Cell(int row, int col) { return form().GridSelected->TextMatrix(row, col); }
    FormFixture f;
};

TEST(Items, NineAreFollowedAndTheTenthAddsNothing) {
    ItemWindow w;
    for (int row = 0; row < 10; ++row) w.Add(row);
    ASSERT_EQ(w.items().Count(), 9);
    EXPECT_EQ(w.form().PLEXPlotSelected->Model().traces.size() + w.form().PLEXPlotSpectrum->Model().marks.size(), 18u);
    for (int16_t i = 0; i < 9; ++i) {
        EXPECT_EQ(w.Cell(i + 1, 0), w.items()[i].elementName + w.items()[i].tag);
        EXPECT_TRUE(w.items()[i].hasData && w.items()[i].linkHandle >= 0) << w.items()[i].elementName;
        EXPECT_EQ(w.form().GridSelected->CellBackColour(i + 1, 0), w.f.State().ItemColours[i]);
    }
    EXPECT_TRUE(w.f.dialogs.Records().empty());
}

TEST(Items, RemovingOneRecoloursTheRestAndRemovingAllLeavesTheHeadings) {
    ItemWindow w;
    for (int row = 0; row < 3; ++row) w.Add(row);
    const std::string third = w.items()[2].elementName;
    w.form().selectedItemDelete_Click();  // the last added is current
    w.Add(2);
    w.form().ClickAGrid(2);
    ASSERT_EQ(std::pair(w.items().Count(), w.items().Current()), (std::pair<int16_t, int16_t>(3, 1)));
    w.form().selectedItemDelete_Click();
    ASSERT_EQ(std::pair(w.items().Count(), w.items().Current()), (std::pair<int16_t, int16_t>(2, -1)));
    EXPECT_EQ(w.Cell(2, 0), third + w.items()[1].tag);
    EXPECT_EQ(w.form().GridSelected->CellBackColour(2, 0), w.f.State().ItemColours[1]) << "the moved item takes its new slot's colour";
    const auto* trace = w.form().PLEXPlotSelected->Model().traces.Find(w.items()[1].traceNumber);
    const auto* mark = w.form().PLEXPlotSpectrum->Model().marks.Find(w.items()[1].markNumber);
    ASSERT_TRUE(trace && mark && w.form().PLEXPlotSpectrum->Model().marks.size() == 2u);
    const uint32_t colour = w.f.State().ItemColours[1];
    EXPECT_EQ(std::pair(trace->colour, mark->colour), std::pair(colour, colour));
    w.form().selectedItemDelete_Click();
    EXPECT_EQ(w.items().Count(), 2) << "no item is current: nothing is deleted";

    w.form().allItemsDelete_Click();
    EXPECT_EQ(w.items().Count() + w.form().PLEXPlotSelected->Model().traces.size() +
                  w.form().PLEXPlotSpectrum->Model().marks.size() + w.form().PLEXPlotSelected->LinkCount(), 0u);
    EXPECT_EQ(w.Cell(0, 0) + "|" + w.Cell(0, 1) + "|" + w.Cell(0, 2), "Item|Cursor|Now");
    EXPECT_EQ(w.Cell(1, 0), "");
}

TEST(Items, LiveValuesExtendTheTrendAndAServerThatStopsLeavesABreak) {
    ItemWindow w;
    w.Add(5);
    const size_t before = w.TraceValues(0).size();
    w.f.Advance(3000);
    const std::vector<float> live = w.TraceValues(0);
    ASSERT_EQ(live.size(), before + 3);
    EXPECT_EQ(w.Cell(1, 2), viewer::GridValueText(live.back()));
    EXPECT_EQ(w.items()[0].series.Points().back().source, history::ValueSource::Live);

    // The device server goes away for ten readings: no value is invented
    // meanwhile, and the line is broken rather than drawn across.
    w.f.accelerator->SetFault("/ORKA/BPMQ1", sim::Fault{sim::Fault::Kind::Down});
    w.f.Advance(10000);
    EXPECT_EQ(w.TraceValues(0).size(), live.size());
    w.f.accelerator->ClearFault("/ORKA/BPMQ1");
    w.f.Advance(3000);
    const std::vector<float> after = w.TraceValues(0);
    ASSERT_GE(after.size(), live.size() + 3);
    EXPECT_TRUE(std::isnan(after[live.size()])) << "a break before the first value after the gap";
    EXPECT_EQ(std::count_if(after.begin(), after.end(), [](float v) { return std::isnan(v); }), 1);
}

TEST(Items, UpdateDivisorShowsEveryNthEvent) {
    const struct { int32_t divisor; int events; size_t shown; } cases[] = {{1, 4, 4}, {2, 4, 2}, {3, 7, 2}, {0, 3, 3}};
    for (const auto& c : cases) {
        ItemWindow w;
        w.Add(1);
        w.f.State().TrendDivisor[0] = c.divisor;
        const size_t before = w.TraceValues(0).size();
        w.f.Advance(1000 * c.events);
        EXPECT_EQ(w.TraceValues(0).size() - before, c.shown) << "divisor " << c.divisor;
    }
}

TEST(Items, CursorShowsTheValueAndItsSourceOrNothingPastTheEnd) {
    ItemWindow w;
    viewer::SpectrumForm& form = w.form();
    form.PlotCursor_Move(0, w.f.State().HistoryStop - 1800, 0);
    EXPECT_EQ(form.PLEXPlotSelected->CursorCaption().substr(0, 4) + form.LabelMisc[1]->text().left(9).toStdString(),
              " at Cursor:  ") << "no item: only the time";

    w.Add(3);
    const auto& points = w.items()[0].series.Points();
    ASSERT_GE(points.size(), 3u);
    const history::SeriesPoint inside = points[points.size() / 2];
    form.PlotCursor_Move(0, inside.time - 10, 0);
    const std::string caption = form.PLEXPlotSelected->CursorCaption();
    EXPECT_EQ(caption.substr(0, caption.find(' ')), viewer::GridValueText(inside.value));
    EXPECT_TRUE(caption.find(" mm at ") != std::string::npos && caption.ends_with("(local history)")) << caption;
    EXPECT_EQ(w.Cell(1, 1), viewer::GridValueText(inside.value));

    form.PlotCursor_Move(0, points.back().time + 5, 0);
    EXPECT_EQ(form.PLEXPlotSelected->CursorCaption(), "");

    form.PlotCursor_Click(0, points.front().time - 3600, 0);
    EXPECT_EQ(w.f.State().MarkerIndex, 1);
    form.PlotCursor_Click(0, points[4].time, 0);
    EXPECT_EQ(w.f.State().MarkerIndex, 4);
}

TEST(Items, AHistoryServerThatIsDownAsksAndTheArchiveStandsIn) {
    const struct {
        ui::MsgBoxResult answer;
        bool recorded;  // the series holds a past, not only live values
        bool fromArchive;
    } cases[] = {
        {ui::MsgBoxResult::Ignore, true, true}, {ui::MsgBoxResult::Abort, false, false},
    };
    for (const auto& c : cases) {
        ItemWindow w;
        w.f.accelerator->SetFault("/ORKA/BPMHIST", sim::Fault{sim::Fault::Kind::Down});
        w.f.dialogs.Answer(c.answer);
        w.Add(0);
        ASSERT_EQ(w.f.dialogs.Texts().size(), 1u);
        EXPECT_EQ(w.f.dialogs.Texts()[0].rfind("Error Reading History Data: ", 0), 0u) << w.f.dialogs.Texts()[0];
        const history::ValueSource first = w.items()[0].series.Points().front().source;
        EXPECT_EQ(first, c.recorded ? history::ValueSource::Archive : history::ValueSource::Live);
        EXPECT_EQ(w.items()[0].fromArchive, c.fromArchive);
        EXPECT_GE(w.items()[0].linkHandle, 0) << "followed live with or without its past";
        EXPECT_TRUE(w.f.dialogs.Problems().empty());
    }
}

TEST(Items, TheTimeScaleAndTheCalendarMoveTheWindowAcrossDaylightSaving) {
    // 2023-10-29 12:00 in Berlin, the day summer time ended: the same time
    // the day before was 25 hours earlier.
    constexpr int64_t kAfterChangeMs = 1'698'577'200'000;
    const struct { int64_t nowMs; int daysBack; int steps; int32_t back; } cases[] = {
        {viewer_test::kStartMs, 0, -2, 7200}, {viewer_test::kStartMs, 1, 0, 86400},
        {kAfterChangeMs, 1, 0, 90000}, {kAfterChangeMs, 1, -1, 93600},
    };
    for (const auto& c : cases) {
        ItemWindow w;
        vire::SetTestClock(c.nowMs);
        w.Add(2);
        const int32_t now = static_cast<int32_t>(c.nowMs / 1000);
        const QDate today = QDateTime::fromSecsSinceEpoch(now).date();
        if (c.daysBack > 0) w.form().MonthClicker(today.addDays(-c.daysBack));
        if (c.steps != 0) w.form().UpDownTime->setValue(c.steps);
        EXPECT_EQ(now - w.f.State().HistoryStop, c.back) << c.nowMs << " " << c.daysBack << " " << c.steps;
        const auto& points = w.items()[0].series.Points();
        const auto recorded = std::find_if(points.rbegin(), points.rend(), [](const history::SeriesPoint& p) {
            return p.source != history::ValueSource::Live;
        });
        ASSERT_NE(recorded, points.rend());
        EXPECT_LE(recorded->time, w.f.State().HistoryStop + 60) << "the history was read for the new window";
        EXPECT_EQ(w.form().PLEXPlotSelected->XMax(), w.f.State().HistoryStop);
    }
}

TEST(Items, APropertyBoxAddsAndRemovesTheElementsOtherProperty) {
    ItemWindow w;
    w.Add(5);
    viewer::SpectrumForm& form = w.form();
    ASSERT_TRUE(!form.ChkProps[1]->isHidden() && form.ChkProps[1]->text() == "Y");
    form.ChkProps[1]->setChecked(true);
    form.ChkProps_Click(1);
    ASSERT_EQ(w.items().Count(), 2);
    EXPECT_EQ(w.items()[1].property + " " + w.items()[1].elementName, "ORBIT.Y " + w.items()[0].elementName);
    EXPECT_TRUE(w.items()[1].hasData);
    form.ChkProps[1]->setChecked(false);
    form.ChkProps_Click(1);
    ASSERT_EQ(w.items().Count(), 1);
    EXPECT_EQ(w.items()[0].property, "ORBIT.X");
}

TEST(Items, SelectByNameFollowsTheNamedElements) {
    ItemWindow w;
    const std::vector<std::string> unknown = w.form().SelectElementsByName({"BPM.S01.C2", "NO.SUCH", "BPM.S02.C1"});
    EXPECT_EQ(unknown, std::vector<std::string>{"NO.SUCH"});
    ASSERT_EQ(w.items().Count(), 2);
    EXPECT_EQ(w.items()[0].elementName + " " + w.items()[1].elementName, "BPM.S01.C2 BPM.S02.C1");
}

TEST(MachineOverview, QuantitiesAreFollowedWithHeadingsAndOwnScales) {
    ItemWindow w;
    viewer::SpectrumForm& form = w.form();
    const viewer::ItemList& overview = w.f.State().Overview;
    ASSERT_TRUE(overview.Count() == w.f.State().cat.HistoryCount && overview.Count() > 0 && overview[0].hasData);
    EXPECT_EQ(form.GridAccelerator->TextMatrix(0, 0) + "|" + form.GridAccelerator->TextMatrix(0, 2) + "|" +
                  form.GridAccelerator->TextMatrix(1, 0), "Quantity|Now|" + w.f.State().cat.HistoryList[0].Description);
    EXPECT_TRUE(w.f.dialogs.Records().empty()) << "every quantity's sources answer";
    w.f.Advance(2000);
    EXPECT_EQ(form.GridAccelerator->TextMatrix(1, 2), viewer::OverviewValueText(overview[0].currentValue));
    EXPECT_NE(form.PLEXPlotAccelerator->AxisMode(), ui::kAxisModeCommonScale);
}

}  // namespace
