// The values a plot draws, as a table for export: taken from what the plot
// holds (its traces, reference and limits), never recomputed from the data,
// so that the file says what the picture shows whatever mode drew it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ui/plot/plot_model.h"
#include "viewer/csv_text.h"

namespace viewer {

// The spectrum: one row per element within the visible x range; columns
// "element", "label" (the axis's labels) and one per visible trace, named
// by its legend name or else by its kind ("spectrum", "threshold",
// "reference"; a kind met again is numbered: "threshold 2"). A trace with
// x positions of its own is read where its line crosses each element;
// outside its points the field is empty.
CsvTable SpectrumTable(const ui::PlotModel& model, std::vector<std::string> header);

// Where the value a trend trace draws at x came from ("live", "local
// history", "archive"; "" when unknown).
using SourceLookup = std::function<std::string(int32_t trace, double x)>;

// A trend plot: one row per point within the visible time range (the time
// axis's margin right of its maximum included), trace by trace; columns
// "trace", "time" (local), "unix_seconds", "value", "source". Breaks (NaN
// points) are not values and are left out.
CsvTable TrendTable(const ui::PlotModel& model, std::vector<std::string> header, const SourceLookup& source);

// "YYYY-MM-DD HH:MM:SS" in local time.
std::string LocalTimeText(double unixSeconds);

}  // namespace viewer
