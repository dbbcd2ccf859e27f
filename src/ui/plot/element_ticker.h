// Ticks of an element axis ("Device Name/Location"): one tick per labelled
// element, labels thinned to what the axis width can hold.
#pragma once

#include <QString>
#include <QVector>
#include <qcustomplot.h>

namespace ui {

class ElementTicker : public QCPAxisTicker {
public:
    // `axis` is asked for its pixel width at each layout.
    explicit ElementTicker(const QCPAxis* axis) : axis_(axis) {}

    void SetLabels(QVector<QString> labels) { labels_ = std::move(labels); }
    const QVector<QString>& Labels() const { return labels_; }
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
    double pitch_ = 14.0;
};

}  // namespace ui
