// The spectrum plot's data-received event: the records of the current device
// are read, reversed where they arrive reversed, merged into LiveValues (at
// most 8000 points) with peak hold, and drawn with their captions.
#include <QAction>
#include <QRadioButton>
#include <algorithm>
#include <span>

#include "catalogue/runtime_error.h"

#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kSpectrumColour = 0x008000;
constexpr uint32_t kCaptionColour = 0xFF0000;

void ReverseInPlace(std::vector<float>& values) {
    const int32_t upper = catalogue::SpectrumRecord::UpperBound(values);
    // Each pair is swapped once; the middle element of an odd count stays.
    for (int32_t i = 0; i < upper - i; ++i)
        std::swap(values[static_cast<std::size_t>(i)], values[static_cast<std::size_t>(upper - i)]);
}

}  // namespace

void SpectrumForm::PLEXPlotSpectrum_DataReceive(int32_t /*link*/, int16_t error) {
    ShowLinkStatus();
    if (s_.SuppressSpectrumUpdates || OptArchiveData->isChecked() || error != 0) return;
    catalogue::Catalogue& cat = s_.cat;
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    // Each part of the spectrum reads its link; a reversed part is turned round.
    s_.LastLiveUpdate = vire::UNIXTIME();
    const int16_t first = cat.CurrentSpectrum;
    const int16_t count = s_.ChannelsStarted;
    for (int16_t r = first; r < first + count; ++r) {
        catalogue::SpectrumRecord& record = cat.SpectrumList[r];
        plot->ReadLinkData(record.LinkHandle, std::span<float>(record.Values));
        if (record.Reverse) ReverseInPlace(record.Values);
    }
    // Labels and point count, only when the trace is rebuilt.
    const bool rebuild = cat.SpectrumTrace < 0;
    std::vector<int32_t> partStarts;  // where each part's points begin, for its labels
    if (rebuild) {
        // A spectrum over the limit is told once per channel choice (its
        // message and the bounds fault that follows); the rounds after that
        // are dropped quietly and the plot's notice keeps saying why.
        int32_t wanted = 0;
        for (int16_t r = first; r < first + count; ++r)
            wanted += catalogue::SpectrumRecord::UpperBound(cat.SpectrumList[r].Values) + 1;
        if (wanted > kMaxLivePoints) {
            if (s_.OversizeReported) return;
            s_.OversizeReported = true;
            ShowLinkStatus();
        }
        int32_t total = 0;
        for (int16_t r = first; r < first + count; ++r) {
            const catalogue::SpectrumRecord& record = cat.SpectrumList[r];
            partStarts.push_back(total);
            const int32_t points = catalogue::SpectrumRecord::UpperBound(record.Values) + 1;
            for (int32_t k = 0; k < points; ++k) {
                const std::string& name =
                    static_cast<std::size_t>(k) < record.ElementNames.size() ? record.ElementNames[k] : std::string();
                s_.LiveLabels[total + k] = record.Tag + name;
            }
            total += points;
            if (total > kMaxLivePoints) ShowMessage("Array larger than " + std::to_string(kMaxLivePoints) + " Points");
        }
        s_.LivePointCount = static_cast<int16_t>(total);
    }
    // Peak hold keeps a larger held value; an equal one takes the new value.
    const bool peakHold = LivePeakHold->isChecked();
    int32_t offset = 0;
    for (int16_t r = first; r < first + count; ++r) {
        const std::vector<float>& values = cat.SpectrumList[r].Values;
        for (std::size_t k = 0; k < values.size(); ++k) {
            // The last entry of the buffer is never filled: an 8001st point
            // is a bounds fault here, after the size message.
            const int32_t i = offset + static_cast<int32_t>(k);
            if (i >= kMaxLivePoints) catalogue::ThrowOutOfBounds("LiveValues", i, 0, kMaxLivePoints - 1);
            float& held = s_.LiveValues[i];
            if (!(peakHold && held > values[k])) held = values[k];
        }
        offset += static_cast<int32_t>(values.size());
    }
    // Percent of threshold, when the operator asked for it.
    if (s_.PercentMode) ConvertToPercent();
    const std::span<const float> values(&s_.LiveValues[0], kMaxLivePoints + 1);
    // A rebuild draws the trace and the thresholds, nothing more.
    if (rebuild) {
        plot->RemoveAllTexts();
        plot->RemoveAllTraces();
        plot->SetForeColour(kSpectrumColour);
        const std::span<const std::string> labels(&s_.LiveLabels[0], kMaxLivePoints + 1);
        cat.SpectrumTrace = plot->CreateTrace(s_.LivePointCount, values, labels);
        // Every part's first element keeps its label, however many points.
        plot->SetLabelAnchors(cat.SpectrumTrace, std::move(partStarts));
        s_.SpectrumModeText = -1;
        const catalogue::SpectrumRecord& head = cat.SpectrumList[first];
        if (liveShowThreshold->isChecked() && catalogue::SpectrumRecord::UpperBound(head.HighThresholds) >= 1)
            DrawThresholds(plot);
        return;
    }
    // The trace and its captions.
    plot->UpdateTrace(cat.SpectrumTrace, values, s_.LivePointCount);
    const double xmax = plot->XMax(), xmin = plot->XMin(), ymax = plot->YMax(), ymin = plot->YMin();
    const ui::Colour remembered = plot->ForeColour();
    plot->RemoveAllTexts();
    plot->SetForeColour(kCaptionColour);
    plot->DrawText((xmax - xmin) * 0.65 + xmin, (ymax - ymin) * 0.85 + ymin,
                   "Live : " + vire::CTIME(vire::UNIXTIME()).substr(4, 15));
    std::string mode;
    if (LiveAutoScaleChecked()) mode += " Autoscale";
    if (LivePeakHold->isChecked()) mode += " PeakHold";
    if (refDisplay->isChecked()) mode += " Reference";
    s_.SpectrumModeText = mode.empty() ? -1 : plot->DrawText((xmax - xmin) * 0.05 + xmin, (ymax - ymin) * 0.85 + ymin, mode);
    plot->SetForeColour(remembered);
    // Continuous auto-scale follows every frame.
    if (LiveAutoScaleChecked()) AutoScaling(5, LiveScaleMode());
}

bool SpectrumForm::LiveAutoScaleChecked() const {
    return std::any_of(LiveAutoScale.begin(), LiveAutoScale.end(), [](const QAction* a) { return a->isChecked(); });
}

}  // namespace viewer
