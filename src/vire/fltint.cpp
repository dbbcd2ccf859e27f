#include "vire/fltint.h"

#include <algorithm>

#include "vire/wire.h"

namespace vire {

std::vector<FltInt> DecodeFltInt(std::span<const std::byte> bytes, int32_t count) {
    std::vector<FltInt> records;
    if (count <= 0) return records;
    const size_t n = std::min(static_cast<size_t>(count), bytes.size() / kFltIntSize);
    records.reserve(n);
    for (size_t i = 0; i < n; ++i)
        records.push_back(FltInt{LoadFloat(bytes, i * kFltIntSize), LoadInt32(bytes, i * kFltIntSize + 4)});
    return records;
}

void EncodeFltInt(std::span<std::byte> bytes, size_t index, FltInt record) {
    if (index >= bytes.size() / kFltIntSize) return;
    StoreFloat(bytes, index * kFltIntSize, record.value);
    StoreInt32(bytes, index * kFltIntSize + 4, record.time);
}

}  // namespace vire
