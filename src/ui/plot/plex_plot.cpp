// Construction, mouse reactions (zoom, cursor), live links and clearing.
#include "ui/plot/plex_plot.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "ui/plot/plot_canvas.h"

namespace ui {

PlexPlot::PlexPlot(QWidget* parent)
    : QWidget(parent), links_([this](int32_t link, vire::Status status) { OnRound(link, status); }) {
    canvas_ = new PlotCanvas(model_, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(canvas_);
    connect(canvas_, &PlotCanvas::ZoomDragged, this, &PlexPlot::OnZoomDragged);
    connect(canvas_, &PlotCanvas::UnzoomRequested, this, [this] { UnZoom(); });
    connect(canvas_, &PlotCanvas::MouseMovedTo, this, &PlexPlot::OnMouseMoved);
    connect(canvas_, &PlotCanvas::MouseLeft, this, [this] {
        if (model_.hoverLabel.empty()) return;
        model_.hoverLabel.clear();
        canvas_->update();
    });
    connect(canvas_, &PlotCanvas::Clicked, this, &PlexPlot::CursorClick);
    connect(canvas_, &PlotCanvas::OptionsRequested, this, &PlexPlot::OptionsRequest);
}

PlexPlot::~PlexPlot() {
    // The canvas draws from model_: it goes first.
    delete canvas_;
    canvas_ = nullptr;
}

void PlexPlot::OnZoomDragged(double x0, double x1, double y0, double y1) {
    if (!zoomed_) beforeZoom_ = model_.limits;
    zoomed_ = true;
    model_.limits = AxisLimits{std::min(x0, x1), std::max(x0, x1), std::min(y0, y1), std::max(y0, y1)};
    LimitsChanged();
    const AxisLimits& l = model_.limits;
    emit ZoomEvent(l.xMin, l.xMax, l.yMin, l.yMax);
}

bool PlexPlot::ResetZoom() {
    if (!zoomed_) return false;
    zoomed_ = false;
    return true;
}

bool PlexPlot::UnZoom() {
    if (!zoomed_) return false;
    zoomed_ = false;
    model_.limits = beforeZoom_;
    LimitsChanged();
    const AxisLimits& l = model_.limits;
    emit ZoomEvent(l.xMin, l.xMax, l.yMin, l.yMax);
    return true;
}

void PlexPlot::SetHistoryDisplay(bool on) {
    model_.historyDisplay = on;
    canvas_->InvalidateFrame();
}

void PlexPlot::OnMouseMoved(double x, double y) {
    model_.cursorVisible = true;
    model_.cursorX = x;
    // The element under the mouse: the nearest point of the first visible
    // trace that has labels.
    model_.hoverLabel.clear();
    const double element = std::round(x);
    for (const auto& [handle, trace] : model_.traces) {
        if (!trace.visible || trace.labels.empty()) continue;
        if (element >= 0.0 && element < static_cast<double>(trace.labels.size()))
            model_.hoverLabel = trace.labels[static_cast<size_t>(element)];
        break;
    }
    canvas_->update();
    emit CursorMove(x, y);
}

void PlexPlot::SetCursorX(double x) {
    if (!std::isfinite(x)) return;
    model_.cursorX = x;
    model_.cursorVisible = true;
    canvas_->update();
}

void PlexPlot::SetCursorVisible(bool visible) {
    model_.cursorVisible = visible;
    canvas_->update();
}

void PlexPlot::SetCursorCaption(const std::string& caption) {
    model_.cursorCaption = caption;
    canvas_->update();
}

void PlexPlot::SetAccessMode(const std::string& mode) { links_.parameters.accessMode = mode; }
void PlexPlot::SetPollingInterval(int32_t milliseconds) { links_.parameters.intervalMs = milliseconds; }
void PlexPlot::SetProtocol(const std::string& protocol) { links_.parameters.protocol = protocol; }
void PlexPlot::SetContext(const std::string& context) { links_.parameters.context = context; }
void PlexPlot::SetServer(const std::string& server) { links_.parameters.server = server; }
void PlexPlot::SetDevice(const std::string& device) { links_.parameters.device = device; }
void PlexPlot::SetProperty(const std::string& property) { links_.parameters.property = property; }

int32_t PlexPlot::Attach(std::span<const float> buffer) {
    if (buffer.size() > static_cast<size_t>(INT32_MAX)) return -1;
    return links_.Attach(static_cast<int32_t>(buffer.size()));
}

bool PlexPlot::Detach(int32_t link) { return links_.Detach(link); }
void PlexPlot::DetachAll() { links_.DetachAll(); }

bool PlexPlot::ReadLinkData(int32_t link, float& value) const { return links_.Read(link, value); }
int32_t PlexPlot::ReadLinkData(int32_t link, std::span<float> target) const {
    return links_.Read(link, target);
}

void PlexPlot::OnRound(int32_t link, vire::Status status) {
    ++pointCounter_;
    // Last: the handler may delete this plot.
    emit DataReceive(link, status);
}

void PlexPlot::Clear(bool keepMarks) {
    links_.DetachAll();
    model_.traces.Clear();
    model_.texts.Clear();
    if (!keepMarks) model_.marks.Clear();
    model_.reference.clear();
    model_.hoverLabel.clear();
    zoomed_ = false;
    pointCounter_ = 0;
    LabelsChanged();
    LegendChanged();
}

}  // namespace ui
