#include "history/time_series.h"

#include <algorithm>
#include <cmath>

namespace history {
namespace {
constexpr int32_t kStepsBridged = 3;

bool Earlier(const SeriesPoint& a, const SeriesPoint& b) { return a.time < b.time; }
}  // namespace

std::string SourceName(ValueSource source) {
    switch (source) {
    case ValueSource::Live: return "live";
    case ValueSource::LocalHistory: return "local history";
    case ValueSource::Archive: return "archive";
    }
    return "";
}

void TimeSeries::SetRecorded(std::span<const float> values, std::span<const int32_t> times, ValueSource source) {
    std::vector<SeriesPoint> recorded;
    const size_t n = std::min(values.size(), times.size());
    recorded.reserve(n);
    for (size_t i = 0; i < n; ++i)
        if (!std::isnan(values[i])) recorded.push_back(SeriesPoint{times[i], values[i], source});
    std::stable_sort(recorded.begin(), recorded.end(), Earlier);
    recorded.erase(std::unique(recorded.begin(), recorded.end(),
                               [](const SeriesPoint& a, const SeriesPoint& b) { return a.time == b.time; }),
                   recorded.end());
    if (!recorded.empty()) {
        const int32_t end = recorded.back().time;
        for (const SeriesPoint& p : points_)
            if (p.source == ValueSource::Live && p.time > end) recorded.push_back(p);
    } else {
        for (const SeriesPoint& p : points_)
            if (p.source == ValueSource::Live) recorded.push_back(p);
    }
    points_ = std::move(recorded);
}

void TimeSeries::AppendLive(int32_t time, float value) {
    if (std::isnan(value) || (!points_.empty() && time <= points_.back().time)) return;
    points_.push_back(SeriesPoint{time, value, ValueSource::Live});
}

void TimeSeries::DropBefore(int32_t time) { points_.erase(points_.begin(), points_.begin() + IndexAt(time)); }

std::vector<SeriesPoint> TimeSeries::WithBreaks(int32_t from, int32_t to, int32_t maxGapS) const {
    std::vector<SeriesPoint> shown;
    const auto first = points_.begin() + IndexAt(from);
    for (auto it = first; it != points_.end() && it->time <= to; ++it) {
        if (it != first && maxGapS > 0) {
            const SeriesPoint& before = *(it - 1);
            const int64_t gap = static_cast<int64_t>(it->time) - before.time;
            if (gap > maxGapS)
                shown.push_back(SeriesPoint{static_cast<int32_t>(before.time + gap / 2), std::nanf(""), before.source});
        }
        shown.push_back(*it);
    }
    return shown;
}

int32_t TimeSeries::BridgeLimit(int32_t liveIntervalS) const {
    std::vector<int64_t> steps;
    for (size_t i = 1; i < points_.size(); ++i)
        if (points_[i].source != ValueSource::Live && points_[i - 1].source != ValueSource::Live)
            steps.push_back(static_cast<int64_t>(points_[i].time) - points_[i - 1].time);
    int64_t recordedStep = 0;
    if (!steps.empty()) {
        const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
        std::nth_element(steps.begin(), middle, steps.end());
        recordedStep = *middle;
    }
    const int64_t step = std::max<int64_t>(recordedStep, std::max(liveIntervalS, 0));
    return static_cast<int32_t>(std::min<int64_t>(kStepsBridged * step, INT32_MAX));
}

int32_t TimeSeries::IndexAt(int32_t time) const {
    const auto it = std::lower_bound(points_.begin(), points_.end(), time,
                                     [](const SeriesPoint& p, int32_t t) { return p.time < t; });
    return static_cast<int32_t>(it - points_.begin());
}

}  // namespace history
