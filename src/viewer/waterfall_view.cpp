#include "viewer/waterfall_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "vire/utils.h"

namespace viewer {

namespace {

constexpr int kLeftMargin = 124;   // row times
constexpr int kBottomMargin = 28;  // element labels
constexpr int kTopMargin = 24;     // title
constexpr int kRightMargin = 12;

std::string RowTimeText(int32_t time) { return vire::CTIME(time).substr(4, 15); }

}  // namespace

WaterfallView::WaterfallView(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("WaterfallView");
    setAccessibleName(tr("Waterfall"));
    setMouseTracking(true);
    setMinimumSize(480, 320);
    resize(960, 560);
}

void WaterfallView::SetPicture(WaterfallPicture picture) {
    picture_ = std::move(picture);
    const auto rows = static_cast<int>(picture_.times.size());
    const int columns = std::max(picture_.columns, 1);
    range_ = WaterfallRange(picture_.values);
    image_ = QImage(columns, std::max(rows, 1), QImage::Format_RGB32);
    image_.fill(Qt::gray);
    for (int r = 0; r < rows; ++r) {
        auto* line = reinterpret_cast<uint32_t*>(image_.scanLine(r));
        const float* values = picture_.values.data() + static_cast<size_t>(r) * picture_.columns;
        for (int c = 0; c < picture_.columns; ++c) line[c] = WaterfallColour(values[c], range_);
    }
    setWindowTitle(QString::fromStdString(picture_.title));
    update();
}

QRect WaterfallView::PictureArea() const {
    return QRect(kLeftMargin, kTopMargin, std::max(width() - kLeftMargin - kRightMargin, 1),
                 std::max(height() - kTopMargin - kBottomMargin, 1));
}

int32_t WaterfallView::RowAt(const QPoint& point) const {
    const QRect area = PictureArea();
    if (picture_.times.empty() || !area.contains(point)) return -1;
    const auto rows = static_cast<int64_t>(picture_.times.size());
    return static_cast<int32_t>(std::min<int64_t>((point.y() - area.top()) * rows / area.height(), rows - 1));
}

void WaterfallView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    const QRect area = PictureArea();
    painter.drawImage(area, image_);
    painter.setPen(palette().windowText().color());
    painter.drawText(QRect(kLeftMargin, 0, area.width(), kTopMargin), Qt::AlignVCenter,
                     QString("%1   (%2 to %3)").arg(QString::fromStdString(picture_.title)).arg(range_.lo).arg(range_.hi));
    const QFontMetrics metrics = painter.fontMetrics();
    // Row times down the left, a line's height apart.
    const auto rows = static_cast<int>(picture_.times.size());
    const int rowStep = std::max(1, rows * (metrics.height() * 2) / std::max(area.height(), 1));
    for (int r = 0; r < rows; r += rowStep) {
        const int y = area.top() + r * area.height() / rows;
        painter.drawText(QRect(2, y, kLeftMargin - 6, metrics.height()), Qt::AlignRight,
                         QString::fromStdString(RowTimeText(picture_.times[static_cast<size_t>(r)])));
    }
    // Element labels along the bottom: each part's first, then as many
    // others as have room beside them.
    const int columns = std::max(picture_.columns, 1);
    std::vector<std::pair<int, int>> taken;  // x ranges already labelled
    const auto drawLabel = [&](int32_t column) {
        if (column < 0 || column >= static_cast<int32_t>(picture_.labels.size())) return;
        const QString text = QString::fromStdString(picture_.labels[static_cast<size_t>(column)]);
        const int x = area.left() + static_cast<int>((column + 0.5) * area.width() / columns);
        const int end = x + metrics.horizontalAdvance(text) + 12;
        for (const auto& [from, to] : taken)
            if (x < to && end > from) return;
        taken.emplace_back(x, end);
        painter.drawLine(x, area.bottom(), x, area.bottom() + 4);
        painter.drawText(x + 2, area.bottom() + 4 + metrics.ascent(), text);
    };
    for (int32_t anchor : picture_.anchors) drawLabel(anchor);
    const int perLabel = std::max(1, static_cast<int>(int64_t{columns} * 60 / std::max(area.width(), 1)));
    for (int32_t column = 0; column < columns; column += perLabel) drawLabel(column);
}

void WaterfallView::mousePressEvent(QMouseEvent* event) {
    const int32_t row = RowAt(event->position().toPoint());
    if (row >= 0 && event->button() == Qt::LeftButton) emit RowClicked(picture_.times[static_cast<size_t>(row)]);
}

void WaterfallView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const int32_t row = RowAt(at);
    if (row < 0 || picture_.columns <= 0) return;
    const QRect area = PictureArea();
    const auto column = std::clamp<int64_t>(int64_t{at.x() - area.left()} * picture_.columns / area.width(), 0,
                                            picture_.columns - 1);
    const float value = picture_.values[static_cast<size_t>(row) * picture_.columns + static_cast<size_t>(column)];
    const std::string label =
        static_cast<size_t>(column) < picture_.labels.size() ? picture_.labels[static_cast<size_t>(column)] : "";
    QToolTip::showText(event->globalPosition().toPoint(),
                       QString("%1  %2: %3").arg(QString::fromStdString(RowTimeText(picture_.times[static_cast<size_t>(row)])),
                                                QString::fromStdString(label))
                           .arg(value));
}

}  // namespace viewer
