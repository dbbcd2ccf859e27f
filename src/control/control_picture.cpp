#include "control/control_picture.h"

#include <QLinearGradient>
#include <QPainter>
#include <cmath>

namespace control {

QPixmap ControlPicture() {
    constexpr int kWidth = 160, kHeight = 100, kBars = 32;
    QPixmap picture(kWidth, kHeight);
    QPainter painter(&picture);
    QLinearGradient ground(0, 0, 0, kHeight);
    ground.setColorAt(0, QColor(18, 32, 56));
    ground.setColorAt(1, QColor(6, 12, 24));
    painter.fillRect(picture.rect(), ground);
    const double barWidth = static_cast<double>(kWidth) / kBars;
    for (int i = 0; i < kBars; ++i) {
        // A fixed, orbit-like pattern: the same picture on every host.
        const double level = 0.55 + 0.3 * std::sin(i * 0.45) + 0.12 * std::sin(i * 1.7);
        const int height = static_cast<int>(level * (kHeight - 10));
        const QRectF bar(i * barWidth + 1, kHeight - height, barWidth - 2, height);
        painter.fillRect(bar, QColor::fromHsv(200 - i * 4, 160, 240));
    }
    return picture;
}

}  // namespace control
