// The spectrum's display modes: peak hold, a reference spectrum frozen as a
// second trace, the display relative to it, and the mode captions that say
// in the corner of each plot which modes are on.
#include <QAction>
#include <span>

#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

namespace {

constexpr uint32_t kReferenceColour = 0x000080;
constexpr uint32_t kSpectrumColour = 0x008000;
constexpr uint32_t kCaptionColour = 0xFF0000;
constexpr int32_t kReferenceStyle = 8;
constexpr int32_t kNormalStyle = 2;

// Draws a mode caption in the plot's corner; -1 when there is nothing to say.
int32_t DrawModeCaption(ui::PlexPlot* plot, const std::string& text) {
    const ui::Colour remembered = plot->ForeColour();
    plot->SetForeColour(kCaptionColour);
    int32_t handle = -1;
    if (!text.empty())
        handle = plot->DrawText((plot->XMax() - plot->XMin()) * 0.05 + plot->XMin(),
                                (plot->YMax() - plot->YMin()) * 0.85 + plot->YMin(), text);
    plot->SetForeColour(remembered);
    return handle;
}

}  // namespace

void SpectrumForm::LivePeakHold_Click() {
    // Holding starts from the values shown now; releasing lets the next frame overwrite them.
    LivePeakHold->setChecked(!LivePeakHold->isChecked());
    RefreshSpectrumModeCaption();
}

void SpectrumForm::refMark_Click() {
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    if (refMark->isChecked()) {
        refMark->setChecked(false);
        plot->ShowTrace(s_.ReferenceTrace, false);
        plot->DeleteTrace(s_.ReferenceTrace);
        s_.ReferenceTrace = -1;
        DrawMarkers();
        return;
    }
    refMark->setChecked(true);
    s_.ReferenceTime = s_.LastLiveUpdate;
    plot->SetTraceStyle(kReferenceStyle);
    plot->SetForeColour(kReferenceColour);
    // The spectrum as it stands: under peak hold, the held values.
    const std::span<const float> values(&s_.LiveValues[0], kMaxLivePoints + 1);
    s_.ReferenceTrace = plot->CreateTrace(s_.LivePointCount, values);
    plot->SetReferenceData(s_.ReferenceTrace, values, s_.LivePointCount);
    plot->ShowTrace(s_.ReferenceTrace, true);
    plot->SetTraceStyle(kNormalStyle);
    plot->SetForeColour(kSpectrumColour);
    DrawMarkers();
}

void SpectrumForm::refDisplay_Click() {
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    catalogue::Catalogue& cat = s_.cat;
    // Record 0 of the catalogue gives the range, whichever device is shown.
    const catalogue::SpectrumRecord& first = cat.SpectrumList[0];
    if (refDisplay->isChecked()) {
        plot->SetYMax(first.Max);
        plot->SetYMin(first.Min);
        plot->SetRelativeDisplay(false, cat.SpectrumTrace);
        refDisplay->setChecked(false);
    } else {
        plot->SetYMax(first.Max / 2.0f);
        plot->SetYMin(-first.Max / 2.0f);
        plot->SetRelativeDisplay(true, cat.SpectrumTrace);
        refDisplay->setChecked(true);
    }
    const std::span<const float> values(&s_.LiveValues[0], kMaxLivePoints + 1);
    if (cat.SpectrumTrace >= 0) {
        plot->UpdateTrace(cat.SpectrumTrace, values, s_.LivePointCount);
    } else {
        plot->RemoveAllTexts();
        plot->RemoveAllTraces();
        s_.ReferenceTrace = -1;
        s_.LiveThresholdTrace = -1;
        plot->SetForeColour(kSpectrumColour);
        const std::span<const std::string> labels(&s_.LiveLabels[0], kMaxLivePoints + 1);
        cat.SpectrumTrace = plot->CreateTrace(s_.LivePointCount, values, labels);
        plot->SetRelativeDisplay(refDisplay->isChecked(), cat.SpectrumTrace);
        const catalogue::SpectrumRecord& head = cat.SpectrumList[cat.CurrentSpectrum];
        if (liveShowThreshold->isChecked() && catalogue::SpectrumRecord::UpperBound(head.HighThresholds) >= 1)
            DrawThresholds(plot);
    }
    RefreshSpectrumModeCaption();
}

void SpectrumForm::RefreshSpectrumModeCaption() {
    PLEXPlotSpectrum->RemoveText(s_.SpectrumModeText);
    std::string text;
    if (LiveScaleMode() != 0) text += " Autoscale";
    if (LivePeakHold->isChecked()) text += " PeakHold";
    if (refDisplay->isChecked()) text += " Reference";
    s_.SpectrumModeText = DrawModeCaption(PLEXPlotSpectrum, text);
}

void SpectrumForm::RefreshTrendModeCaption(int16_t which) {
    ui::PlexPlot* plot = TrendPlotOf(which);
    int32_t& caption = s_.TrendCaptions[static_cast<std::size_t>(which)];
    plot->RemoveText(caption);
    bool autoScale = MachAutoScale->isChecked();
    if (which == 0) {
        autoScale = false;
        for (const QAction* entry : HistAutoScale) autoScale = autoScale || entry->isChecked();
    }
    caption = DrawModeCaption(plot, autoScale ? " Autoscale" : "");
}

}  // namespace viewer
