#include "ui/plot/auto_scale.h"

#include <algorithm>
#include <cmath>

namespace ui {
namespace {

void Include(Extent& e, double v) {
    if (!std::isfinite(v)) return;
    if (!e.valid) {
        e = Extent{true, v, v};
        return;
    }
    e.min = std::min(e.min, v);
    e.max = std::max(e.max, v);
}

}  // namespace

Extent XExtent(const PlotModel& model) {
    Extent e;
    for (const auto& [handle, trace] : model.traces) {
        if (!trace.visible || trace.values.empty()) continue;
        const size_t n = trace.values.size();
        if (trace.xs.empty()) {
            Include(e, 0.0);
            Include(e, static_cast<double>(n - 1));
            continue;
        }
        for (size_t i = 0; i < std::min(n, trace.xs.size()); ++i)
            if (!std::isnan(trace.values[i])) Include(e, trace.xs[i]);
    }
    return e;
}

Extent YExtent(const PlotModel& model, double xFrom, double xTo) {
    Extent e;
    const double lo = std::min(xFrom, xTo), hi = std::max(xFrom, xTo);
    for (const auto& [handle, trace] : model.traces) {
        if (!trace.visible) continue;
        const size_t n = trace.xs.empty() ? trace.values.size() : std::min(trace.values.size(), trace.xs.size());
        size_t first = 0, last = n;  // [first, last)
        if (trace.xs.empty()) {
            first = static_cast<size_t>(std::clamp(std::ceil(lo), 0.0, static_cast<double>(n)));
            last = static_cast<size_t>(std::clamp(std::floor(hi) + 1.0, 0.0, static_cast<double>(n)));
        }
        for (size_t i = first; i < last; ++i) {
            if (!trace.xs.empty() && !(trace.xs[i] >= lo && trace.xs[i] <= hi)) continue;
            Include(e, PlotModel::Displayed(trace, model.reference, i));
        }
    }
    return e;
}

void AutoScaleLimits(const PlotModel& model, int16_t xMinFlag, int16_t xMaxFlag, int16_t yMinFlag,
                     int16_t yMaxFlag, AxisLimits& limits) {
    if (xMinFlag || xMaxFlag) {
        const Extent x = XExtent(model);
        if (x.valid) {
            if (xMinFlag) limits.xMin = x.min;
            if (xMaxFlag) limits.xMax = x.max;
        }
    }
    if (!yMinFlag && !yMaxFlag) return;
    const Extent y = YExtent(model, limits.xMin, limits.xMax);
    if (!y.valid) return;
    const double span = y.max - y.min;
    const double margin = span > 0.0 ? span * 0.05 : std::max(0.5, std::abs(y.max) * 0.05);
    if (yMinFlag) limits.yMin = y.min - margin;
    if (yMaxFlag) limits.yMax = y.max + margin;
}

}  // namespace ui
