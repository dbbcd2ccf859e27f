#include "ui/plot/time_axis.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "vire/utils.h"

namespace ui {

QString TimeTickFormat(double spanSeconds, bool historyDisplay, bool crossesMidnight) {
    constexpr double kHour = 3600.0, kDay = 86400.0;
    const double span = std::abs(spanSeconds);
    if (historyDisplay) return span <= kHour ? "hh:mm:ss\ndd.MM.yyyy" : "hh:mm\ndd.MM.yyyy";
    if (crossesMidnight) return span <= kHour ? "hh:mm:ss\ndd.MM." : "hh:mm\ndd.MM.";
    if (span <= kHour) return "hh:mm:ss";
    if (span <= kDay) return "hh:mm";
    return "hh:mm\ndd.MM.";
}

bool CrossesLocalMidnight(double from, double to) {
    if (!std::isfinite(from) || !std::isfinite(to)) return false;
    const auto day = [](double t) {
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::floor(t)) * 1000).date();
    };
    return day(std::min(from, to)) != day(std::max(from, to));
}

std::string TimeText(double x) {
    if (!std::isfinite(x)) return "";
    const double rounded = std::round(x);
    if (rounded < 0.0 || rounded > static_cast<double>(std::numeric_limits<int32_t>::max())) return "";
    return vire::CTIME(static_cast<int64_t>(rounded));
}

}  // namespace ui
