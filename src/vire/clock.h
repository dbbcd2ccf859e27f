// The one clock that says "now" for the whole program.
//
// Everything that stamps or compares times asks this clock, never the system
// directly, so that tests can set the time and move it forward without sleeping.
#pragma once

#include <cstdint>

namespace vire {

// Milliseconds since 1970-01-01 00:00:00 UTC.
int64_t NowMilliseconds();

// Freezes "now" at the given time; from then on only AdvanceTestClock moves it.
void SetTestClock(int64_t millisecondsSince1970);
// Moves a frozen clock forward (or back, for a negative step).
void AdvanceTestClock(int64_t milliseconds);
// Back to the system's clock.
void UseSystemClock();
bool TestClockActive();

}  // namespace vire
