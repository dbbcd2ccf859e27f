#include "ui/plot/element_ticker.h"

#include "ui/plot/label_thinning.h"

namespace ui {

void ElementTicker::generate(const QCPRange& range, const QLocale&, QChar, int,
                             QVector<double>& ticks, QVector<double>* subTicks,
                             QVector<QString>* tickLabels) {
    ticks.clear();
    if (subTicks) subTicks->clear();
    if (tickLabels) tickLabels->clear();
    const double pixels = axis_ ? axis_->axisRect()->width() : 0.0;
    const int64_t step = LabelStep(range.lower, range.upper, pixels, pitch_);
    for (int64_t element : LabelledElements(range.lower, range.upper, step, labels_.size(), anchors_)) {
        ticks.push_back(static_cast<double>(element));
        if (!tickLabels) continue;
        const QString& label = labels_[static_cast<qsizetype>(element)];
        tickLabels->push_back(label.size() <= kMaxLabelLength
                                  ? label
                                  : label.left(kMaxLabelLength - 1) + QChar(0x2026));
    }
}

}  // namespace ui
