#include "viewer/shown_values.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <limits>
#include <map>

namespace viewer {
namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

struct Range {
    double lo, hi;
};

Range VisibleX(const ui::PlotModel& model) {
    const ui::AxisLimits& l = model.limits;
    Range r{std::min(l.xMin, l.xMax), std::max(l.xMin, l.xMax)};
    if (model.timeAxis) r.hi += (r.hi - r.lo) * ui::kTimeAxisMargin;
    return r;
}

std::string KindName(int32_t style) {
    switch (style) {
        case ui::kTraceStyleThreshold: return "threshold";
        case ui::kTraceStyleReference: return "reference";
        default: return "spectrum";
    }
}

// The drawn value where the trace's line crosses x: a point of its own at
// exactly x, or the straight line between its two neighbours.
float ValueAtX(const ui::Trace& trace, const std::vector<float>& reference, double x) {
    const size_t n = std::min(trace.xs.size(), trace.values.size());
    const auto begin = trace.xs.begin(), end = trace.xs.begin() + static_cast<std::ptrdiff_t>(n);
    const auto at = std::lower_bound(begin, end, x);
    if (at == end) return kNone;
    const auto j = static_cast<size_t>(at - begin);
    if (*at == x) return ui::PlotModel::Displayed(trace, reference, j);
    if (j == 0) return kNone;
    const double x0 = trace.xs[j - 1], x1 = trace.xs[j];
    const double y0 = ui::PlotModel::Displayed(trace, reference, j - 1);
    const double y1 = ui::PlotModel::Displayed(trace, reference, j);
    return static_cast<float>(y0 + (y1 - y0) * (x - x0) / (x1 - x0));
}

float ValueAtElement(const ui::Trace& trace, const std::vector<float>& reference, int64_t element) {
    if (!trace.xs.empty()) return ValueAtX(trace, reference, static_cast<double>(element));
    if (element < 0 || static_cast<size_t>(element) >= trace.values.size()) return kNone;
    return ui::PlotModel::Displayed(trace, reference, static_cast<size_t>(element));
}

}  // namespace

CsvTable SpectrumTable(const ui::PlotModel& model, std::vector<std::string> header) {
    CsvTable table;
    table.header = std::move(header);
    table.columns = {"element", "label"};
    std::vector<const ui::Trace*> shown;
    const std::vector<std::string>* labels = nullptr;
    std::map<std::string, int> seen;
    int64_t elements = 0;
    for (const auto& [handle, trace] : model.traces) {
        if (!trace.visible) continue;
        shown.push_back(&trace);
        if (!labels && !trace.labels.empty()) labels = &trace.labels;
        if (trace.xs.empty()) elements = std::max<int64_t>(elements, static_cast<int64_t>(trace.values.size()));
        std::string name = trace.name.empty() ? KindName(trace.style) : trace.name;
        if (const int count = ++seen[name]; count > 1) name += " " + std::to_string(count);
        table.columns.push_back(name);
    }
    const Range x = VisibleX(model);
    const int64_t first = std::max<int64_t>(0, static_cast<int64_t>(std::ceil(x.lo)));
    const int64_t last = std::min<int64_t>(elements - 1, static_cast<int64_t>(std::floor(x.hi)));
    for (int64_t e = first; e <= last; ++e) {
        std::vector<std::string> row{std::to_string(e)};
        row.push_back(labels && static_cast<size_t>(e) < labels->size() ? (*labels)[static_cast<size_t>(e)]
                                                                       : std::string());
        for (const ui::Trace* trace : shown) row.push_back(CsvNumber(ValueAtElement(*trace, model.reference, e)));
        table.rows.push_back(std::move(row));
    }
    return table;
}

CsvTable TrendTable(const ui::PlotModel& model, std::vector<std::string> header, const SourceLookup& source) {
    CsvTable table;
    table.header = std::move(header);
    table.columns = {"trace", "time", "unix_seconds", "value", "source"};
    const Range range = VisibleX(model);
    for (const auto& [handle, trace] : model.traces) {
        if (!trace.visible) continue;
        const std::string name = trace.name.empty() ? "trace " + std::to_string(handle) : trace.name;
        for (size_t i = 0; i < trace.values.size(); ++i) {
            const double x = i < trace.xs.size() ? trace.xs[i] : static_cast<double>(i);
            if (x < range.lo || x > range.hi) continue;
            const float value = ui::PlotModel::Displayed(trace, model.reference, i);
            if (std::isnan(value)) continue;
            table.rows.push_back({name, LocalTimeText(x), CsvNumber(x), CsvNumber(value),
                                  source ? source(handle, x) : std::string()});
        }
    }
    return table;
}

std::string LocalTimeText(double unixSeconds) {
    if (!std::isfinite(unixSeconds)) return std::string();
    const std::time_t t = static_cast<std::time_t>(std::floor(unixSeconds));
    std::tm local{};
    if (!localtime_r(&t, &local)) return std::string();
    char text[32];
    const size_t n = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return std::string(text, n);
}

}  // namespace viewer
