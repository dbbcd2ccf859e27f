// Turning a trace into the lines that are actually drawn.
//
// A plot 1100 pixels wide cannot show more than one vertical run per pixel
// column. Where a trace has more points than twice the columns, each column's
// points become one vertical line from their lowest to their highest value,
// joined to the next column by the line from the column's last point to the
// next one's first. With a one-pixel pen this covers the pixels the full
// polyline covers, at a fraction of the cost for 8000 or 64000 points.
#pragma once

#include <QPointF>
#include <span>
#include <vector>

namespace ui {

// px = (x - xLower) * xScale + xLeft, py = (y - yLower) * yScale + yBottom.
// Lower bounds are subtracted first so that time axes (x near 1.7e9) keep
// their sub-pixel precision.
struct PixelMapping {
    double xLower = 0.0;
    double xScale = 1.0;
    double xLeft = 0.0;
    double yLower = 0.0;
    double yScale = -1.0;
    double yBottom = 0.0;
};

struct TracePoints {
    std::span<const float> values;
    std::span<const double> xs;         // empty: point i lies at x = i
    std::span<const float> reference;   // non-empty: draw values[i] - reference[i]
    bool ascending = true;              // xs never decrease
};

enum class ShapeKind {
    Polyline,   // the points joined in order (every point kept)
    LinePairs,  // separate lines, two points each (thinned by column)
};

// Fills `out` (emptied first) with the shape of the points that fall within
// the pixel columns [left, right] plus one neighbour on each side, so that
// the line runs on to the plot's edge. NaN values are left out: the line
// joins their neighbours. Pixel coordinates are held within +-1e7 so that
// values far off scale still give lines of the right direction.
ShapeKind BuildShape(const TracePoints& trace, const PixelMapping& mapping, int left, int right,
                     std::vector<QPointF>& out);

}  // namespace ui
