// Thresholds on the window: the threshold traces of the spectrum and of the
// selected items, the display in percent of threshold, and the change of
// one element's threshold by the operator. The arithmetic is
// threshold_display.h's.
#include <QAction>
#include <QFileInfo>
#include <QProcess>
#include <array>
#include <cmath>
#include <limits>

#include "catalogue/files.h"
#include "catalogue/numbers.h"
#include "ui/controls/dialogs.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"
#include "viewer/threshold_display.h"
#include "viewer/value_text.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace viewer {

namespace {

constexpr uint32_t kThresholdColour = 0xC0E0FF;
constexpr int32_t kThresholdStyle = 1;
constexpr int32_t kThresholdWriteTimeoutMs = 3000;
const char* const kChangeTitle = "Change Threshold";

bool HasThresholds(const catalogue::SpectrumRecord& record) {
    return catalogue::SpectrumRecord::UpperBound(record.HighThresholds) >= 1;
}

// The thresholds of the parts of the spectrum shown, side by side.
std::vector<ThresholdPart> PartsOf(const catalogue::Catalogue& cat, int16_t parts) {
    std::vector<ThresholdPart> result;
    for (int16_t k = 0; k < std::max<int16_t>(parts, 1); ++k) {
        const catalogue::SpectrumRecord& record = cat.SpectrumList[cat.CurrentSpectrum + k];
        result.push_back({record.HighThresholds, record.LowThresholds});
    }
    return result;
}

// Horizontal positions of the spectrum's threshold trace, element by element.
const std::array<double, kMaxThresholdPoints>& ThresholdXs() {
    static const std::array<double, kMaxThresholdPoints> xs = [] {
        std::array<double, kMaxThresholdPoints> filled{};
        for (std::size_t i = 0; i < filled.size(); ++i) filled[i] = static_cast<double>(i);
        return filled;
    }();
    return xs;
}

std::span<float> LiveSpan(FormState& s) { return {&s.LiveValues[0], kMaxLivePoints + 1}; }

}  // namespace

// The menu entry flips itself; the trace follows it on a spectrum that has
// thresholds at all.
void SpectrumForm::ToggleThresholdTrace(QAction* entry, ui::PlexPlot* plot, int32_t& trace) {
    entry->setChecked(!entry->isChecked());
    if (!HasThresholds(s_.cat.SpectrumList[s_.cat.CurrentSpectrum])) return;
    if (entry->isChecked()) {
        DrawThresholds(plot);
    } else {
        plot->DeleteTrace(trace);
        trace = -1;
    }
}

void SpectrumForm::liveShowThreshold_Click() {
    ToggleThresholdTrace(liveShowThreshold, PLEXPlotSpectrum, s_.LiveThresholdTrace);
}

void SpectrumForm::histShowThreshold_Click() {
    ToggleThresholdTrace(histShowThreshold, PLEXPlotSelected, s_.SelectedThresholdTrace);
}

void SpectrumForm::DrawThresholds(ui::PlexPlot* plot) {
    const bool trend = plot != PLEXPlotSpectrum;
    int32_t& trace = trend ? s_.SelectedThresholdTrace : s_.LiveThresholdTrace;
    // One threshold trace per plot: a redraw replaces the one drawn before.
    plot->DeleteTrace(trace);
    const ui::Colour colour = plot->ForeColour();
    const int32_t style = plot->TraceStyle();
    plot->SetForeColour(kThresholdColour);
    plot->SetTraceStyle(kThresholdStyle);
    if (!trend) {
        const std::vector<float> ys = ThresholdTraceValues(PartsOf(s_.cat, s_.ChannelsStarted), s_.PercentMode);
        trace = plot->CreateTraceXY(static_cast<int32_t>(ys.size()), ThresholdXs(), ys);
    } else {
        // The trends run over time: each selected item's threshold is a
        // level across the time window, the levels kept apart by gaps so
        // that one trace holds them all.
        std::vector<double> xs;
        std::vector<float> ys;
        for (int16_t i = 0; i < s_.Items.Count(); ++i) {
            const SelectedItem& item = s_.Items[i];
            const std::vector<float>& high = s_.cat.SpectrumList[item.sourceChannel].HighThresholds;
            if (item.elementNumber < 0 || item.elementNumber >= static_cast<int32_t>(high.size())) continue;
            const float level = high[static_cast<std::size_t>(item.elementNumber)];
            xs.insert(xs.end(), {static_cast<double>(s_.HistoryStart), static_cast<double>(s_.HistoryStop),
                                 static_cast<double>(s_.HistoryStop)});
            ys.insert(ys.end(), {level, level, std::numeric_limits<float>::quiet_NaN()});
        }
        trace = plot->CreateTraceXY(static_cast<int32_t>(ys.size()), xs, ys);
    }
    plot->SetForeColour(colour);
    plot->SetTraceStyle(style);
}

