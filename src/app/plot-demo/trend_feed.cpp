#include "trend_feed.h"

#include <algorithm>
#include <cmath>

#include "ui/plot/plex_data.h"
#include "vire/fltint.h"
#include "vire/formats.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace demo {
namespace {
constexpr int32_t kHistoryPoints = 999;
}  // namespace

TrendFeed::TrendFeed(ui::PlexPlot& plot, int32_t spanSeconds) : plot_(plot), span_(spanSeconds) {
    connect(&plot_, &ui::PlexPlot::DataReceive, this, &TrendFeed::OnData);
    connect(&plot_, &ui::PlexPlot::CursorMove, this, [this](double x, double) { OnCursor(x); });
    connect(&plot_, &ui::PlexPlot::ZoomEvent, this, [this] {
        if (!plot_.IsZoomed()) FollowPresent();
        DrawLegend();
    });
}

void TrendFeed::Prefill(const TrendItem& item, std::vector<double>& times, std::vector<float>& values) const {
    ui::PlexData data;
    data.SetTimeOut(1000);
    data.SetAccessMode("READ");
    data.SetDeviceName(item.historyDevice);
    data.SetProperty(item.historyProperty);
    const int32_t now = vire::UNIXTIME();
    std::vector<std::byte> input(8), output(8 * kHistoryPoints);
    vire::StoreInt32(input, 0, now - span_);
    vire::StoreInt32(input, 4, now);
    vire::DataObject in{2, vire::kFormatLong, "", input, 0};
    vire::DataObject out{kHistoryPoints, vire::kFormatFltInt, "", output, 0};
    if (data.Read(out, in) != 0) return;
    for (const vire::FltInt& record : vire::DecodeFltInt(output, out.count)) {
        values.push_back(record.value);
        times.push_back(record.time);
    }
}

void TrendFeed::Show(const std::string& caption, const std::string& units, double min, double max,
                     const std::vector<TrendItem>& items, bool ownScales, bool autoScale) {
    items_ = items;
    autoScale_ = autoScale;
    plot_.Clear();
    links_.clear();
    traces_.clear();
    plot_.SetCaption(caption);
    plot_.SetYLabel(units);
    plot_.SetXLabel("Time");
    plot_.SetTimeAxis(true);
    plot_.SetAxisMode(ownScales ? 0 : ui::kAxisModeCommonScale);
    plot_.SetYMax(max);
    plot_.SetYMin(min);
    FollowPresent();
    for (const TrendItem& item : items_) {
        std::vector<double> times;
        std::vector<float> values;
        Prefill(item, times, values);
        plot_.SetForeColour(item.colour);
        const int32_t trace = plot_.CreateTraceXY(static_cast<int32_t>(values.size()), times, values);
        if (ownScales) plot_.SetTraceRange(trace, item.min, item.max);
        traces_.push_back(trace);
        plot_.SetContext(item.context);
        plot_.SetServer(item.server);
        plot_.SetDevice(item.device);
        plot_.SetProperty(item.property);
        buffer_.assign(static_cast<size_t>(item.count), 0.0f);
        links_.push_back(plot_.Attach(buffer_));
    }
    if (autoScale_) plot_.AutoScale(0, 0, 1, 1);
    DrawLegend();
}

void TrendFeed::FollowPresent() {
    const double now = static_cast<double>(vire::UNIXTIME());
    plot_.SetXRange(now - span_, now);
}

void TrendFeed::DrawLegend() {
    plot_.RemoveAllTexts();
    const ui::Colour previous = plot_.ForeColour();
    const double xmin = plot_.XMin(), xmax = plot_.XMax(), ymin = plot_.YMin(), ymax = plot_.YMax();
    for (size_t i = 0; i < items_.size(); ++i) {
        plot_.SetForeColour(items_[i].colour);
        plot_.DrawText(xmin + (xmax - xmin) * (0.02 + 0.2 * static_cast<double>(i)),
                       ymax - (ymax - ymin) * 0.02, items_[i].name);
    }
    plot_.SetForeColour(previous);
}

void TrendFeed::OnData(int32_t, int16_t error) {
    if (error != 0) return;
    const int32_t counter = plot_.PointCounter();
    for (size_t i = 0; i < items_.size(); ++i) {
        buffer_.assign(static_cast<size_t>(items_[i].count), 0.0f);
        if (plot_.ReadLinkData(links_[i], buffer_) <= items_[i].element) continue;
        plot_.AppendPoint(traces_[i], buffer_[static_cast<size_t>(items_[i].element)], counter, 1);
    }
    if (!plot_.IsZoomed()) {
        FollowPresent();
        if (autoScale_) plot_.AutoScale(0, 0, 1, 1);
        DrawLegend();
    }
}

void TrendFeed::OnCursor(double x) {
    const std::string text = plot_.XToTimeText(x);
    plot_.SetCursorCaption(text.size() >= 19 ? " at " + text.substr(4, 15) : "");
}

}  // namespace demo
