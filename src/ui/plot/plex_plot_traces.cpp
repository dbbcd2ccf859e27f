// Traces, texts, marks and trend points.
#include "ui/plot/plex_plot.h"

#include <QVector>
#include <algorithm>
#include <cmath>

#include "ui/plot/plot_canvas.h"
#include "vire/clock.h"

namespace ui {
namespace {

size_t Clamped(int32_t count, size_t available) {
    return count <= 0 ? 0 : std::min(static_cast<size_t>(count), available);
}

bool Ascending(const std::vector<double>& xs) {
    for (size_t i = 1; i < xs.size(); ++i)
        if (!(xs[i] >= xs[i - 1])) return false;
    return xs.empty() || !std::isnan(xs.front());
}

}  // namespace

Trace* PlexPlot::FindTrace(int32_t trace) { return model_.traces.Find(trace); }

int32_t PlexPlot::CreateTrace(int32_t count, std::span<const float> values,
                              std::span<const std::string> labels, int16_t lineWidth, int16_t symbol) {
    const size_t n = Clamped(count, values.size());
    Trace trace;
    trace.values.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n));
    trace.labels.assign(labels.begin(), labels.begin() + static_cast<std::ptrdiff_t>(std::min(n, labels.size())));
    trace.colour = model_.foreColour;
    trace.style = model_.traceStyle;
    trace.lineWidth = lineWidth;
    trace.symbol = symbol;
    const bool labelled = !trace.labels.empty();
    const int32_t handle = model_.traces.Add(std::move(trace));
    if (labelled) LabelsChanged();
    canvas_->update();
    return handle;
}

int32_t PlexPlot::CreateTraceXY(int32_t count, std::span<const double> xs, std::span<const float> values,
                                int16_t lineWidth, int16_t symbol) {
    const size_t n = Clamped(count, std::min(xs.size(), values.size()));
    Trace trace;
    trace.values.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n));
    trace.xs.assign(xs.begin(), xs.begin() + static_cast<std::ptrdiff_t>(n));
    trace.ascending = Ascending(trace.xs);
    trace.colour = model_.foreColour;
    trace.style = model_.traceStyle;
    trace.lineWidth = lineWidth;
    trace.symbol = symbol;
    const int32_t handle = model_.traces.Add(std::move(trace));
    canvas_->update();
    return handle;
}

bool PlexPlot::UpdateTrace(int32_t handle, std::span<const float> values, int32_t count) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    const size_t n = Clamped(count, values.size());
    trace->values.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n));
    canvas_->update();
    return true;
}

bool PlexPlot::DeleteTrace(int32_t handle) {
    const Trace* trace = FindTrace(handle);
    if (!trace) return false;
    const bool labelled = !trace->labels.empty(), named = !trace->name.empty();
    model_.traces.Remove(handle);
    if (labelled) LabelsChanged();
    if (named) LegendChanged();
    canvas_->update();
    return true;
}

void PlexPlot::RemoveAllTraces() {
    model_.traces.Clear();
    LabelsChanged();
    LegendChanged();
}

bool PlexPlot::ShowTrace(int32_t handle, bool visible) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    if (trace->visible == visible) return true;
    trace->visible = visible;
    if (!trace->labels.empty()) LabelsChanged();
    if (!trace->name.empty()) LegendChanged();
    canvas_->update();
    return true;
}

bool PlexPlot::SetLabelAnchors(int32_t handle, std::vector<int32_t> elements) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    std::sort(elements.begin(), elements.end());
    trace->labelAnchors.clear();
    for (int32_t element : elements)
        if (element >= 0 && static_cast<size_t>(element) < trace->labels.size() &&
            (trace->labelAnchors.empty() || trace->labelAnchors.back() != element))
            trace->labelAnchors.push_back(element);
    LabelsChanged();
    return true;
}

bool PlexPlot::SetTraceName(int32_t handle, const std::string& name) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    trace->name = name;
    LegendChanged();
    return true;
}

bool PlexPlot::SetReferenceData(int32_t handle, std::span<const float> values, int32_t count) {
    if (!FindTrace(handle)) return false;
    const size_t n = Clamped(count, values.size());
    model_.reference.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n));
    canvas_->update();
    return true;
}

bool PlexPlot::SetRelativeDisplay(bool on, int32_t handle) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    trace->relative = on;
    canvas_->update();
    return true;
}