void SpectrumForm::dispPercent_Click() {
    const catalogue::SpectrumRecord& head = s_.cat.SpectrumList[s_.cat.CurrentSpectrum];
    if (!HasThresholds(head)) {
        ui::MsgBox("No Thresholds available !");
        return;
    }
    dispPercent->setChecked(!dispPercent->isChecked());
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    s_.PercentMode = dispPercent->isChecked();
    RestoreRawLiveValues();
    if (s_.PercentMode) {
        plot->SetYLabel("% of Threshold");
        plot->SetYMax(120);
        plot->SetYMin(0);
        ConvertToPercent();
    } else {
        plot->SetYLabel(head.Egu);
        plot->SetYMax(head.Max);
        plot->SetYMin(head.Min);
    }
    if (s_.cat.SpectrumTrace >= 0) plot->UpdateTrace(s_.cat.SpectrumTrace, LiveSpan(s_), s_.LivePointCount);
    // The threshold trace moves with the display: a flat line at 100, or the thresholds.
    if (liveShowThreshold->isChecked()) DrawThresholds(plot);
}

void SpectrumForm::ConvertToPercent() {
    viewer::ConvertToPercent(LiveSpan(s_), s_.LivePointCount, PartsOf(s_.cat, s_.ChannelsStarted));
}

void SpectrumForm::RestoreRawLiveValues() {
    int32_t i = 0;
    for (int16_t k = 0; k < s_.ChannelsStarted; ++k)
        for (float v : s_.cat.SpectrumList[s_.cat.CurrentSpectrum + k].Values) {
            if (i >= s_.LivePointCount) return;
            s_.LiveValues[i++] = v;
        }
}

void SpectrumForm::modThreshold_Click() { ModifySelectedItemThreshold(); }

void SpectrumForm::ModifySelectedItemThreshold() {
    if (s_.Items.Current() < 0) {
        ui::MsgBox("no selected Item");
        return;
    }
    const SelectedItem& item = s_.Items[s_.Items.Current()];
    const int32_t element = item.elementNumber;
    catalogue::SpectrumRecord& channel = s_.cat.SpectrumList[item.sourceChannel];
    switch (channel.ThresholdMode) {
        case 1:
        case 2:
            ui::MsgBox("Not Implemented Yet", ui::MsgBoxButtons::OK, ui::MsgBoxIcon::None, "Set Threshold");
            return;
        case 3: break;
        case 4: {
            const std::string program = catalogue::NativePath(s_.cat.ApplicationPath + "\\" + channel.ThresholdTool);
            const QString path = QString::fromStdString(program);
            const QFileInfo tool(path);
            if (!tool.isFile() || !tool.isExecutable()) {
                ui::MsgBox("Threshold tool not found: " + program, ui::MsgBoxButtons::OK, ui::MsgBoxIcon::None,
                           "Set Threshold");
                return;
            }
            const QString device = QString::fromStdString("device=" + ThresholdToolDevice(channel.ThresholdSource, element));
            // The tool runs on its own; the viewer does not wait for it.
            if (!QProcess::startDetached(path, {device}))
                ui::MsgBox("Threshold tool could not be started: " + program, ui::MsgBoxButtons::OK,
                           ui::MsgBoxIcon::None, "Set Threshold");
            return;
        }
        default: return;
    }
    const bool known = element >= 0 && element < static_cast<int32_t>(channel.HighThresholds.size());
    const float shown = known ? channel.HighThresholds[static_cast<std::size_t>(element)] : 0.0f;
    const std::string answer =
        ui::InputBox("Modify displayed threshold of " + item.elementName, kChangeTitle, LimitText(shown));
    if (answer.empty()) return;
    // A mistyped value is refused here rather than written as 0.
    const double number = catalogue::NumericValue(answer);
    if (!catalogue::IsCleanNumber(answer) || !std::isfinite(number) ||
        std::fabs(number) > std::numeric_limits<float>::max()) {
        ui::MsgBox("Not a threshold: " + answer, ui::MsgBoxButtons::OK, ui::MsgBoxIcon::None, kChangeTitle);
        return;
    }
    const auto value = static_cast<float>(number);
    const ThresholdAddress address = ElementThresholdAddress(channel.ThresholdSource, element);
    std::array<std::byte, 4> bytes{};
    vire::StoreFloat(bytes, 0, value);
    vire::DataObject in{1, vire::kFormatSingle, "", bytes};
    vire::DataObject out{0, vire::kFormatSingle, "", {}};
    const vire::Status status =
        vire::LinkCall(address.device, address.property, out, in, vire::kAccessWrite, kThresholdWriteTimeoutMs);
    if (status != 0) {
        ui::MsgBox("Modification not accepted : " + vire::ErrorText(status), ui::MsgBoxButtons::OK,
                   ui::MsgBoxIcon::None, kChangeTitle);
        return;
    }
    if (known) channel.HighThresholds[static_cast<std::size_t>(element)] = value;
    // The new value is shown at once wherever thresholds are drawn.
    if (liveShowThreshold->isChecked() && HasThresholds(s_.cat.SpectrumList[s_.cat.CurrentSpectrum]))
        DrawThresholds(PLEXPlotSpectrum);
    if (histShowThreshold->isChecked()) DrawThresholds(PLEXPlotSelected);
    if (s_.PercentMode) {
        RestoreRawLiveValues();
        ConvertToPercent();
        if (s_.cat.SpectrumTrace >= 0)
            PLEXPlotSpectrum->UpdateTrace(s_.cat.SpectrumTrace, LiveSpan(s_), s_.LivePointCount);
    }
}

}  // namespace viewer
