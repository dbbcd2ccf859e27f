// Ticks of an element axis ("Device Name/Location"): one tick per labelled
// element, labels thinned to what the axis width can hold.
#pragma once

#include <QString>
#include <QVector>
#include <vector>
#include <qcustomplot.h>

namespace ui {

class ElementTicker : public QCPAxisTicker {
public:
    // `axis` is asked for its pixel width at each layout.
    explicit ElementTicker(const QCPAxis* axis) : axis_(axis) {}

    // `anchors` (ascending) are labelled before the others.
    void SetLabels(QVector<QString> labels, std::vector<int64_t> anchors = {}) {
        labels_ = std::move(labels);
        anchors_ = std::move(anchors);
    }
    const QVector<QString>& Labels() const { return labels_; }
    const std::vector<int64_t>& Anchors() const { return anchors_; }
    // Pixels one label needs along the axis (its text height when the labels
    // stand upright).
    void SetPitch(double pixels) { pitch_ = pixels; }
    // Labels longer than this are cut with an ellipsis; the full text is
    // shown under the cursor.
    static constexpr int kMaxLabelLength = 18;

    void generate(const QCPRange& range, const QLocale& locale, QChar formatChar, int precision,
                  QVector<double>& ticks, QVector<double>* subTicks,
                  QVector<QString>* tickLabels) override;

private:
    const QCPAxis* axis_;
    QVector<QString> labels_;
    std::vector<int64_t> anchors_;
    double pitch_ = 14.0;
};

}  // namespace ui
