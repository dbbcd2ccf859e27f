// Limits, labels, caption, axis mode, auto-scale and the time axis.
#include "ui/plot/plex_plot.h"

#include <cmath>

#include "ui/plot/auto_scale.h"
#include "ui/plot/plot_canvas.h"
#include "ui/plot/time_axis.h"

namespace ui {

void PlexPlot::LimitsChanged() { canvas_->ApplyLimits(); }

void PlexPlot::SetXMax(double value) {
    if (!std::isfinite(value)) return;
    model_.limits.xMax = value;
    LimitsChanged();
}

void PlexPlot::SetXMin(double value) {
    if (!std::isfinite(value)) return;
    model_.limits.xMin = value;
    LimitsChanged();
}

void PlexPlot::SetYMax(double value) {
    if (!std::isfinite(value)) return;
    model_.limits.yMax = value;
    LimitsChanged();
}

void PlexPlot::SetYMin(double value) {
    if (!std::isfinite(value)) return;
    model_.limits.yMin = value;
    LimitsChanged();
}

void PlexPlot::SetXRange(double start, double end) {
    if (!std::isfinite(start) || !std::isfinite(end)) return;
    model_.limits.xMin = start;
    model_.limits.xMax = end;
    LimitsChanged();
}

void PlexPlot::SetXLabel(const std::string& label) {
    const QString text = QString::fromStdString(label);
    if (text == canvas_->xAxis->label()) return;
    canvas_->xAxis->setLabel(text);
    canvas_->InvalidateFrame();
}

std::string PlexPlot::XLabel() const { return canvas_->xAxis->label().toStdString(); }

void PlexPlot::SetYLabel(const std::string& label) {
    const QString text = QString::fromStdString(label);
    if (text == canvas_->yAxis->label()) return;
    canvas_->yAxis->setLabel(text);
    canvas_->InvalidateFrame();
}

std::string PlexPlot::YLabel() const { return canvas_->yAxis->label().toStdString(); }

void PlexPlot::SetCaption(const std::string& caption) { canvas_->SetCaption(QString::fromStdString(caption)); }

std::string PlexPlot::Caption() const { return canvas_->Caption().toStdString(); }

void PlexPlot::SetNotice(const std::string& notice) {
    if (notice == model_.notice) return;
    model_.notice = notice;
    canvas_->update();
}

void PlexPlot::SetAxisMode(int16_t mode) {
    model_.axisMode = mode;
    canvas_->update();
}

void PlexPlot::AutoScale(int16_t xMinFlag, int16_t xMaxFlag, int16_t yMinFlag, int16_t yMaxFlag) {
    const AxisLimits before = model_.limits;
    AutoScaleLimits(model_, xMinFlag, xMaxFlag, yMinFlag, yMaxFlag, model_.limits);
    const AxisLimits& after = model_.limits;
    // The frame (ticks, labels) is drawn again only when a limit moved.
    if (after.xMin != before.xMin || after.xMax != before.xMax || after.yMin != before.yMin ||
        after.yMax != before.yMax)
        LimitsChanged();
}

void PlexPlot::SetTimeAxis(bool on) {
    model_.timeAxis = on;
    canvas_->SetTimeAxis(on);
}

std::string PlexPlot::XToTimeText(double x) const { return TimeText(x); }

}  // namespace ui
