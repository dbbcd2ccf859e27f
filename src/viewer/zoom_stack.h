// The zoom stack of the trend plots, which share one time axis: entry 0 is
// the unzoomed view (the whole time window, each plot's y range), entries
// 1..Depth() the zooms the operator made, so that each can be undone in turn.
//
// Qt-free. Columns are the trend plots (0 selected items, 1 extra channels,
// 2 machine overview; column 3 exists but no plot uses it).
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "catalogue/fixed_array.h"

namespace viewer {

inline constexpr int kZoomEntries = 20;   // entries 0..20
inline constexpr int kZoomDepthLimit = 19;  // deeper zooms replace the top entry
inline constexpr int kZoomColumns = 4;

struct ZoomEntry {
    double from = 0.0;
    double to = 0.0;
    std::array<double, kZoomColumns> yMax{};
    std::array<double, kZoomColumns> yMin{};
};

// The new view a plot reports after a zoom: its time range and its y range.
struct ZoomView {
    double start;
    double end;
    double yMin;
    double yMax;
};

class ZoomStack {
public:
    enum class Step { Reset, In, Out };

    int16_t Depth() const { return depth_; }
    const ZoomEntry& Entry(int index) const { return entries_[index]; }
    const ZoomEntry& Top() const { return entries_[depth_]; }

    // Entry 0 becomes this view, and the depth 0.
    void SetFull(double from, double to);
    void SetFullYRange(int column, double yMin, double yMax);
    // The scaling writes the y range of the shown entry of a column.
    void SetTopYRange(int column, double yMin, double yMax);

    // A plot of `column` reports `view`; `otherYRanges` are the current y
    // ranges (min, max) of every column, of which the two other plots' are
    // stored with a zoom in. A view equal to entry 0, or a plot that says
    // it is no longer zoomed, resets to depth 0. A view enclosing the top
    // entry on all four sides pops it (nothing stored); anything else pushes
    // (the top entry is replaced once the depth is 19). A column outside
    // 0..3 throws catalogue's out-of-bounds error.
    Step Zoom(int column, const ZoomView& view, bool plotZoomed,
              const std::array<std::array<double, 2>, kZoomColumns>& otherYRanges);
    // One step back; at 0 it stays at 0.
    void Back();
    void Reset() { depth_ = 0; }

    // "Zooms: " and the depth.
    static std::string Caption(int16_t depth);

private:
    int16_t depth_ = 0;
    catalogue::FixedArray<ZoomEntry, 0, kZoomEntries> entries_{};
};

}  // namespace viewer
