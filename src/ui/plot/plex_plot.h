// The plot-and-link component: one class for the spectrum plot and the three
// trend plots of the viewer window (PLEXPlotSpectrum, PLEXPlotSelected,
// PLEXPlotExtra, PLEXPlotAccelerator).
//
// Traces, texts and marks are held by 32-bit handle (-1 = none; handles are
// never reused, so a stale handle finds nothing). The plot also holds live
// links to the middleware and raises DataReceive when a round of them has
// delivered. All calls and signals run on the UI thread.
//
// A failing link does not silence the others: the round's error flag is
// non-zero only when every link heard in the round failed (then it is the
// code of the first failure), so a handler that drops events with an error
// drops only rounds that brought nothing new. A handler shows each link's
// own state from LinkStatus; ReadLinkData of a failing link still gives its
// last good values.
#pragma once

#include <QPoint>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ui/plot/colour.h"
#include "ui/plot/live_links.h"
#include "ui/plot/plot_model.h"

namespace ui {

class PlotCanvas;

class PlexPlot : public QWidget {
    Q_OBJECT
public:
    // An empty plot: axes 0..10, common scale, black fore colour, no links.
    explicit PlexPlot(QWidget* parent = nullptr);
    // Stops the links; no event of them arrives afterwards.
    ~PlexPlot() override;

    // --- Traces (new traces take the fore colour and the trace style) ---
    // A trace of the first `count` values (at most the buffer's size), point i
    // at x = i; `labels` name the elements and label the x axis.
    int32_t CreateTrace(int32_t count, std::span<const float> values,
                        std::span<const std::string> labels = {}, int16_t lineWidth = 1,
                        int16_t symbol = kSymbolNone);
    // A trace of `count` points at the given x positions.
    int32_t CreateTraceXY(int32_t count, std::span<const double> xs, std::span<const float> values,
                          int16_t lineWidth = 1, int16_t symbol = kSymbolNone);
    // New values for a trace (its x positions and labels stay); false for an unknown handle.
    bool UpdateTrace(int32_t trace, std::span<const float> values, int32_t count);
    // Removes one trace; false when the handle names none (-1, unknown, already deleted).
    bool DeleteTrace(int32_t trace);
    // Removes every trace.
    void RemoveAllTraces();
    // Shows or hides a trace; false for an unknown handle.
    bool ShowTrace(int32_t trace, bool visible);
    // Elements whose labels the axis shows before any other, e.g. the first
    // element of each part of a spectrum read in parts: labelled whenever
    // they are in view and a label's room from an earlier anchor; the other
    // labels are thinned around them. Replaces the trace's anchors; elements
    // outside the trace are ignored. False for an unknown handle.
    bool SetLabelAnchors(int32_t trace, std::vector<int32_t> elements);
    // Names a trace in the legend, a row between caption and plot area that
    // lists the visible named traces in their colours (in the order they were
    // made). Empty takes the trace out; no named trace, no legend row. False
    // for an unknown handle.
    bool SetTraceName(int32_t trace, const std::string& name);
    // Takes the first `count` values as the plot's reference data, which
    // relative traces are shown against; `trace` must name a trace. The data
    // outlive that trace (until Clear).
    bool SetReferenceData(int32_t trace, std::span<const float> values, int32_t count);
    // Shows a trace as its values minus the reference data (points beyond
    // the reference as they are); false for an unknown handle.
    bool SetRelativeDisplay(bool on, int32_t trace);
    // An own vertical scale for a trace, used while the axis mode is not
    // the common scale; false for an unknown handle or a non-finite limit.
    bool SetTraceRange(int32_t trace, double yMin, double yMax);
    // Copies a trace's values and x positions out; the number of points (0 for an unknown handle).
    int32_t ReadTracePoints(int32_t trace, std::vector<float>& values, std::vector<double>& xs) const;
    // Style new traces take: 1 threshold, 2 normal, 8 reference.
    void SetTraceStyle(int32_t style);
    int32_t TraceStyle() const { return model_.traceStyle; }  // the style new traces take
    // Colour (0x00BBGGRR) new traces and texts take.
    void SetForeColour(Colour colour);
    Colour ForeColour() const { return model_.foreColour; }  // the colour new traces and texts take

