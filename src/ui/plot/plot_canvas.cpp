#include "ui/plot/plot_canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/plot/element_ticker.h"
#include "ui/plot/time_axis.h"

namespace ui {
namespace {

// A press that moves less than this is a click, not a zoom rectangle.
constexpr int kDragPixels = 4;
// Room a time tick label needs, so the tick count follows the plot width.
constexpr int kTimeTickPixels = 140;
QCPRange Normalised(double a, double b) {
    double lo = std::min(a, b), hi = std::max(a, b);
    if (!(hi - lo > std::max(1e-12, std::abs(hi) * 1e-12))) {
        const double half = std::max(0.5, std::abs(hi) * 1e-6);
        lo -= half;
        hi += half;
    }
    return QCPRange(lo, hi);
}

const QColor kCursorColour(0x50, 0x50, 0x50);

}  // namespace

PlotCanvas::PlotCanvas(const PlotModel& model, QWidget* parent) : QCustomPlot(parent), model_(model) {
    // The frame pixmap covers every pixel: nothing needs clearing first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    // Zoom, cursor and clicks are ours; QCustomPlot's own interactions would
    // replot through its paint buffers, which this widget does not show.
    setInteractions(QCP::Interactions());
    setNotAntialiasedElements(QCP::aeAll);
    setPlottingHint(QCP::phCacheLabels, true);
    numberTicker_ = xAxis->ticker();
    elementTicker_.reset(new ElementTicker(xAxis));
    elementTicker_->SetPitch(QFontMetrics(xAxis->tickLabelFont()).height() + 2);
    timeTicker_.reset(new QCPAxisTickerDateTime);
    timeTicker_->setDateTimeSpec(Qt::LocalTime);
    // Texts get a band of their own right above the plot area. Inside the
    // area a caption hides the data under it, or the data the caption: the
    // spectrum's captions are drawn at every reading, at a height that an
    // auto-scaled spectrum fills. The band is always there, so that a caption
    // coming and going does not make the plot area jump.
    const int band = QFontMetrics(font()).height() + 4;
    textRow_ = new QCPLayoutElement(this);
    textRow_->setMinimumSize(0, band);
    textRow_->setMaximumSize(QWIDGETSIZE_MAX, band);
    plotLayout()->insertRow(0);
    plotLayout()->addElement(0, 0, textRow_);
    // The element axis (up to hundreds of upright labels) is the dearest
    // part of the frame, and a spectrum under continuous auto-scale moves
    // only y at every reading: the x axis gets a layer of its own, kept as
    // a picture of its own until x, its labels or the plot area change.
    addLayer("xaxis", layer("axes"), QCustomPlot::limAbove);
    xAxisLayer_ = layer("xaxis");
    xAxis->setLayer(xAxisLayer_);
    // The frame is filled white before drawing; the x axis picture must
    // stay clear around its ticks and labels.
    setBackground(Qt::NoBrush);
    ApplyLimits();
}

PlotCanvas::~PlotCanvas() = default;

void PlotCanvas::InvalidateFrame() {
    xAxisDirty_ = true;
    frameDirty_ = true;
    update();
}

void PlotCanvas::ApplyLimits() {
    const AxisLimits& l = model_.limits;
    QCPRange x = Normalised(l.xMin, l.xMax);
    if (timeAxis_) x.upper += x.size() * kTimeAxisMargin;
    const QCPRange y = Normalised(l.yMin, l.yMax);
    // A trend restates its window at every reading, though it moves only
    // once a second: the same range keeps the frame.
    if (x == xAxis->range() && y == yAxis->range()) return;
    if (x != xAxis->range()) xAxisDirty_ = true;
    xAxis->setRange(x);
    yAxis->setRange(y);
    frameDirty_ = true;
    update();
}

void PlotCanvas::SetElementLabels(QVector<QString> labels, std::vector<int64_t> anchors) {
    const bool labelled = !labels.isEmpty();
    elementTicker_->SetLabels(std::move(labels), std::move(anchors));
    if (!timeAxis_) {
        xAxis->setTicker(labelled ? QSharedPointer<QCPAxisTicker>(elementTicker_) : numberTicker_);
        // Upright labels: one text height per label instead of one text width.
        xAxis->setTickLabelRotation(labelled ? -90.0 : 0.0);
    }
    InvalidateFrame();
}

void PlotCanvas::SetTimeAxis(bool on) {
    timeAxis_ = on;
    if (on) {
        xAxis->setTicker(timeTicker_);
        xAxis->setTickLabelRotation(0.0);
    } else {
        SetElementLabels(elementTicker_->Labels(), elementTicker_->Anchors());
    }
    ApplyLimits();
    InvalidateFrame();
}

void PlotCanvas::SetLegend(QVector<LegendEntry> entries) {
    if (entries.isEmpty() && legend_.isEmpty()) return;
    legend_ = std::move(entries);
    if (legend_.isEmpty() && legendRow_) {
        plotLayout()->remove(legendRow_);
        plotLayout()->simplify();
        legendRow_ = nullptr;
    } else if (!legend_.isEmpty() && !legendRow_) {
        // A row of its own between caption and plot area: the legend never
        // covers a trace.
        const int height = QFontMetrics(font()).height() + 4;
        legendRow_ = new QCPLayoutElement(this);
        legendRow_->setMinimumSize(0, height);
        legendRow_->setMaximumSize(QWIDGETSIZE_MAX, height);
        // Above the texts' band, which stays next to the plot area.
        const int bandRow = plotLayout()->rowCount() - 2;
        plotLayout()->insertRow(bandRow);
        plotLayout()->addElement(bandRow, 0, legendRow_);
    }
    layoutStale_ = true;
    InvalidateFrame();
}

QRect PlotCanvas::LegendArea() const { return legendRow_ ? legendRow_->rect() : QRect(); }

void PlotCanvas::DrawLegend(QPainter& painter) {
    if (!legendRow_) return;
    const QRect row = legendRow_->rect();
    const QFontMetrics metrics(font());
    painter.setClipRect(row);
    int x = PlotArea().left();
    const int middle = row.center().y();
    for (const LegendEntry& entry : legend_) {
        if (x >= row.right()) break;
        painter.setPen(QPen(entry.colour, 2));
        painter.drawLine(x, middle, x + 14, middle);
        x += 18;
        painter.setPen(entry.colour);
        painter.drawText(QPoint(x, middle + metrics.ascent() / 2 - 1), entry.name);
        x += metrics.horizontalAdvance(entry.name) + 14;
    }
    painter.setClipping(false);
}

void PlotCanvas::SetCaption(const QString& caption) {
    // Callers restate the caption at every reading; only a new text is
    // worth a new layout and frame.
    if (caption == Caption()) return;
    if (caption.isEmpty()) {
        if (caption_) {
            plotLayout()->remove(caption_);
            plotLayout()->simplify();
            caption_ = nullptr;
        }
    } else if (!caption_) {
        plotLayout()->insertRow(0);
        QFont font = this->font();
        font.setBold(true);
        caption_ = new QCPTextElement(this, caption, font);
        plotLayout()->addElement(0, 0, caption_);
    } else {
        caption_->setText(caption);
    }
    layoutStale_ = true;
    InvalidateFrame();
}

QString PlotCanvas::Caption() const { return caption_ ? caption_->text() : QString(); }

QRect PlotCanvas::PlotArea() const { return axisRect()->rect(); }

QRect PlotCanvas::TextBand() const {
    const QRect area = PlotArea();
    const QRect row = textRow_->rect();
    return QRect(area.left(), row.top(), area.width(), row.height());
}

std::vector<std::pair<int32_t, QRectF>> PlotCanvas::TextBoxes() const {
    const QRect band = TextBand();
    std::vector<std::pair<double, int32_t>> order;
    for (const auto& [handle, text] : model_.texts) {
        const double px = xAxis->coordToPixel(text.x);
        if (px >= band.left() && px <= band.right() && std::isfinite(text.y)) order.emplace_back(px, handle);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    const QFontMetrics metrics(font());
    std::vector<std::pair<int32_t, QRectF>> boxes;
    double free = band.left();
    for (const auto& [px, handle] : order) {
        const QString shown = QString::fromStdString(model_.texts.Find(handle)->text);
        const double width = metrics.horizontalAdvance(shown) + 2;
        const double left = std::max(px, free);
        boxes.emplace_back(handle, QRectF(left, band.top() + 2, width, metrics.height()));
        free = left + width + metrics.averageCharWidth();
    }
    return boxes;
}

QRectF PlotCanvas::NoticeBox() const {
    if (model_.notice.empty()) return QRectF();
    const QFontMetrics metrics(font());
    const QStringList lines = QString::fromStdString(model_.notice).split('\n');
    int widest = 0;
    for (const QString& line : lines) widest = std::max(widest, metrics.horizontalAdvance(line));
    const QRect area = PlotArea();
    const double width = std::min<double>(widest + 16, std::max(area.width() - 8, 16));
    const double height = lines.size() * metrics.height() + 8;
    return QRectF(area.left() + (area.width() - width) / 2.0, area.top() + 8, width, height);
}

QPointF PlotCanvas::ToAxis(QPointF pixel) const {
    return QPointF(xAxis->pixelToCoord(pixel.x()), yAxis->pixelToCoord(pixel.y()));
}

QPointF PlotCanvas::ToPixel(double x, double y) const {
    return QPointF(xAxis->coordToPixel(x), yAxis->coordToPixel(y));
}

void PlotCanvas::LayOut() {
    updateLayout();
    layoutStale_ = false;
}

void PlotCanvas::resizeEvent(QResizeEvent*) {
    // QCustomPlot would replot into its own buffers here; the frame is
    // drawn at the next paint instead.
    setViewport(rect());
    layoutStale_ = true;
    frameDirty_ = true;
}

void PlotCanvas::RenderFrame() {
    const qreal ratio = devicePixelRatioF();
    const QSize pixels(qRound(width() * ratio), qRound(height() * ratio));
    if (frame_.size() != pixels) {
        frame_ = QPixmap(pixels);
        frame_.setDevicePixelRatio(ratio);
        layoutStale_ = true;
    }
    // Opaque, so the paint copies it without blending.
    frame_.fill(Qt::white);
    if (timeAxis_) {
        // The span as set: the margin right of it does not change what the ticks show.
        const double span = model_.limits.xMax - model_.limits.xMin;
        timeTicker_->setDateTimeFormat(TimeTickFormat(
            span, model_.historyDisplay, CrossesLocalMidnight(model_.limits.xMin, model_.limits.xMax)));
        timeTicker_->setTickCount(std::max(2, PlotArea().width() / kTimeTickPixels));
    }
    // Element labels are thinned by the plot width, which only a layout at
    // this size knows.
    if (layoutStale_) LayOut();
    QCPPainter painter(&frame_);
    xAxisLayer_->setVisible(false);
    draw(&painter);
    xAxisLayer_->setVisible(true);
    // A y range of other width moves the plot area, and the x axis with it.
    if (xAxisDirty_ || axisRect()->rect() != xAxisArea_ || xAxisPicture_.size() != frame_.size()) RenderXAxis();
    // Blended only where the axis lies: its ticks reach into the plot area,
    // its labels and title fill the rest below.
    const int top = std::max(0, xAxisArea_.bottom() - 1 - std::max(xAxis->tickLengthIn(), xAxis->subTickLengthIn()));
    const QRect band(0, top, width(), height() - top);
    painter.setClipping(false);  // the frame's drawing leaves its last clip set
    painter.drawPixmap(band.topLeft(), xAxisPicture_,
                       QRectF(QPointF(band.topLeft()) * ratio, QSizeF(band.size()) * ratio));
    DrawLegend(painter);
    frameDirty_ = false;
    ++frameRenders_;
}

void PlotCanvas::RenderXAxis() {
    xAxisPicture_ = QPixmap(frame_.size());
    xAxisPicture_.setDevicePixelRatio(frame_.devicePixelRatio());
    xAxisPicture_.fill(Qt::transparent);
    // The layers of the axis's parents stay: a layerable is drawn only
    // while its parents are visible.
    std::vector<QCPLayer*> kept{xAxisLayer_};
    for (QCPLayerable* parent = xAxis->parentLayerable(); parent; parent = parent->parentLayerable())
        kept.push_back(parent->layer());
    std::vector<QCPLayer*> hidden;
    for (int i = 0; i < layerCount(); ++i)
        if (QCPLayer* other = layer(i); std::find(kept.begin(), kept.end(), other) == kept.end() && other->visible()) {
            other->setVisible(false);
            hidden.push_back(other);
        }
    {
        QCPPainter painter(&xAxisPicture_);
        draw(&painter);
    }
    for (QCPLayer* other : hidden) other->setVisible(true);
    xAxisArea_ = axisRect()->rect();
    xAxisDirty_ = false;
    ++xAxisRenders_;
}

void PlotCanvas::paintEvent(QPaintEvent*) {
    if (frameDirty_ || layoutStale_) RenderFrame();
    QPainter painter(this);
    painter.drawPixmap(0, 0, frame_);
    const QRect area = PlotArea();
    painter.setClipRect(area);
    DrawTraces(painter, area);
    DrawMarks(painter, area);
    DrawCursor(painter, area);
    DrawNotice(painter);
    painter.setClipping(false);
    DrawTexts(painter);
    DrawRubberBand(painter);
}

PixelMapping PlotCanvas::Mapping(const Trace& trace, const QRect& area) const {
    PixelMapping m;
    const QCPRange x = xAxis->range();
    m.xLower = x.lower;
    m.xScale = area.width() / x.size();
    m.xLeft = area.left();
    const QCPRange y = trace.ownRange && model_.axisMode != kAxisModeCommonScale
                           ? Normalised(trace.ownMin, trace.ownMax)
                           : yAxis->range();
    m.yLower = y.lower;
    m.yScale = -area.height() / y.size();
    m.yBottom = area.bottom();
    return m;
}

void PlotCanvas::DrawTraces(QPainter& painter, const QRect& area) {
    // Reference traces lie beneath the data, thresholds above it.
    for (int32_t style : {kTraceStyleReference, kTraceStyleNormal, kTraceStyleThreshold})
        for (const auto& [handle, trace] : model_.traces) {
            const bool other = trace.style != kTraceStyleReference && trace.style != kTraceStyleThreshold;
            if (trace.visible && (trace.style == style || (style == kTraceStyleNormal && other)))
                DrawTrace(painter, trace, area);
        }
}

void PlotCanvas::DrawTrace(QPainter& painter, const Trace& trace, const QRect& area) {
    TracePoints points;
    points.values = trace.values;
    points.xs = trace.xs;
    if (trace.relative) points.reference = model_.reference;
    points.ascending = trace.ascending;
    const ShapeKind kind = BuildShape(points, Mapping(trace, area), area.left(), area.right(), shape_);
    if (shape_.empty()) return;
    QPen pen(ToQColor(trace.colour));
    pen.setWidth(std::max<int>(1, trace.lineWidth));
    pen.setCosmetic(true);
    if (trace.style == kTraceStyleThreshold) pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    const int count = static_cast<int>(std::min<size_t>(shape_.size(), INT32_MAX));
    if (kind == ShapeKind::LinePairs) {
        painter.drawLines(shape_.data(), count / 2);
        return;
    }
    if (count == 1)
        painter.drawPoint(shape_.front());
    else
        painter.drawPolyline(shape_.data(), count);
    // Symbols only where the points stand apart; in a dense trace they
    // would merge into a band.
    if (trace.symbol == kSymbolNone || shape_.size() * 3 > static_cast<size_t>(area.width())) return;
    painter.setPen(QPen(ToQColor(trace.colour), 1));
    for (const QPointF& p : shape_) {
        if (trace.symbol == kSymbolDot) {
            painter.fillRect(QRectF(p.x() - 1.5, p.y() - 1.5, 3, 3), ToQColor(trace.colour));
        } else {
            painter.drawLine(p + QPointF(-3, -3), p + QPointF(3, 3));
            painter.drawLine(p + QPointF(-3, 3), p + QPointF(3, -3));
        }
    }
}

void PlotCanvas::DrawMarks(QPainter& painter, const QRect& area) {
    for (const auto& [handle, mark] : model_.marks) {
        const double px = xAxis->coordToPixel(mark.x);
        if (!(px >= area.left() && px < area.right() + 1)) continue;  // also NaN
        const QColor colour = ToQColor(mark.colour);
        painter.setPen(QPen(colour, 1, Qt::DotLine));
        painter.drawLine(QPointF(px, area.top()), QPointF(px, area.bottom()));
        const QPointF arrow[3] = {{px - 5, double(area.top())}, {px + 5, double(area.top())}, {px, area.top() + 8.0}};
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawPolygon(arrow, 3);
        painter.setBrush(Qt::NoBrush);
    }
}

void PlotCanvas::DrawTexts(QPainter& painter) {
    if (model_.texts.empty()) return;
    const QFontMetrics metrics(font());
    painter.setClipRect(TextBand());
    for (const auto& [handle, box] : TextBoxes()) {
        const PlotText& text = *model_.texts.Find(handle);
        painter.setPen(ToQColor(text.colour));
        painter.drawText(box.topLeft() + QPointF(1, metrics.ascent()), QString::fromStdString(text.text));
    }
    painter.setClipping(false);
}

void PlotCanvas::DrawNotice(QPainter& painter) {
    const QRectF box = NoticeBox();
    if (box.isEmpty()) return;
    // Opaque: what is missing must be read at once, whatever lies beneath.
    const QColor alarm(0xC0, 0x00, 0x00);
    painter.fillRect(box, Qt::white);
    painter.setPen(QPen(alarm, 1));
    painter.drawRect(box);
    const QFontMetrics metrics(font());
    const int inner = static_cast<int>(box.width()) - 16;
    double y = box.top() + 4 + metrics.ascent();
    for (const QString& line : QString::fromStdString(model_.notice).split('\n')) {
        painter.drawText(QPointF(box.left() + 8, y), metrics.elidedText(line, Qt::ElideRight, inner));
        y += metrics.height();
    }
}

void PlotCanvas::DrawCursor(QPainter& painter, const QRect& area) {
    if (!model_.cursorVisible) return;
    const double px = xAxis->coordToPixel(model_.cursorX);
    if (!(px >= area.left() && px < area.right() + 1)) return;
    painter.setPen(QPen(kCursorColour, 1));
    painter.drawLine(QPointF(px, area.top()), QPointF(px, area.bottom()));
    const QFontMetrics metrics(font());
    // A text box beside the line: on its right, or on its left where the
    // right has no room.
    auto box = [&](const std::string& text, int y, const QColor& fill) {
        if (text.empty()) return;
        const QString shown = QString::fromStdString(text);
        const QSize size(metrics.horizontalAdvance(shown) + 8, metrics.height() + 4);
        double x = px + 6;
        if (x + size.width() > area.right()) x = px - 6 - size.width();
        const QRectF rect(x, y, size.width(), size.height());
        painter.fillRect(rect, fill);
        painter.setPen(kCursorColour);
        painter.drawRect(rect);
        painter.setPen(Qt::black);
        painter.drawText(rect, Qt::AlignCenter, shown);
    };
    box(model_.cursorCaption, area.top() + 12, QColor(255, 255, 255, 230));
    box(model_.hoverLabel, area.bottom() - metrics.height() - 10, QColor(255, 255, 210, 240));
}

void PlotCanvas::DrawRubberBand(QPainter& painter) {
    if (!dragging_) return;
    painter.setPen(QPen(Qt::black, 1, Qt::DashLine));
    painter.setBrush(QColor(80, 120, 255, 40));
    painter.drawRect(QRect(pressAt_, dragTo_).normalized());
    painter.setBrush(Qt::NoBrush);
}

void PlotCanvas::mousePressEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        emit OptionsRequested(event->globalPosition().toPoint());
        return;
    }
    if (event->button() != Qt::LeftButton || !PlotArea().contains(at)) return;
    pressing_ = true;
    dragging_ = false;
    pressAt_ = dragTo_ = at;
}

void PlotCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (pressing_) {
        const QPoint moved = at - pressAt_;
        if (!dragging_ && (std::abs(moved.x()) >= kDragPixels || std::abs(moved.y()) >= kDragPixels))
            dragging_ = true;
        if (dragging_) {
            const QRect area = PlotArea();
            dragTo_ = QPoint(std::clamp(at.x(), area.left(), area.right()),
                             std::clamp(at.y(), area.top(), area.bottom()));
            update();
            return;
        }
    }
    if (!PlotArea().contains(at)) return;
    const QPointF c = ToAxis(at);
    emit MouseMovedTo(c.x(), c.y());
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressing_) return;
    pressing_ = false;
    if (!dragging_) {
        const QPointF c = ToAxis(event->position());
        emit Clicked(c.x(), c.y());
        return;
    }
    dragging_ = false;
    update();
    const QPoint moved = dragTo_ - pressAt_;
    // Dragging backwards (right to left) undoes the zoom.
    if (moved.x() <= -kDragPixels) {
        emit UnzoomRequested();
        return;
    }
    const QPointF a = ToAxis(pressAt_), b = ToAxis(dragTo_);
    // A sweep along one axis zooms that axis only; the other keeps its
    // limits exactly as set (not as shown, which may carry a margin).
    const bool zoomX = moved.x() >= kDragPixels, zoomY = std::abs(moved.y()) >= kDragPixels;
    const AxisLimits& l = model_.limits;
    emit ZoomDragged(zoomX ? a.x() : std::min(l.xMin, l.xMax), zoomX ? b.x() : std::max(l.xMin, l.xMax),
                     zoomY ? a.y() : std::min(l.yMin, l.yMax), zoomY ? b.y() : std::max(l.yMin, l.yMax));
}

void PlotCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit UnzoomRequested();
}

void PlotCanvas::wheelEvent(QWheelEvent* event) { event->ignore(); }

void PlotCanvas::leaveEvent(QEvent*) { emit MouseLeft(); }

}  // namespace ui
