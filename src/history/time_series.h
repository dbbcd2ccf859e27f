// Honest trends: a series that keeps where each value came from and where
// nothing was recorded, so that a plot never draws a line across a time in
// which no value exists.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace history {

enum class ValueSource : uint8_t { Live, LocalHistory, Archive };

// "live", "local history", "archive"
std::string SourceName(ValueSource source);

struct SeriesPoint {
    int32_t time;
    float value;
    ValueSource source;
};

class TimeSeries {
public:
    // Replaces the recorded part (history or archive) with these points, times
    // ascending: unsorted input is sorted, a time given twice keeps its first
    // value, NaN values are dropped, pairs beyond the shorter array ignored.
    // Live points after the last recorded one stay; earlier ones give way to
    // the record.
    void SetRecorded(std::span<const float> values, std::span<const int32_t> times, ValueSource source);
    // Appends a live value. A time not after the last point, or a NaN value,
    // is ignored: it would rewrite the past or look like a gap.
    void AppendLive(int32_t time, float value);
    // Drops points older than `time` (keeps memory bounded for a viewer that
    // runs for weeks).
    void DropBefore(int32_t time);
    const std::vector<SeriesPoint>& Points() const { return points_; }
    // Points within [from, to]. Between two neighbours further apart than
    // `maxGapS` a break is inserted (a NaN value at the gap's middle, with
    // the earlier neighbour's source) so that a plotted line is broken
    // there, never bridged. A limit of 0 or less bridges everything.
    std::vector<SeriesPoint> WithBreaks(int32_t from, int32_t to, int32_t maxGapS) const;
    // The largest gap a trend may bridge: three sampling steps, the step
    // being the coarser of the recorded part's median step and the live
    // interval (one line joins both parts, so neither may break at its own
    // rhythm). 0 when neither step is known.
    int32_t BridgeLimit(int32_t liveIntervalS) const;
    // Index of the first point whose time is not earlier than `time`;
    // Points().size() when none (the cursor is beyond the last point).
    int32_t IndexAt(int32_t time) const;

private:
    std::vector<SeriesPoint> points_;  // times strictly ascending
};

}  // namespace history
