// A whole recorded spectrum (one value per channel) as it was at one time.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "history/questions.h"

namespace history {

// Reads the spectrum of `property` at `name` (mapped by
// vire::HistoryServerName) recorded at `time` into `values`, whose size is the
// number of channels asked for; a single element reads nothing. `reported` is
// the time stamp the server gave the spectrum. A failed read asks
// Retry/Cancel; each retry waits 1 s longer. Returns the completion code (0
// also for a single element); on failure `values` is left as it was.
int16_t MYGetArchivedTraceData(const std::string& name, const std::string& property, int32_t time,
                               std::span<float> values, int32_t& reported, Questions& questions);

}  // namespace history
