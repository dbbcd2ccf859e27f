// Where the trend plots' time window lies: at the present, sliding with the
// live values, or on a stretch of the past chosen with the calendar (a day)
// and the time scale (steps of the window's span, or of whole days).
//
// Qt-free; the window turns a calendar day into the anchor (that day at the
// present time of day, so that "yesterday" is exactly one day back).
#pragma once

#include <cstdint>
#include <string>

namespace viewer {

// How far back the calendar reaches: the archive's two years.
inline constexpr int kArchiveDays = 730;
inline constexpr int32_t kSecondsPerDay = 86400;

struct TrendWindow {
    int32_t start = 0;
    int32_t stop = 0;
    bool followsPresent = true;  // stop is the present and moves with it
};

// The window of `span` seconds ending `steps` steps of `stepSeconds` after
// `anchor` (steps are negative to go back). It never ends after `now`, and
// never starts before the archive's reach; a window ending at `now`
// follows the present.
TrendWindow PlaceTrendWindow(int32_t anchor, int32_t now, int32_t span, int32_t stepSeconds, int32_t steps);

// The span in words for the time-scale box: "10 min", "1 h", "24 h".
std::string SpanText(int32_t spanSeconds);

}  // namespace viewer
