#include "viewer/trend_window.h"

#include <algorithm>

namespace viewer {

TrendWindow PlaceTrendWindow(int32_t anchor, int32_t now, int32_t span, int32_t stepSeconds, int32_t steps) {
    const int64_t earliestStop = static_cast<int64_t>(now) - int64_t{kArchiveDays} * kSecondsPerDay + span;
    int64_t stop = static_cast<int64_t>(anchor) + static_cast<int64_t>(steps) * stepSeconds;
    stop = std::clamp<int64_t>(stop, std::min<int64_t>(earliestStop, now), now);
    TrendWindow window;
    window.stop = static_cast<int32_t>(stop);
    window.start = static_cast<int32_t>(stop - span);
    window.followsPresent = stop >= now;
    return window;
}

std::string SpanText(int32_t spanSeconds) {
    if (spanSeconds % 3600 == 0) return std::to_string(spanSeconds / 3600) + " h";
    if (spanSeconds % 60 == 0) return std::to_string(spanSeconds / 60) + " min";
    return std::to_string(spanSeconds) + " s";
}

}  // namespace viewer
