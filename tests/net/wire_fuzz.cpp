// Fuzz target for the wire decoding: bytes off the network parsed as a reply
// and copied into a caller's buffer. Nothing may be written outside the
// caller's buffer, no input may crash, throw or reach undefined behaviour.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "net/wire_codec.h"
#include "vire/formats.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 3) return 0;
    const int16_t format = static_cast<int16_t>(500 + data[0] % 60);
    const int32_t asked = static_cast<int32_t>(data[1]) - 16;
    const size_t bufferBytes = data[2];
    data += 3;
    size -= 3;
    net::LinkReply reply;
    if (!reply.ParseFromArray(data, static_cast<int>(size))) return 0;
    // The caller's buffer with a guard after it that must stay untouched.
    std::vector<std::byte> storage(bufferBytes + 16, std::byte{0xA5});
    vire::DataObject out{asked, format, "", std::span<std::byte>(storage).first(bufferBytes)};
    net::DecodeReply(reply, out, asked);
    const int32_t width = vire::FormatSize(format);
    if (out.count < 0 || (out.count > 0 && (width <= 0 || out.count > asked ||
                                            static_cast<size_t>(out.count) * static_cast<size_t>(width) > bufferBytes)))
        std::abort();
    for (size_t i = bufferBytes; i < storage.size(); ++i)
        if (storage[i] != std::byte{0xA5}) std::abort();
    return 0;
}
