// One read or write through a transport as the viewer makes it, for the tests
// of the simulation and of the network alike.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace sim_test {

struct Answer {
    vire::Status status = -1;
    int32_t count = 0;
    int32_t stamp = 0;
    std::vector<std::byte> bytes;  // the delivered elements only
    std::vector<float> values;     // SINGLEs, or the values of FLTINT pairs
    std::vector<int32_t> times;    // the times of FLTINT pairs
    bool operator==(const Answer&) const = default;
};

// `count` elements of `format` into a buffer with room for `room` of them
// (default: the count), with LONG input: a history read's start, stop and mode.
inline Answer Read(vire::Transport& transport, const std::string& device, const std::string& property, int32_t count,
                   int16_t format = vire::kFormatSingle, const std::vector<int32_t>& input = {}, int32_t room = -1,
                   int32_t timeoutMs = 1000) {
    const int32_t width = std::max(vire::FormatSize(format), 1);
    const size_t elements = static_cast<size_t>(std::max(room < 0 ? count : room, 0));
    std::vector<std::byte> buffer(elements * static_cast<size_t>(width));
    std::vector<std::byte> in(input.size() * 4);
    for (size_t i = 0; i < input.size(); ++i) vire::StoreInt32(in, 4 * i, input[i]);
    vire::DataObject out{count, format, "", buffer};
    const vire::Status status = transport.Call(
        device, property, out, vire::DataObject{static_cast<int32_t>(input.size()), vire::kFormatLong, "", in},
        vire::kAccessRead, timeoutMs);
    Answer a{status, out.count, out.stamp, {}, {}, {}};
    buffer.resize(static_cast<size_t>(std::max(out.count, 0)) * static_cast<size_t>(width));
    const int16_t canonical = vire::CanonicalFormat(format);
    for (int32_t i = 0; (canonical == vire::kFormatSingle || canonical == vire::kFormatFltInt) && i < out.count; ++i) {
        a.values.push_back(vire::LoadFloat(buffer, static_cast<size_t>(i * width)));
        if (width == 8) a.times.push_back(vire::LoadInt32(buffer, static_cast<size_t>(i * width + 4)));
    }
    a.bytes = std::move(buffer);
    return a;
}

// One value written as the caller's user.
inline vire::Status Write(vire::Transport& transport, const std::string& device, const std::string& property,
                          float value, int16_t format = vire::kFormatSingle) {
    std::vector<std::byte> in(4);
    vire::StoreFloat(in, 0, value);
    vire::DataObject out{};
    return transport.Call(device, property, out, vire::DataObject{1, format, "", in}, vire::kAccessWrite, 3000);
}

}  // namespace sim_test
