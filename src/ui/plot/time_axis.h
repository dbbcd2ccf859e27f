// Time x-axes: Unix seconds shown as readable local dates and times.
#pragma once

#include <QString>
#include <string>

namespace ui {

// The tick label format for a time axis spanning `spanSeconds`: seconds only
// where they tell something, the date where the span or the history display
// asks for it (a second line, so labels stay narrow).
// A window that crosses local midnight gets the day too, so that the ticks
// either side of midnight cannot be taken for the same day.
QString TimeTickFormat(double spanSeconds, bool historyDisplay, bool crossesMidnight = false);

// Whether [from, to] (Unix seconds) holds a local midnight: the two ends
// fall on different local days.
bool CrossesLocalMidnight(double from, double to);

// The text of position x (Unix seconds, rounded to the nearest second) in the
// middleware's 24-character form, "Sun Nov 22 18:33:15 2026"; "" where x is
// no time (negative, beyond 32 bits, not a number). Captions show its
// characters 5 to 19.
std::string TimeText(double x);

}  // namespace ui