bool PlexPlot::SetTraceRange(int32_t handle, double yMin, double yMax) {
    Trace* trace = FindTrace(handle);
    if (!trace || !std::isfinite(yMin) || !std::isfinite(yMax)) return false;
    trace->ownRange = true;
    trace->ownMin = yMin;
    trace->ownMax = yMax;
    canvas_->update();
    return true;
}

int32_t PlexPlot::ReadTracePoints(int32_t handle, std::vector<float>& values, std::vector<double>& xs) const {
    const Trace* trace = model_.traces.Find(handle);
    if (!trace) return 0;
    values = trace->values;
    if (trace->xs.empty()) {
        xs.resize(values.size());
        for (size_t i = 0; i < xs.size(); ++i) xs[i] = static_cast<double>(i);
    } else {
        xs.assign(trace->xs.begin(), trace->xs.begin() + static_cast<std::ptrdiff_t>(
                                                            std::min(trace->xs.size(), values.size())));
        values.resize(xs.size());
    }
    return static_cast<int32_t>(values.size());
}

void PlexPlot::SetTraceStyle(int32_t style) { model_.traceStyle = style; }
void PlexPlot::SetForeColour(Colour colour) { model_.foreColour = colour; }

int32_t PlexPlot::DrawText(double x, double y, const std::string& text) {
    const int32_t handle = model_.texts.Add(PlotText{x, y, text, model_.foreColour});
    canvas_->update();
    return handle;
}

bool PlexPlot::RemoveText(int32_t text) {
    if (!model_.texts.Remove(text)) return false;
    canvas_->update();
    return true;
}

void PlexPlot::RemoveAllTexts() {
    model_.texts.Clear();
    canvas_->update();
}

void PlexPlot::SetMarkColour(Colour colour) { model_.markColour = colour; }

int32_t PlexPlot::AddMark(double x) {
    const int32_t handle = model_.marks.Add(Mark{x, model_.markColour});
    canvas_->update();
    return handle;
}

bool PlexPlot::RemoveMark(int32_t mark) {
    if (!model_.marks.Remove(mark)) return false;
    canvas_->update();
    return true;
}

void PlexPlot::RemoveAllMarks() {
    model_.marks.Clear();
    canvas_->update();
}

bool PlexPlot::AppendPoint(int32_t handle, float value, int32_t counter, int16_t flag) {
    Trace* trace = FindTrace(handle);
    if (!trace) return false;
    const double x = flag == 1 ? static_cast<double>(vire::NowMilliseconds()) / 1000.0 : counter;
    if (trace->xs.size() != trace->values.size()) {
        // A trace made from values alone: its points get their index as x.
        trace->xs.resize(trace->values.size());
        for (size_t i = 0; i < trace->xs.size(); ++i) trace->xs[i] = static_cast<double>(i);
        trace->ascending = Ascending(trace->xs);
    }
    if (!trace->xs.empty() && !(x >= trace->xs.back())) trace->ascending = false;
    trace->xs.push_back(x);
    trace->values.push_back(value);
    const size_t capacity = static_cast<size_t>(trendCapacity_);
    if (trace->values.size() > capacity) {
        const auto drop = static_cast<std::ptrdiff_t>(trace->values.size() - capacity);
        trace->values.erase(trace->values.begin(), trace->values.begin() + drop);
        trace->xs.erase(trace->xs.begin(), trace->xs.begin() + drop);
    }
    canvas_->update();
    return true;
}

void PlexPlot::SetTrendCapacity(int32_t points) { trendCapacity_ = std::max<int32_t>(1, points); }

void PlexPlot::LabelsChanged() {
    // The x axis carries the labels of the first visible labelled trace.
    QVector<QString> labels;
    for (const auto& [handle, trace] : model_.traces) {
        if (!trace.visible || trace.labels.empty()) continue;
        labels.reserve(static_cast<qsizetype>(trace.labels.size()));
        for (const std::string& label : trace.labels) labels.push_back(QString::fromStdString(label));
        canvas_->SetElementLabels(std::move(labels), trace.labelAnchors);
        return;
    }
    canvas_->SetElementLabels({});
}

void PlexPlot::LegendChanged() {
    QVector<PlotCanvas::LegendEntry> entries;
    for (const auto& [handle, trace] : model_.traces)
        if (trace.visible && !trace.name.empty())
            entries.push_back({QString::fromStdString(trace.name), ToQColor(trace.colour)});
    canvas_->SetLegend(std::move(entries));
}

}  // namespace ui