    // --- Texts at axis coordinates ---
    // A text in the fore colour at (x, y); its handle. Texts are captions:
    // they are drawn in a band of their own above the plot area, starting at
    // their x, so that no trace ever runs through them (y is kept as given).
    int32_t DrawText(double x, double y, const std::string& text);
    // Removes one text; false when the handle names none.
    bool RemoveText(int32_t text);
    // Removes every text.
    void RemoveAllTexts();

    // --- Axes ---
    // The limits as last set (by code, zoom or auto-scale).
    double XMax() const { return model_.limits.xMax; }
    double XMin() const { return model_.limits.xMin; }
    double YMax() const { return model_.limits.yMax; }
    double YMin() const { return model_.limits.yMin; }
    // Each limit is kept exactly as set; a non-finite value is ignored.
    void SetXMax(double value);
    void SetXMin(double value);
    void SetYMax(double value);
    void SetYMin(double value);
    // Both x limits at once (the zoom does not count this as zooming).
    void SetXRange(double start, double end);
    // Axis titles ("Device Name/Location", units).
    void SetXLabel(const std::string& label);
    std::string XLabel() const;
    void SetYLabel(const std::string& label);
    std::string YLabel() const;
    // Caption above the plot; empty for none.
    void SetCaption(const std::string& caption);
    std::string Caption() const;
    // What the plot lacks (a part whose server does not answer, data too
    // long to draw), shown in the plot area on an opaque ground above the
    // traces; lines separated by "\n", empty for none. Clear keeps it.
    void SetNotice(const std::string& notice);
    std::string Notice() const { return model_.notice; }
    // 25 = common scale (every trace on the plot's scale); otherwise traces
    // with an own range are drawn on it.
    void SetAxisMode(int16_t mode);
    int16_t AxisMode() const { return model_.axisMode; }
    // Lets each flagged limit (non-zero) follow the data of the visible traces.
    void AutoScale(int16_t xMinFlag, int16_t xMaxFlag, int16_t yMinFlag, int16_t yMaxFlag);
    // x as Unix seconds with date/time ticks. A time axis shows a margin of
    // kTimeAxisMargin (3 %) of the span right of XMax, so that the newest
    // point of a trend (at the present, where XMax follows it) stands clear
    // of the frame; XMax still reads as set.
    void SetTimeAxis(bool on);
    bool TimeAxis() const { return model_.timeAxis; }  // x shown as date/time
    // The 24-character date/time text of an x position ("" for none).
    std::string XToTimeText(double x) const;

    // --- Zoom ---
    // True after a zoom rectangle was dragged, until UnZoom (or a backward
    // drag or double click) restores the limits held before the first zoom.
    bool IsZoomed() const { return zoomed_; }
    // Back to the limits before the first zoom, raising ZoomEvent; false when not zoomed.
    bool UnZoom();
    // Ends the zoom state silently: no ZoomEvent, the limits stay as they are
    // (for code that has just set the limits itself); false when not zoomed.
    bool ResetZoom();
    // On while the plot shows a past time window: time ticks carry the date.
    void SetHistoryDisplay(bool on);
    bool HistoryDisplay() const { return model_.historyDisplay; }  // showing a past window

    // --- Cursor and marks ---
    // Puts the vertical cursor at x (shows it; raises no event).
    void SetCursorX(double x);
    double CursorX() const { return model_.cursorX; }  // where the cursor stands
    // Shows or hides the cursor (a mouse move over the plot shows it again).
    void SetCursorVisible(bool visible);
    bool CursorVisible() const { return model_.cursorVisible; }  // cursor shown
    // Text beside the cursor; empty for none.
    void SetCursorCaption(const std::string& caption);
    std::string CursorCaption() const { return model_.cursorCaption; }  // the text beside the cursor
    // Full label of the element under the mouse ("" where none).
    std::string HoverLabel() const { return model_.hoverLabel; }
    // Colour (0x00BBGGRR) new marks take.
    void SetMarkColour(Colour colour);
    Colour MarkColour() const { return model_.markColour; }  // the colour new marks take
    // A mark at an element position (x); returns its handle.
    int32_t AddMark(double x);
    // Removes one mark; false when the handle names none.
    bool RemoveMark(int32_t mark);
    // Removes every mark.
    void RemoveAllMarks();

