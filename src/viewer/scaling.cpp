// How the plots are scaled: the auto-scale menus and boxes, the range
// buttons, the scale controls of the trends, and the common or own scale of
// the trend curves. Which range fits the data is auto_range.h's; here it is
// applied to the plots and kept in the zoom stack.
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>
#include <span>

#include "catalogue/runtime_error.h"
#include "ui/controls/dialogs.h"
#include "ui/plot/plex_plot.h"
#include "viewer/auto_range.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"

namespace viewer {

namespace {

constexpr int16_t kLivePlotCode = 5;
constexpr int16_t kTrendPlotCode = 0;
constexpr int16_t kCommonScaleAxis = 25;
constexpr int16_t kOwnScaleAxis = 0;

template <std::size_t N>
int16_t CheckedMode(const std::array<QAction*, N>& entries) {
    for (std::size_t i = 0; i < N; ++i)
        if (entries[i]->isChecked()) return static_cast<int16_t>(i + 1);
    return 0;
}

// One entry of an auto-scale menu: on (the others off) or off again.
template <std::size_t N>
bool ToggleExclusive(std::array<QAction*, N>& entries, int16_t index) {
    const bool on = !entries.at(static_cast<std::size_t>(index))->isChecked();
    for (QAction* entry : entries) entry->setChecked(false);
    entries[static_cast<std::size_t>(index)]->setChecked(on);
    return on;
}

// The values an item shows within the time window.
void CollectShown(const SelectedItem& item, int32_t start, int32_t stop, std::vector<float>& into) {
    for (const history::SeriesPoint& p : item.series.Points())
        if (p.time >= start && p.time <= stop) into.push_back(p.value);
}

}  // namespace

int16_t SpectrumForm::LiveScaleMode() const { return CheckedMode(LiveAutoScale); }
int16_t SpectrumForm::TrendScaleMode() const { return CheckedMode(HistAutoScale); }

void SpectrumForm::LiveAutoScale_Click(int16_t index) {
    const bool on = ToggleExclusive(LiveAutoScale, index);
    {
        FlagGuard initialising(s_.Initialising);
        ChkAuto[0]->setChecked(on);
    }
    if (on) AutoScaling(kLivePlotCode, static_cast<int16_t>(index + 1));
    RefreshSpectrumModeCaption();
}

void SpectrumForm::HistAutoScale_Click(int16_t index) {
    const bool on = ToggleExclusive(HistAutoScale, index);
    {
        FlagGuard initialising(s_.Initialising);
        ChkAuto[1]->setChecked(on);
    }
    if (on) AutoScaling(kTrendPlotCode, static_cast<int16_t>(index + 1));
    RefreshTrendModeCaption(0);
    RefreshTrendModeCaption(1);
}

void SpectrumForm::MachAutoScale_Click() {
    // Each quantity of the overview fitted to its data, or back on its catalogue range.
    MachAutoScale->setChecked(!MachAutoScale->isChecked());
    DrawTrends(2);
    RefreshTrendModeCaption(2);
}

void SpectrumForm::ChkAuto_Click(int16_t index) {
    if (s_.Initialising) return;
    if (index < 0 || index > 1) catalogue::ThrowOutOfBounds("ChkAuto", index, 0, 1);
    // The box follows the plot's auto-scale menu: ticking takes the first
    // mode unless another is chosen, unticking turns every mode off.
    const bool wanted = ChkAuto[index]->isChecked();
    const bool live = index == 0;
    const int16_t mode = live ? LiveScaleMode() : TrendScaleMode();
    if (wanted == (mode != 0)) return;
    const int16_t entry = wanted ? 0 : static_cast<int16_t>(mode - 1);
    if (live) LiveAutoScale_Click(entry);
    else HistAutoScale_Click(entry);
}

void SpectrumForm::ChkScale_Click() {
    if (s_.Initialising) return;
    SwitchScaleMenu(ChkScale->isChecked() ? 1 : 0);
    Form_Resize();
}

void SpectrumForm::SwitchScaleMenu(int16_t mode) {
    // 2 at start-up: the scale controls shown and their box ticked.
    if (mode == 2) {
        FlagGuard initialising(s_.Initialising);
        ChkScale->setChecked(true);
        ChkAuto[0]->setChecked(LiveScaleMode() != 0);
        ChkAuto[1]->setChecked(TrendScaleMode() != 0);
    }
    const bool shown = mode != 0;
    for (QWidget* control : std::initializer_list<QWidget*>{TxtSelect[2], TxtSelect[3], ComSelect[3], ComSelect[4],
                                                             ComSelect[5], ChkAuto[1], ChkRelScale})
        control->setVisible(shown);
}

void SpectrumForm::ChkRelScale_Click() {
    if (s_.Initialising) return;
    if (s_.Zoom.Depth() > 0 &&
        ui::MsgBox("Vertical Zooms will be lost! Sorry!", ui::MsgBoxButtons::OKCancel, ui::MsgBoxIcon::None,
                   "Switching Scaling Modes") == ui::MsgBoxResult::Cancel)
        return;
    s_.ScaleModeChanged = true;
    SwitchScaling();
}

void SpectrumForm::SwitchScaling() {
    if (!ChkRelScale->isChecked()) {
        s_.CommonScale = 1;
        LabelSelect[4]->setText("All Curves");
        // The machine overview keeps each quantity on its own scale: its
        // quantities have units of their own and never share one.
        PLEXPlotSelected->SetAxisMode(kCommonScaleAxis);
        // The common range comes back; each item keeps its own for later.
        if (s_.CommonYMax > s_.CommonYMin) {
            PLEXPlotSelected->SetYMax(s_.CommonYMax);
            PLEXPlotSelected->SetYMin(s_.CommonYMin);
        }
    } else {
        s_.CommonScale = 0;
        LabelSelect[4]->setText(s_.Items.HasCurrent()
                                    ? QString::fromStdString(s_.Items[s_.Items.Current()].elementName)
                                    : QString("Selected Device"));
        s_.CommonYMax = PLEXPlotSelected->YMax();
        s_.CommonYMin = PLEXPlotSelected->YMin();
        PLEXPlotSelected->SetAxisMode(kOwnScaleAxis);
    }
    PlotTheHistoryData();
}

void SpectrumForm::ScalingAction(int16_t index) {
    ui::PlexPlot* live = PLEXPlotSpectrum;
    const catalogue::SpectrumRecord& head = s_.cat.SpectrumList[s_.cat.CurrentSpectrum];
    switch (index) {
        case 1:  // the live spectrum fitted once, in the chosen mode (else all of it)
            AutoScaling(kLivePlotCode, LiveScaleMode() != 0 ? LiveScaleMode() : int16_t{1});
            break;
        case 2:  // the catalogue's range (percent: 0..120)
            live->SetYMax(s_.PercentMode ? 120.0 : head.Max);
            live->SetYMin(s_.PercentMode ? 0.0 : head.Min);
            break;
        case 3: {  // the trend range typed in the boxes
            const double upper = NumberOfText(TxtSelect[2]->text().toStdString());
            const double lower = NumberOfText(TxtSelect[3]->text().toStdString());
            if (s_.CommonScale == 0 && s_.Items.HasCurrent()) {
                SelectedItem& item = s_.Items[s_.Items.Current()];
                item.historyUpper = upper;
                item.historyLower = lower;
                PLEXPlotSelected->SetTraceRange(item.traceNumber, lower, upper);
            }
            PLEXPlotSelected->SetYMax(upper);
            PLEXPlotSelected->SetYMin(lower);
            s_.Zoom.SetTopYRange(0, lower, upper);
            return;
        }
        case 5:  // the trends fitted once
            AutoScaling(kTrendPlotCode, TrendScaleMode() != 0 ? TrendScaleMode() : int16_t{1});
            return;
        default: catalogue::ThrowOutOfBounds("ComSelect", index, 0, 5);
    }
    FlagGuard initialising(s_.Initialising);
    TxtSelect[0]->setText(QString::fromStdString(LimitText(live->YMax())));
    TxtSelect[1]->setText(QString::fromStdString(LimitText(live->YMin())));
}

void SpectrumForm::AutoScaling(int16_t plotCode, int16_t mode) {
    if (plotCode == kLivePlotCode) {
        ui::PlexPlot* plot = PLEXPlotSpectrum;
        std::span<const float> shown(&s_.LiveValues[0], static_cast<std::size_t>(std::max<int16_t>(s_.LivePointCount, 0)));
        // Shown relative to the reference, the differences are what must fit.
        std::vector<float> relative;
        if (refDisplay->isChecked() && s_.ReferenceTrace >= 0) {
            std::vector<double> xs;
            plot->ReadTracePoints(s_.ReferenceTrace, relative, xs);
            relative.resize(shown.size(), 0.0f);
            for (std::size_t i = 0; i < shown.size(); ++i) relative[i] = shown[i] - relative[i];
            shown = relative;
        }
        if (const std::optional<YRange> range = FitRange(shown, mode)) {
            plot->SetYMax(range->max);
            plot->SetYMin(range->min);
        }
        return;
    }
    if (plotCode == kTrendPlotCode) {
        ScaleTrendPlot(0, mode);
        if (s_.ExtrasMode != 0) ScaleTrendPlot(1, mode);
    }
}

void SpectrumForm::ScaleTrendPlot(int16_t which, int16_t mode) {
    ItemList& items = ListOf(which);
    ui::PlexPlot* plot = TrendPlotOf(which);
    std::vector<float> values;
    if (which == 0 && s_.CommonScale == 0) {
        // Own scales: each item fitted to itself; the plot shows the highlighted one's.
        for (int16_t i = 0; i < items.Count(); ++i) {
            values.clear();
            CollectShown(items[i], s_.HistoryStart, s_.HistoryStop, values);
            const std::optional<YRange> range = FitRange(values, mode);
            if (!range) continue;
            items[i].historyUpper = range->max;
            items[i].historyLower = range->min;
            plot->SetTraceRange(items[i].traceNumber, range->min, range->max);
        }
        if (items.Count() > 0) {
            const SelectedItem& shown = items[items.HasCurrent() ? items.Current() : int16_t{0}];
            plot->SetYMax(shown.historyUpper);
            plot->SetYMin(shown.historyLower);
        }
    } else {
        for (int16_t i = 0; i < items.Count(); ++i) CollectShown(items[i], s_.HistoryStart, s_.HistoryStop, values);
        if (const std::optional<YRange> range = FitRange(values, mode)) {
            plot->SetYMax(range->max);
            plot->SetYMin(range->min);
        }
    }
    // The zoom level shown now keeps the new range, so that unzooming to it
    // and back restores what the operator sees.
    s_.Zoom.SetTopYRange(which, plot->YMin(), plot->YMax());
}

}  // namespace viewer
