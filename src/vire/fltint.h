// FLTINT records: a 32-bit float value followed by a 32-bit integer time
// stamp (seconds since 1970), 8 bytes each, little-endian. History servers
// and archivers answer time series in this form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vire {

inline constexpr size_t kFltIntSize = 8;

struct FltInt {
    float value;
    int32_t time;
};

// The first `count` records of `bytes`. Never reads past the buffer: a buffer
// shorter than count records gives the whole records it holds; a negative
// count gives none.
std::vector<FltInt> DecodeFltInt(std::span<const std::byte> bytes, int32_t count);

// Writes record `index`; an index whose record does not fit is ignored.
void EncodeFltInt(std::span<std::byte> bytes, size_t index, FltInt record);

}  // namespace vire
