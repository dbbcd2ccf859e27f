// The chosen spectrum as it was recorded at one time: every part read from
// its history source, drawn in place of the live trace with the source and
// the time in its caption; the trend cursor moves to that time.
#include <QAction>
#include <algorithm>
#include <span>

#include "history/history_spectrum.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/history_questions.h"
#include "viewer/spectrum_form.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kRecordedColour = 0x808000;  // teal: not the live green
constexpr uint32_t kCaptionColour = 0xFF0000;

}  // namespace

bool SpectrumForm::LoadHistorySpectrum(int32_t time) {
    catalogue::Catalogue& cat = s_.cat;
    const int16_t head = cat.CurrentSpectrum;
    MessageBoxQuestions questions;
    history::HistorySpectrum trace;
    if (!history::LoadHistorySpectrum(cat.SpectrumList, head, SpectrumPartCount(cat, head), time, questions, trace))
        return false;
    movie_.SetSpectrumTime(time);
    ++s_.HistorySpectrumLoads;
    std::string sources;
    for (const std::string& source : trace.sources)
        if (sources.find(source) == std::string::npos) sources += (sources.empty() ? "" : "+") + source;
    s_.SpectrumSource = sources;

    ui::PlexPlot* plot = PLEXPlotSpectrum;
    const auto count = static_cast<int32_t>(trace.values.size());
    // A replay step of the same spectrum only renews the values.
    const bool sameTrace = s_.HistorySpectrumTrace >= 0 && s_.HistorySpectrumPoints == count &&
                           plot->Model().traces.size() == 1 && plot->Model().traces.Find(s_.HistorySpectrumTrace) != nullptr;
    if (sameTrace) {
        plot->UpdateTrace(s_.HistorySpectrumTrace, trace.values, count);
    } else {
        plot->RemoveAllTraces();
        const ui::Colour remembered = plot->ForeColour();
        plot->SetForeColour(kRecordedColour);
        s_.HistorySpectrumTrace = plot->CreateTrace(count, trace.values, trace.labels);
        s_.HistorySpectrumPoints = count;
        plot->SetForeColour(remembered);
        std::vector<int32_t> partStarts;
        for (int32_t start = 0, k = 0; k < static_cast<int32_t>(trace.sources.size()); ++k) {
            partStarts.push_back(start);
            start += std::max(cat.SpectrumList[head + k].Size, 1);
        }
        plot->SetLabelAnchors(s_.HistorySpectrumTrace, std::move(partStarts));
        // The live trace is drawn anew when live data return.
        cat.SpectrumTrace = -1;
    }
    const double xmax = plot->XMax(), xmin = plot->XMin(), ymax = plot->YMax(), ymin = plot->YMin();
    plot->RemoveAllTexts();
    const ui::Colour remembered = plot->ForeColour();
    plot->SetForeColour(kCaptionColour);
    plot->DrawText((xmax - xmin) * 0.65 + xmin, (ymax - ymin) * 0.85 + ymin,
                   s_.SpectrumSource + " : " + vire::CTIME(time).substr(4, 15));
    std::string status;
    if (LiveAutoScaleChecked()) status += " Autoscale";
    if (refDisplay->isChecked()) status += " Reference";
    s_.SpectrumModeText = status.empty() ? -1 : plot->DrawText((xmax - xmin) * 0.05 + xmin, (ymax - ymin) * 0.85 + ymin, status);
    plot->SetForeColour(remembered);
    if (LiveAutoScaleChecked()) plot->AutoScale(0, 0, 1, 1);
    // The trend cursor shows the same moment, with the values of then.
    PLEXPlotSelected->SetCursorX(time);
    PlotCursor_Move(0, time, 0);
    return true;
}

}  // namespace viewer
