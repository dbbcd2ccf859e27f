// The trend plots: each item's past read from its history source, its live
// link, the trace drawn from both with a break wherever nothing was
// recorded, and the trend plots' data-received events.
#include <QAction>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <cmath>
#include <limits>

#include "catalogue/runtime_error.h"
#include "history/item_history.h"
#include "ui/controls/event_loop.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/history_questions.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kCaptionColour = 0xFF0000;
constexpr uint32_t kWhite = 0xFFFFFF;
// Displayed updates after which the trend is redrawn from its series.
constexpr int32_t kStripChartUpdates = 999;
// Points a trend trace keeps: a day of values at one a second.
constexpr int32_t kTrendPoints = 90'000;

history::ItemHistory HistoryRequest(const SelectedItem& item) {
    history::ItemHistory request;
    request.ItemTitle = item.context;
    request.ItemProperty = item.property;
    request.ArcServer = item.archiveServer;
    request.ArcProperty = item.archiveProperty;
    request.HstServer = item.historyServer;
    request.HstProperty = item.historyProperty;
    request.ItemDevice = item.elementName;
    request.LinkHandle = item.linkHandle;
    return request;
}

// Three polling intervals between two live values, three steps of the
// record elsewhere: a longer gap had nothing recorded and is not bridged.
int32_t GapLimit(history::ValueSource before, history::ValueSource after, int32_t liveIntervalS,
                 int32_t recordedLimit) {
    const bool live = before == history::ValueSource::Live && after == history::ValueSource::Live;
    return live ? 3 * liveIntervalS : recordedLimit;
}

// The series' points within [from, to], with a NaN point wherever the line
// must break.
std::vector<history::SeriesPoint> TrendPoints(const history::TimeSeries& series, int32_t from, int32_t to,
                                              int32_t liveIntervalS) {
    const int32_t recordedLimit = series.BridgeLimit(liveIntervalS);
    std::vector<history::SeriesPoint> shown;
    for (const history::SeriesPoint& point : series.WithBreaks(from, to, 0)) {
        if (!shown.empty()) {
            const history::SeriesPoint& before = shown.back();
            const int32_t limit = GapLimit(before.source, point.source, liveIntervalS, recordedLimit);
            if (limit > 0 && static_cast<int64_t>(point.time) - before.time > limit)
                shown.push_back({before.time + (point.time - before.time) / 2, std::nanf(""), before.source});
        }
        shown.push_back(point);
    }
    return shown;
}

// Runs one statement of a handler that skips what fails and goes on.
template <typename F>
void Skipping(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

}  // namespace

bool SpectrumForm::LoadHistories(int16_t grid, int16_t first, int16_t last) {
    ItemList& items = ListOf(grid);
    MessageBoxQuestions questions;
    // Values arriving meanwhile would be appended to traces about to be replaced.
    FlagGuard suppress(s_.SuppressTrendUpdates);
    const history::HistoryWindow window{s_.HistoryStart, s_.HistoryStop};
    const int total = last - first + 1;
    bool complete = true;
    for (int16_t slot = first; slot <= last && slot < items.Count(); ++slot) {
        SelectedItem& item = items[slot];
        // After an Abort the remaining items read no history, but they are
        // followed live all the same: an item without its past is still an
        // item, and a trend that never moves would say nothing at all.
        if (!complete) {
            if (item.linkHandle < 0) AttachItemLink(grid, item);
            continue;
        }
        history::ItemHistory request = HistoryRequest(item);
        const int position = slot - first + 1;
        const auto progress = [&](const history::LoadStep& step) {
            s_.LoadStatus = "Loading history of " + item.elementName + " (" + std::to_string(position) + " of " +
                            std::to_string(total) + ") from the " + (step.archive ? "archive" : "local history") +
                            (step.attempt > 1 ? ", read " + std::to_string(step.attempt) : std::string());
            StatusLine->setText(QString::fromStdString(s_.LoadStatus));
            // The window repaints between reads; a read itself is bounded by its time-out.
            ui::YieldToEventLoop();
        };
        const int16_t historySlot = grid == 2 ? 2 : grid;
        history::LoadItemHistory(request, historySlot, window, questions, progress);
        item.probeLocal = request.ProbeLocal;
        item.probeArchive = request.ProbeArchive;
        item.probeChosen = request.ProbeChosen;
        item.fromArchive = request.FromArchive;
        item.hasData = request.HistValid;
        if (request.HistValid) {
            item.pointCount = request.HistCount;
            const bool archived = request.FromArchive || request.FellBack;
            item.series.SetRecorded(request.HistValues, request.HistTimes,
                                    archived ? history::ValueSource::Archive : history::ValueSource::LocalHistory);
        }
        // Every item is followed live, also when its history could not be
        // read: the trend then starts at the first live value.
        if (item.linkHandle < 0) AttachItemLink(grid, item);
        if (request.Aborted) complete = false;
    }
    s_.LoadStatus.clear();
    ShowLinkStatus();
    return complete;
}

