#include "viewer/zoom_stack.h"

#include "catalogue/runtime_error.h"

namespace viewer {

namespace {

constexpr int kTrendPlotsSharingTime = 3;

void CheckColumn(int column) {
    if (column < 0 || column >= kZoomColumns) catalogue::ThrowOutOfBounds("zoom column", column, 0, kZoomColumns - 1);
}

}  // namespace

void ZoomStack::SetFull(double from, double to) {
    depth_ = 0;
    entries_[0].from = from;
    entries_[0].to = to;
}

void ZoomStack::SetFullYRange(int column, double yMin, double yMax) {
    CheckColumn(column);
    entries_[0].yMin[column] = yMin;
    entries_[0].yMax[column] = yMax;
}

void ZoomStack::SetTopYRange(int column, double yMin, double yMax) {
    CheckColumn(column);
    entries_[depth_].yMin[column] = yMin;
    entries_[depth_].yMax[column] = yMax;
}

ZoomStack::Step ZoomStack::Zoom(int column, const ZoomView& view, bool plotZoomed,
                                const std::array<std::array<double, 2>, kZoomColumns>& otherYRanges) {
    CheckColumn(column);
    const ZoomEntry& full = entries_[0];
    const bool backAtFull = view.start == full.from && view.end == full.to && view.yMax == full.yMax[column] &&
                            view.yMin == full.yMin[column];
    if (!plotZoomed || backAtFull) {
        depth_ = 0;
        return Step::Reset;
    }
    // Only a view that takes in the whole top entry, in time and in y, is
    // a zoom out; wider in time but lower in y still looks closer at
    // something and is kept as a zoom in.
    const ZoomEntry& top = entries_[depth_];
    if (view.start <= top.from && view.end >= top.to && view.yMin <= top.yMin[column] &&
        view.yMax >= top.yMax[column]) {
        depth_ = static_cast<int16_t>(depth_ > 0 ? depth_ - 1 : 0);
        return Step::Out;
    }
    if (depth_ < kZoomDepthLimit) ++depth_;
    ZoomEntry& entry = entries_[depth_];
    entry.from = view.start;
    entry.to = view.end;
    entry.yMax[column] = view.yMax;
    entry.yMin[column] = view.yMin;
    for (int k = 1; k < kTrendPlotsSharingTime; ++k) {
        const int other = (column + k) % kTrendPlotsSharingTime;
        entry.yMin[other] = otherYRanges[other][0];
        entry.yMax[other] = otherYRanges[other][1];
    }
    return Step::In;
}

void ZoomStack::Back() {
    if (depth_ > 0) --depth_;
}

std::string ZoomStack::Caption(int16_t depth) { return "Zooms: " + std::to_string(depth); }

}  // namespace viewer
