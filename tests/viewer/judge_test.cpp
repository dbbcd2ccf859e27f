// The judging tools on the window: thresholds and percent on ORKA's beam
// losses, threshold changes refused and accepted, mode captions, the
// reference, the scaling-mode question and the set-point comparison.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>

#include "form_fixture.h"
#include "scratch_config.h"
#include "ui/plot/plex_plot.h"
#include "viewer/value_text.h"
#include "vire/completion_codes.h"

namespace {

using viewer_test::FormFixture;

const ui::Trace* TraceOf(const ui::PlexPlot* plot, int32_t handle) { return plot->Model().traces.Find(handle); }
std::string TextOf(const ui::PlexPlot* plot, int32_t handle) {
    const ui::PlotText* text = plot->Model().texts.Find(handle);
    return text ? text->text : std::string("(none)");
}

// ORKA's beam losses, channel `position` (0 thresholds from a table file, 1 by link), live.
viewer::SpectrumForm& BeamLosses(FormFixture& f, int position) {
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo->setCurrentIndex(position);
    form.SpectrumCombo_Click();
    f.Advance(2000);
    return form;
}

TEST(Judge, PercentOfThresholdWithTheThresholdTraceFlatAtHundred) {
    FormFixture f("ORKA BLM");
    viewer::SpectrumForm& form = BeamLosses(f, 1);
    form.liveShowThreshold_Click();
    form.dispPercent_Click();
    EXPECT_EQ(form.PLEXPlotSpectrum->YLabel(), "% of Threshold");
    EXPECT_EQ(std::make_pair(form.PLEXPlotSpectrum->YMin(), form.PLEXPlotSpectrum->YMax()), std::make_pair(0.0, 120.0));
    const catalogue::SpectrumRecord& losses = f.State().cat.SpectrumList[f.State().cat.CurrentSpectrum];
    f.Advance(1000);
    for (int i : {0, 40, 95})
        EXPECT_FLOAT_EQ(f.State().LiveValues[i], losses.Values[i] / losses.HighThresholds[i] * 100) << i;
    const ui::Trace* line = TraceOf(form.PLEXPlotSpectrum, f.State().LiveThresholdTrace);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->values, std::vector<float>(96, 100.0f));
    form.dispPercent_Click();
    EXPECT_EQ(f.State().LiveValues[40], losses.Values[40]) << "the raw values come back";
    EXPECT_EQ(TraceOf(form.PLEXPlotSpectrum, f.State().LiveThresholdTrace)->values[40], losses.HighThresholds[40]);
    EXPECT_EQ(form.PLEXPlotSpectrum->YLabel(), "counts");
    EXPECT_TRUE(f.dialogs.Texts().empty());
}

TEST(Judge, PercentWithoutThresholdsIsRefused) {
    FormFixture f("ORKA BPM");
    viewer::SpectrumForm& form = f.Load();
    form.dispPercent_Click();
    EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{"No Thresholds available !"});
    EXPECT_FALSE(form.dispPercent->isChecked());
    EXPECT_FALSE(f.State().PercentMode);
}

TEST(Judge, ThresholdChangesAreWrittenOnlyWhenTheDeviceAcceptsThem) {
    const struct { const char* user; int channel; const char* answer; std::vector<std::string> boxes; bool changed; } cases[] = {
        {"operator", 1, "123.5", {}, true},
        {"guest", 1, "123.5", {"Modification not accepted : " + vire::ErrorText(vire::kAccessDenied)}, false},
        {"operator", 1, "", {}, false},
        {"operator", 1, "12x", {"Not a threshold: 12x"}, false},
        {"operator", 0, "", {"Threshold tool not found: "}, false},
    };
    for (const auto& c : cases) {
        FormFixture f("ORKA BLM", viewer_test::SampleConfig(), c.user);
        viewer::SpectrumForm& form = BeamLosses(f, c.channel);
        form.ModifySelectedItemThreshold();
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{"no selected Item"});
        form.ComboDevs->setCurrentIndex(5);
        form.ComSelDevice_Click();
        const float before = f.State().cat.SpectrumList[f.State().cat.CurrentSpectrum].HighThresholds[5];
        f.dialogs.Input(c.answer);
        form.ModifySelectedItemThreshold();
        std::vector<std::string> boxes;
        for (size_t i = 1; i < f.dialogs.Records().size(); ++i) {
            const ui::DialogRecord& box = f.dialogs.Records()[i];
            if (box.kind == ui::DialogRecord::Kind::Input) {
                EXPECT_EQ(box.text, "Modify displayed threshold of BLM.S01.6");
                EXPECT_EQ(box.defaultText, viewer::LimitText(before));
            } else {
                boxes.push_back(box.text.substr(0, c.boxes.empty() ? 0 : std::min(box.text.size(), c.boxes[0].size())));
            }
        }
        EXPECT_EQ(boxes, c.boxes) << c.user << " " << c.answer;
        const float after = f.State().cat.SpectrumList[f.State().cat.CurrentSpectrum].HighThresholds[5];
        EXPECT_EQ(after, c.changed ? 123.5f : before) << c.user << " " << c.answer;
        if (c.channel == 1) {
            EXPECT_EQ(f.accelerator->model().thresholds.at({"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD"})[5], after);
        }
    }
}

TEST(Judge, ModeCaptionNamesTheModesInOrderOrIsAbsent) {
    const struct { bool autoScale, peak, relative; const char* caption; } cases[] = {
        {false, false, false, "(none)"},
        {true, true, true, " Autoscale PeakHold Reference"},
        {false, true, true, " PeakHold Reference"},
        {true, false, false, " Autoscale"},
    };
    for (const auto& c : cases) {
        FormFixture f("ORKA BLM");
        viewer::SpectrumForm& form = BeamLosses(f, 0);
        if (!c.autoScale) form.LiveAutoScale_Click(2);
        if (c.peak) form.LivePeakHold_Click();
        if (c.relative) form.refDisplay_Click();
        EXPECT_EQ(TextOf(form.PLEXPlotSpectrum, f.State().SpectrumModeText), c.caption);
        if (!c.autoScale && !c.peak) {
            EXPECT_EQ(f.State().SpectrumModeText, -1);
        }
    }
}

