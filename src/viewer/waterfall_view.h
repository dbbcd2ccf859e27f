// The waterfall: a channel's recorded spectra over a stretch of time as one
// picture, elements across (labelled as on the spectrum) and time down, a
// colour for each value. A click on a row asks to replay from its time.
#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <string>
#include <vector>

#include "viewer/waterfall_rows.h"

namespace viewer {

struct WaterfallPicture {
    std::vector<int32_t> times;       // one per row, oldest first
    int32_t columns = 0;
    std::vector<float> values;        // row after row, `columns` each
    std::vector<std::string> labels;  // one per column
    std::vector<int32_t> anchors;     // columns whose labels come first (each part's first element)
    std::string title;
};

class WaterfallView : public QWidget {
    Q_OBJECT

public:
    explicit WaterfallView(QWidget* parent = nullptr);

    void SetPicture(WaterfallPicture picture);
    const WaterfallPicture& Picture() const { return picture_; }
    const QImage& Image() const { return image_; }
    ValueRange Range() const { return range_; }
    // Where the picture is drawn; the row under a point of it (-1 outside).
    QRect PictureArea() const;
    int32_t RowAt(const QPoint& point) const;

signals:
    void RowClicked(int32_t time);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    WaterfallPicture picture_;
    QImage image_;
    ValueRange range_{0.0f, 1.0f};
};

}  // namespace viewer