void SpectrumForm::AttachItemLink(int16_t grid, SelectedItem& item) {
    ui::PlexPlot* plot = TrendPlotOf(grid);
    plot->SetAccessMode("POLL");
    plot->SetPollingInterval(s_.PollIntervalMs);
    plot->SetProtocol("VIRE");
    plot->SetContext(item.context);
    plot->SetServer(item.server);
    plot->SetDevice(item.device);
    plot->SetProperty(item.property);
    const std::vector<float> buffer(static_cast<std::size_t>(std::max<int32_t>(item.linkSize, 1)));
    item.linkHandle = plot->Attach(buffer);
}

void SpectrumForm::MoveWindowToPresent() {
    const int32_t now = vire::UNIXTIME();
    s_.Window = PlaceTrendWindow(now, now, s_.HistorySpan, s_.HistorySpan, 0);
    s_.HistoryStart = s_.Window.start;
    s_.HistoryStop = s_.Window.stop;
}

void SpectrumForm::setSpectrumHistoryParameters() {
    // The chosen channel's history addresses, for the spectra of the past,
    // and the trends back on the present while live data are shown.
    const catalogue::SpectrumRecord& chosen = s_.cat.SpectrumList[s_.cat.CurrentSpectrum];
    s_.HistoryServer = chosen.HstServer;
    s_.HistoryProperty = chosen.HstProperty;
    s_.ArchiveServer = chosen.ArcServer;
    s_.ArchiveProperty = chosen.ArcProperty;
    if (OptLiveData->isChecked() && s_.Window.followsPresent) MoveWindowToPresent();
}

void SpectrumForm::PlotTheHistoryData() {
    for (int16_t grid = 0; grid < 3; ++grid) DrawTrends(grid);
}

void SpectrumForm::DrawTrends(int16_t grid) {
    ItemList& items = ListOf(grid);
    ui::PlexPlot* plot = TrendPlotOf(grid);
    plot->SetTrendCapacity(kTrendPoints);
    const int32_t liveIntervalS = std::max<int32_t>(1, (s_.PollIntervalMs + 999) / 1000);
    const ui::Colour remembered = plot->ForeColour();
    for (int16_t i = 0; i < items.Count(); ++i) {
        SelectedItem& item = items[i];
        plot->DeleteTrace(item.traceNumber);
        item.series.DropBefore(s_.HistoryStart - kSecondsPerDay);
        const auto points = TrendPoints(item.series, s_.HistoryStart - 60, s_.HistoryStop + 60, liveIntervalS);
        std::vector<double> xs;
        std::vector<float> values;
        xs.reserve(points.size());
        values.reserve(points.size());
        for (const history::SeriesPoint& point : points) {
            xs.push_back(point.time);
            values.push_back(point.value);
        }
        plot->SetForeColour(ColourOf(grid, i));
        item.traceNumber = plot->CreateTraceXY(static_cast<int32_t>(xs.size()), xs, values, grid == 2 ? 1 : 2);
        plot->SetTraceName(item.traceNumber, grid == 2 ? item.channelName : ItemRowCaption(item));
        if (grid == 2) plot->SetTraceRange(item.traceNumber, item.historyLower, item.historyUpper);
        else if (s_.CommonScale == 0) plot->SetTraceRange(item.traceNumber, item.historyLower, item.historyUpper);
    }
    plot->SetForeColour(remembered);
    plot->SetXRange(s_.HistoryStart, s_.HistoryStop);
    plot->SetHistoryDisplay(!s_.Window.followsPresent);
    if (grid == 2 && MachAutoScale->isChecked()) AutoScaleOwnRanges(grid);
    if (items.Count() > 0) {
        FillAGrid(2, grid, s_.Window.followsPresent ? vire::UNIXTIME() : s_.HistoryStop, false);
        // The cursor column waits for the cursor.
        if (s_.CursorTime > 0) FillAGrid(1, grid, s_.CursorTime, false);
    }
}

