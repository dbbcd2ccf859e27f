#include "viewer/channel_map.h"

namespace viewer {

int16_t SpectrumPartCount(const catalogue::Catalogue& cat, int16_t head) {
    int16_t count = 0;
    for (int16_t k = 0; k < kMaxSpectrumParts; ++k) {
        const int e = head + k;
        ++count;
        if (e + 1 >= catalogue::kMaxSpectrum || !cat.SpectrumList[e + 1].Append) break;
    }
    return count;
}

ChannelElement MapRowToChannel(const catalogue::Catalogue& cat, int16_t head, int16_t row) {
    const int16_t parts = SpectrumPartCount(cat, head);
    int32_t remaining = row;
    for (int16_t k = 0; k < parts; ++k) {
        const auto channel = static_cast<int16_t>(head + k);
        const int32_t size = cat.SpectrumList[channel].Size;
        if (remaining < size || k == parts - 1) return {channel, static_cast<int16_t>(remaining)};
        remaining -= size;
    }
    return {head, row};
}

}  // namespace viewer
