// The drawing surface of a plot: QCustomPlot lays out and draws the frame
// (axes, ticks, labels, grid, caption); the traces, texts, marks and cursor
// are drawn over it at every paint.
//
// The frame is kept as an opaque pixmap and drawn again only when something
// in it changed (limits, labels, size), so a new spectrum costs one copy of
// the frame plus the thinned traces, and a cursor move costs no layout at all.
// Within the frame the x axis is kept as a picture of its own, so that a
// new y range does not draw the element labels again.
#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <memory>
#include <qcustomplot.h>
#include <vector>

#include "ui/plot/column_thinning.h"
#include "ui/plot/plot_model.h"

namespace ui {

class ElementTicker;

class PlotCanvas : public QCustomPlot {
    Q_OBJECT
public:
    explicit PlotCanvas(const PlotModel& model, QWidget* parent = nullptr);
    ~PlotCanvas() override;

    // The frame changed (limits, labels, caption, axis kind): drawn anew at the next paint.
    void InvalidateFrame();
    // Puts the model's limits on the axes: swapped where minimum > maximum,
    // widened where both are equal (an axis needs a span).
    void ApplyLimits();
    // Element labels of the x axis, `anchors` (ascending) labelled first;
    // no labels gives plain numbers.
    void SetElementLabels(QVector<QString> labels, std::vector<int64_t> anchors = {});
    struct LegendEntry {
        QString name;
        QColor colour;
    };
    // The legend row above the plot area; no entries, no row.
    void SetLegend(QVector<LegendEntry> entries);
    // The legend row in widget pixels (empty when there is none).
    QRect LegendArea() const;
    // Date/time ticks on the x axis (Unix seconds) instead of numbers or labels.
    void SetTimeAxis(bool on);
    // Caption above the plot area; empty removes it.
    void SetCaption(const QString& caption);
    QString Caption() const;

    // The plot area in widget pixels (as of the last layout).
    QRect PlotArea() const;
    // The band above the plot area that the texts are drawn in.
    QRect TextBand() const;
    // Where each text is drawn (widget pixels), in the band at its x, later
    // ones moved right past earlier ones they would cover; texts whose x
    // lies outside the x range are left out.
    std::vector<std::pair<int32_t, QRectF>> TextBoxes() const;
    // The notice's box in widget pixels (empty when there is none).
    QRectF NoticeBox() const;
    // Axis coordinates of a widget pixel and back (as of the last layout).
    QPointF ToAxis(QPointF pixel) const;
    QPointF ToPixel(double x, double y) const;
    // Lays out now (normally done at the next paint), e.g. before mapping pixels.
    void LayOut();
    // How often the frame has been drawn: a cursor move or a new spectrum
    // must not redraw it.
    int FrameRenders() const { return frameRenders_; }
    // How often the x axis has been drawn: a y range alone must not redraw it.
    int XAxisRenders() const { return xAxisRenders_; }

signals:
    void ZoomDragged(double x0, double x1, double y0, double y1);
    void UnzoomRequested();
    void MouseMovedTo(double x, double y);
    void MouseLeft();
    void Clicked(double x, double y);
    void OptionsRequested(QPoint globalPosition);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void RenderFrame();
    void RenderXAxis();
    void DrawLegend(QPainter& painter);
    PixelMapping Mapping(const Trace& trace, const QRect& area) const;
    void DrawTraces(QPainter& painter, const QRect& area);
    void DrawTrace(QPainter& painter, const Trace& trace, const QRect& area);
    void DrawMarks(QPainter& painter, const QRect& area);
    void DrawTexts(QPainter& painter);
    void DrawNotice(QPainter& painter);
    void DrawCursor(QPainter& painter, const QRect& area);
    void DrawRubberBand(QPainter& painter);

    const PlotModel& model_;
    QPixmap frame_;
    bool frameDirty_ = true;
    bool layoutStale_ = true;
    int frameRenders_ = 0;
    QCPLayer* xAxisLayer_ = nullptr;
    QPixmap xAxisPicture_;      // the x axis alone, on a clear ground
    QRect xAxisArea_;           // the plot area it was drawn for
    bool xAxisDirty_ = true;
    int xAxisRenders_ = 0;
    QSharedPointer<QCPAxisTicker> numberTicker_;
    QSharedPointer<ElementTicker> elementTicker_;
    QSharedPointer<QCPAxisTickerDateTime> timeTicker_;
    bool timeAxis_ = false;
    QCPTextElement* caption_ = nullptr;
    QCPLayoutElement* legendRow_ = nullptr;  // room for the legend, drawn into the frame
    QCPLayoutElement* textRow_ = nullptr;    // the texts' band, right above the plot area
    QVector<LegendEntry> legend_;
    std::vector<QPointF> shape_;  // reused between paints

    bool pressing_ = false;
    bool dragging_ = false;
    QPoint pressAt_;
    QPoint dragTo_;
};

}  // namespace ui
