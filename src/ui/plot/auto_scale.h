// Fitting a plot's limits to its data.
#pragma once

#include <cstdint>

#include "ui/plot/plot_model.h"

namespace ui {

struct Extent {
    bool valid = false;
    double min = 0.0;
    double max = 0.0;
};

// x extent of the visible traces' points (NaN values and x left out).
Extent XExtent(const PlotModel& model);
// Extent of the visible traces' values as drawn (relative traces against the
// reference), counting only points with x within [xFrom, xTo].
Extent YExtent(const PlotModel& model, double xFrom, double xTo);

// The auto-scale operation: each non-zero flag lets that limit follow the
// data. x first (exactly to the data); then y over the points within the new
// x limits, with 5 % of the data's span added on each side that moves (flat
// data: 0.5 or 5 % of the value, whichever is larger), so that a trace never
// lies on the frame. Without data nothing changes.
void AutoScaleLimits(const PlotModel& model, int16_t xMinFlag, int16_t xMaxFlag, int16_t yMinFlag,
                     int16_t yMaxFlag, AxisLimits& limits);

}  // namespace ui