    // --- Trend traces ---
    // Data-received events raised since the last Clear: the points a handler
    // appends in one event share one counter.
    int32_t PointCounter() const { return pointCounter_; }
    // Appends a point: at the clock's present time (Unix seconds) with flag
    // 1, at x = counter otherwise; beyond the trend capacity the oldest
    // point is dropped. False for an unknown handle.
    bool AppendPoint(int32_t trace, float value, int32_t counter, int16_t flag);
    // Points a trend trace keeps (at least 1; 2000 at start).
    void SetTrendCapacity(int32_t points);
    int32_t TrendCapacity() const { return trendCapacity_; }  // points a trend trace keeps

    // --- Live link (parameters apply to the next Attach) ---
    void SetAccessMode(const std::string& mode);        // "POLL", the only mode a link has
    void SetPollingInterval(int32_t milliseconds);      // at least 1
    void SetProtocol(const std::string& protocol);      // "VIRE", the only protocol
    void SetContext(const std::string& context);        // first part of the device name
    void SetServer(const std::string& server);          // second part
    void SetDevice(const std::string& device);          // third part
    void SetProperty(const std::string& property);      // what the link reads
    const LinkParameters& LinkSettings() const { return links_.parameters; }  // all of the above
    // Starts a link reading as many 32-bit floats as the buffer holds from
    // "/" + context + "/" + server + "/" + device; its link number, or -1.
    int32_t Attach(std::span<const float> buffer);
    // Stops one link; false for an unknown link number.
    bool Detach(int32_t link);
    // Stops every link.
    void DetachAll();
    int32_t LinkCount() const { return links_.Count(); }  // links running
    // The values of a link's last good delivery: its first value, or as many
    // as the target holds (returns how many). A failed delivery leaves the
    // last good values; nothing is written before the first good one.
    bool ReadLinkData(int32_t link, float& value) const;
    int32_t ReadLinkData(int32_t link, std::span<float> target) const;
    // Completion code of a link's last delivery: 0 = good, vire::kNoData
    // (36) before its first delivery, kUnknownLink (-1) for a number that
    // names no running link (never attached, detached, cleared).
    vire::Status LinkStatus(int32_t link) const { return links_.LastStatus(link); }
    static constexpr vire::Status kUnknownLink = LiveLinks::kUnknownLink;

    // Removes traces, texts, marks (unless `keepMarks`), reference data and
    // links; ends the zoom silently and restarts the point counter. Limits,
    // axis titles and caption stay.
    void Clear(bool keepMarks = false);

    // What the plot shows (read-only).
    const PlotModel& Model() const { return model_; }
    // The drawing surface (pixel mapping, layout), for tests and benchmarks.
    PlotCanvas* Canvas() const { return canvas_; }

signals:
    // A round of the live links has delivered. `link` is the link that
    // completed it; `error` is 0 when at least one link of the round
    // delivered good data, else the first failure's completion code.
    // PointCounter is already advanced for this round.
    void DataReceive(int32_t link, int16_t error);
    // The user zoomed (or unzoomed): the new ranges.
    void ZoomEvent(double newStart, double newEnd, double newYMin, double newYMax);
    // The mouse moved over the plot area (the cursor follows it).
    void CursorMove(double x, double y);
    // A click (press and release without dragging) in the plot area.
    void CursorClick(double x, double y);
    // Right button: the caller pops up its menu here.
    void OptionsRequest(QPoint globalPosition);

private:
    void LimitsChanged();
    void LabelsChanged();
    void LegendChanged();
    void OnZoomDragged(double x0, double x1, double y0, double y1);
    void OnMouseMoved(double x, double y);
    void OnRound(int32_t link, vire::Status status);
    Trace* FindTrace(int32_t trace);

    PlotModel model_;
    PlotCanvas* canvas_ = nullptr;
    LiveLinks links_;
    bool zoomed_ = false;
    AxisLimits beforeZoom_;
    int32_t pointCounter_ = 0;
    int32_t trendCapacity_ = 2000;
};

}  // namespace ui
