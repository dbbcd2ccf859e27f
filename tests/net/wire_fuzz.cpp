// Fuzz target for the wire decoding: bytes off the network parsed as a reply
// and copied into a caller's buffer, or parsed as a request and given the
// server's buffers. Nothing may be written outside the caller's buffer, no
// input may crash, throw or reach undefined behaviour.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "net/wire_codec.h"
#include "vire/formats.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    const uint8_t mode = data[0];
    const int16_t format = static_cast<int16_t>(500 + data[1] % 60);
    const int32_t asked = static_cast<int32_t>(data[2]) - 16;
    const size_t bufferBytes = data[3];
    data += 4;
    size -= 4;
    if (mode % 2 == 0) {
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
    } else {
        net::LinkRequest request;
        if (!request.ParseFromArray(data, static_cast<int>(size))) return 0;
        // Keep the fuzzer's memory small: the bound itself is a unit test's.
        if (request.out_capacity() > (1 << 20)) request.set_out_capacity(1 << 20);
        net::ServerBuffers buffers;
        net::PrepareBuffers(request, buffers);
        if (buffers.out.size() > static_cast<size_t>(net::kMaxReplyBytes)) std::abort();
        buffers.outObject.count = asked;  // whatever a handler claims
        net::LinkReply reply;
        net::EncodeReply(static_cast<vire::Status>(asked % 3), buffers, reply);
        if (reply.data().size() > buffers.out.size()) std::abort();
    }
    return 0;
}
