// How the entries of one spectrum lie in the catalogue: a head entry and the
// entries appended to it, drawn side by side as one trace.
#pragma once

#include <cstdint>

#include "catalogue/catalogue.h"

namespace viewer {

// At most this many entries make one spectrum.
inline constexpr int16_t kMaxSpectrumParts = 100;

// The number of entries of the spectrum starting at `head`: the head and the
// appended entries after it, stopping before the next head entry, at 100
// entries, or when the next index would leave the catalogue.
int16_t SpectrumPartCount(const catalogue::Catalogue& cat, int16_t head);

struct ChannelElement {
    int16_t channel = 0;  // catalogue entry
    int16_t element = 0;  // element within that entry
};

// The entry and element of a point of the combined spectrum that starts at
// `head` (points counted over the parts in order). A row beyond the last
// part maps into the last part, where the caller's bounds checks catch it.
ChannelElement MapRowToChannel(const catalogue::Catalogue& cat, int16_t head, int16_t row);

}  // namespace viewer
