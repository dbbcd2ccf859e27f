// What a plot shows, apart from how it is drawn: traces, texts, marks, the
// reference data, the axis limits as the caller set them, cursor and zoom.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/plot/colour.h"
#include "ui/plot/handle_table.h"

namespace ui {

// Trace styles: new traces take the plot's current style.
inline constexpr int32_t kTraceStyleThreshold = 1;  // dashed, drawn above the data
inline constexpr int32_t kTraceStyleNormal = 2;
inline constexpr int32_t kTraceStyleReference = 8;  // drawn beneath every other trace

// Symbols at the points of a trace (second style argument of CreateTrace).
inline constexpr int16_t kSymbolNone = 0;
inline constexpr int16_t kSymbolDot = 1;
inline constexpr int16_t kSymbolCross = 2;

// Axis mode in which all traces share the plot's vertical scale.
inline constexpr int16_t kAxisModeCommonScale = 25;

// Room a time axis leaves right of its maximum, as a share of its span.
inline constexpr double kTimeAxisMargin = 0.03;

struct Trace {
    std::vector<float> values;
    std::vector<double> xs;            // empty: point i lies at x = i
    std::vector<std::string> labels;   // element labels, one per point (may be fewer)
    std::vector<int64_t> labelAnchors; // elements labelled first, ascending
    std::string name;                  // legend text; empty: not in the legend
    Colour colour = kBlack;
    int32_t style = kTraceStyleNormal;
    int16_t lineWidth = 1;
    int16_t symbol = kSymbolNone;
    bool visible = true;
    bool relative = false;             // show values minus the plot's reference data
    bool ownRange = false;             // own vertical scale (used outside common scale)
    double ownMin = 0.0;
    double ownMax = 1.0;
    bool ascending = true;             // xs never decrease, so points can be binned by column
};

struct PlotText {
    double x = 0.0;
    double y = 0.0;
    std::string text;
    Colour colour = kBlack;
};

struct Mark {
    double x = 0.0;
    Colour colour = kBlack;
};

// The limits exactly as set: a maximum set below the minimum stays so (the
// axis shows the two swapped) until the other limit is set too.
struct AxisLimits {
    double xMin = 0.0;
    double xMax = 10.0;
    double yMin = 0.0;
    double yMax = 10.0;
};

struct PlotModel {
    HandleTable<Trace> traces;
    HandleTable<PlotText> texts;
    HandleTable<Mark> marks;
    std::vector<float> reference;      // what relative traces are shown against
    AxisLimits limits;
    int32_t traceStyle = kTraceStyleNormal;
    Colour foreColour = kBlack;
    Colour markColour = kBlack;
    int16_t axisMode = kAxisModeCommonScale;
    bool timeAxis = false;
    bool historyDisplay = false;

    bool cursorVisible = false;
    double cursorX = 0.0;
    std::string cursorCaption;
    std::string hoverLabel;            // full element label under the mouse
    std::string notice;                // what the plot lacks, "\n" between lines

    // The value of point i as drawn: against the reference where relative.
    static float Displayed(const Trace& trace, const std::vector<float>& reference, size_t i) {
        const float v = trace.values[i];
        if (!trace.relative || i >= reference.size()) return v;
        return v - reference[i];
    }
};

}  // namespace ui