TEST(Judge, RelativeRangeComesFromTheFirstCatalogueRecord) {
    viewer_test::ScratchConfig config({"T,A/D,P,3,First,100,-7,mm,,,,1,A", "T,B/D,P,3,Second,40,0,mm,,,,2,B"});
    FormFixture f("", config.Dir(), "OPERATOR", viewer_test::FakeDevices());
    viewer::SpectrumForm& form = f.Load();
    form.SpectrumCombo->setCurrentIndex(1);
    form.SpectrumCombo_Click();
    f.Advance(1000);
    form.refDisplay_Click();
    EXPECT_EQ(std::make_pair(form.PLEXPlotSpectrum->YMin(), form.PLEXPlotSpectrum->YMax()), std::make_pair(-50.0, 50.0));
    EXPECT_TRUE(TraceOf(form.PLEXPlotSpectrum, f.State().cat.SpectrumTrace)->relative);
    form.refDisplay_Click();
    EXPECT_EQ(std::make_pair(form.PLEXPlotSpectrum->YMin(), form.PLEXPlotSpectrum->YMax()), std::make_pair(-7.0, 100.0));
    EXPECT_FALSE(TraceOf(form.PLEXPlotSpectrum, f.State().cat.SpectrumTrace)->relative);
}

TEST(Judge, AReferenceUnderPeakHoldFreezesTheHeldValues) {
    viewer_test::ScratchConfig config({"T,A/D,P,3,Orbit,10,0,mm,,,,1,A"});
    auto devices = viewer_test::FakeDevices();
    FormFixture f("", config.Dir(), "OPERATOR", devices);
    viewer::SpectrumForm& form = f.Load();
    devices->readings["/T/A/D P"].values = {5, 5, 5};
    f.Advance(1000);
    form.LivePeakHold_Click();
    devices->readings["/T/A/D P"].values = {1, 9, 1};
    f.Advance(1000);
    form.refMark_Click();
    const ui::Trace* reference = TraceOf(form.PLEXPlotSpectrum, f.State().ReferenceTrace);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->values, (std::vector<float>{5, 9, 5}));
    EXPECT_EQ(f.State().ReferenceTime, f.State().LastLiveUpdate);
    const auto markers = [&] {
        int n = 0;
        for (const auto& [handle, text] : form.PLEXPlotSelected->Model().texts) n += text.text.rfind("Marker:  ", 0) == 0;
        return n;
    };
    EXPECT_EQ(markers(), 1);
    form.refMark_Click();
    EXPECT_EQ(TraceOf(form.PLEXPlotSpectrum, reference ? f.State().ReferenceTrace : -1), nullptr);
    EXPECT_EQ(markers(), 0);
}

TEST(Judge, SwitchingScalesWhileZoomedAsksAndCancelKeepsTheZoom) {
    const struct { ui::MsgBoxResult answer; int16_t common; const char* label; } cases[] = {
        {ui::MsgBoxResult::Cancel, 1, "All Curves"},
        {ui::MsgBoxResult::OK, 0, "Selected Device"},
    };
    for (const auto& c : cases) {
        FormFixture f("ORKA BPM");
        viewer::SpectrumForm& form = f.Load();
        f.State().Zoom.Zoom(0, {1, 2, 0, 1}, true, {});
        form.ChkRelScale->setChecked(true);
        f.dialogs.Answer(c.answer);
        form.ChkRelScale_Click();
        ASSERT_EQ(f.dialogs.Records().size(), 1u);
        EXPECT_EQ(f.dialogs.Records()[0].text, "Vertical Zooms will be lost! Sorry!");
        EXPECT_EQ(f.dialogs.Records()[0].title, "Switching Scaling Modes");
        EXPECT_EQ(f.State().CommonScale, c.common);
        EXPECT_EQ(f.State().ScaleModeChanged, c.common == 0);
        EXPECT_EQ(f.State().Zoom.Depth(), 1);
        EXPECT_EQ(form.LabelSelect[4]->text().toStdString(), c.label);
    }
}

TEST(Judge, CompanionsComeOncePerDeviceAndOnlyWhereTheMachineHasThem) {
    const struct { const char* start; int channel; std::vector<int> elements; int extras; bool menu; } cases[] = {
        {"ORKA PS EXTRAS_ON", 0, {2, 5}, 1, true},   // both Dipole set values share the actual values' device
        {"ORKA PS EXTRAS_ON", 2, {2}, 0, true},      // the voltage has no companion
        {"ORKA BLM", 0, {2, 5}, 0, false},
    };
    for (const auto& c : cases) {
        FormFixture f(c.start);
        viewer::SpectrumForm& form = BeamLosses(f, c.channel);
        for (int e : c.elements) {
            form.ComboDevs->setCurrentIndex(e);
            form.ComSelDevice_Click();
        }
        EXPECT_EQ(f.State().Extras.Count(), c.extras) << c.start << " " << c.channel;
        EXPECT_EQ(form.MenuOperations[1]->isVisible(), c.menu) << c.start;
        EXPECT_EQ(form.findChild<QWidget*>("ExtraRow")->isVisibleTo(&form), c.extras > 0) << c.start;
        EXPECT_EQ(f.dialogs.Texts(), std::vector<std::string>{}) << c.start;
    }
}

}  // namespace