void SpectrumForm::AutoScaleOwnRanges(int16_t grid) {
    // Each quantity of the overview on its own scale, fitted to what it shows.
    ItemList& items = ListOf(grid);
    ui::PlexPlot* plot = TrendPlotOf(grid);
    for (int16_t i = 0; i < items.Count(); ++i) {
        float lo = std::numeric_limits<float>::infinity(), hi = -lo;
        for (const history::SeriesPoint& p : items[i].series.Points()) {
            if (p.time < s_.HistoryStart || p.time > s_.HistoryStop || std::isnan(p.value)) continue;
            lo = std::min(lo, p.value);
            hi = std::max(hi, p.value);
        }
        if (!(lo <= hi)) continue;
        const double margin = hi > lo ? (hi - lo) * 0.05 : std::max(std::fabs(hi) * 0.05, 1e-12);
        plot->SetTraceRange(items[i].traceNumber, lo - margin, hi + margin);
    }
}

void SpectrumForm::Plot_DataReceive(int16_t which, int32_t /*link*/, int16_t error) {
    if (s_.SuppressTrendUpdates || OptArchiveData->isChecked() || error != 0) return;
    ItemList& items = ListOf(which);
    ui::PlexPlot* plot = TrendPlotOf(which);
    ui::ValueGrid* grid = GridOf(which);
    // Only every divisor-th event is shown.
    if (++s_.TrendEvents[which] < s_.TrendDivisor[which]) return;
    s_.TrendEvents[which] = 0;
    if (!OptLiveData->isChecked()) return;
    const int32_t now = vire::UNIXTIME();
    if (s_.Window.followsPresent) {
        s_.HistoryStop = now;
        s_.HistoryStart = now - s_.HistorySpan;
        s_.Window.start = s_.HistoryStart;
        s_.Window.stop = now;
        if (!plot->IsZoomed()) plot->SetXRange(s_.HistoryStart, s_.HistoryStop);
    }
    const int32_t liveIntervalS = std::max<int32_t>(1, (s_.PollIntervalMs + 999) / 1000);
    for (int16_t i = 0; i < items.Count(); ++i) {
        SelectedItem& item = items[i];
        // A link that failed this round brings no new value: its trace keeps
        // a gap rather than repeating the last good one.
        if (plot->LinkStatus(item.linkHandle) != 0) continue;
        Skipping([&] {
            std::vector<float> buffer(static_cast<std::size_t>(std::max<int32_t>(item.linkSize, 1)));
            plot->ReadLinkData(item.linkHandle, buffer);
            item.currentValue = buffer.at(static_cast<std::size_t>(item.linkElement));
        });
        Skipping([&] {
            if (item.traceNumber < 0) return;
            const auto& points = item.series.Points();
            const int32_t limit =
                points.empty() ? 0
                               : GapLimit(points.back().source, history::ValueSource::Live, liveIntervalS,
                                          points.back().source == history::ValueSource::Live
                                              ? 0
                                              : item.series.BridgeLimit(liveIntervalS));
            if (limit > 0 && now - points.back().time > limit)
                plot->AppendPoint(item.traceNumber, std::numeric_limits<float>::quiet_NaN(), plot->PointCounter(), 1);
            plot->AppendPoint(item.traceNumber, item.currentValue, plot->PointCounter(), 1);
            item.series.AppendLive(now, item.currentValue);
            item.hasData = true;
        });
        Skipping([&] {
            grid->SetTextMatrix(i + 1, 2,
                                which == 2 ? OverviewValueText(item.currentValue) : GridValueText(item.currentValue));
            grid->SetCellBackColour(i + 1, 2, ColourOf(which, i));
            grid->SetCellForeColour(i + 1, 2, kWhite);
        });
    }
    // Now and then the trend is drawn again from the series, which drops
    // what has left the window.
    if (++s_.TrendUpdates[which] >= kStripChartUpdates) {
        s_.TrendUpdates[which] = 0;
        Skipping([&] { DrawTrends(which); });
    }
    Skipping([&] {
        const double xmax = plot->XMax(), xmin = plot->XMin(), ymax = plot->YMax(), ymin = plot->YMin();
        plot->RemoveAllTexts();
        const ui::Colour remembered = plot->ForeColour();
        plot->SetForeColour(kCaptionColour);
        const bool autoScale = which == 2 ? MachAutoScale->isChecked()
                                          : std::any_of(HistAutoScale.begin(), HistAutoScale.end(),
                                                        [](const QAction* a) { return a->isChecked(); });
        s_.TrendModeText = autoScale ? plot->DrawText((xmax - xmin) * 0.05 + xmin, (ymax - ymin) * 0.85 + ymin,
                                                      " Autoscale")
                                     : -1;
        plot->SetForeColour(remembered);
        if (autoScale) {
            if (which == 2) AutoScaleOwnRanges(which);
            else ScaleTrendPlot(which, TrendScaleMode());
        }
    });
}

}  // namespace viewer
