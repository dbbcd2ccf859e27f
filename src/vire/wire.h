// Elements of link buffers as they travel: little-endian, packed, whatever the
// host's own byte order. The caller keeps offset + 4 within the buffer.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vire {

inline void StoreUint32(std::span<std::byte> buffer, size_t offset, uint32_t value) {
    auto field = buffer.subspan(offset, 4);
    for (size_t i = 0; i < 4; ++i) field[i] = static_cast<std::byte>((value >> (8 * i)) & 0xFFu);
}

inline uint32_t LoadUint32(std::span<const std::byte> buffer, size_t offset) {
    auto field = buffer.subspan(offset, 4);
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value |= static_cast<uint32_t>(field[i]) << (8 * i);
    return value;
}

inline void StoreFloat(std::span<std::byte> buffer, size_t offset, float value) {
    StoreUint32(buffer, offset, std::bit_cast<uint32_t>(value));
}
inline float LoadFloat(std::span<const std::byte> buffer, size_t offset) {
    return std::bit_cast<float>(LoadUint32(buffer, offset));
}
inline void StoreInt32(std::span<std::byte> buffer, size_t offset, int32_t value) {
    StoreUint32(buffer, offset, static_cast<uint32_t>(value));
}
inline int32_t LoadInt32(std::span<const std::byte> buffer, size_t offset) {
    return static_cast<int32_t>(LoadUint32(buffer, offset));
}

}  // namespace vire
