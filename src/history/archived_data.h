// One time series of a scalar from a history server or an archiver.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace history {

inline constexpr int16_t kMaxArchivedPoints = 999;

// Reads the series of `property` at `name` (a machine name or a full history
// address, mapped by vire::HistoryServerName) over [start, stop]. `mode` is
// sent only when positive. `count` asks for that many points when it lies in
// 2..999, else for 999. Completion code 45 is tried again, with a longer
// time-out, twice.
// On failure `status` holds the completion code and values, times and count
// stay as they were. On success with points, values and times hold them and
// count is their number. On success without a point both arrays hold two
// zero entries and count keeps what the caller passed: callers pass 0 and
// read that 0 back as "nothing recorded".
// Returns the status.
int32_t MYGetArchivedDataEx(const std::string& name, const std::string& property, int16_t mode, int32_t start,
                            int32_t stop, std::vector<float>& values, std::vector<int32_t>& times, int16_t& count,
                            int16_t& status);

}  // namespace history
