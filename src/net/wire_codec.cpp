#include "net/wire_codec.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "vire/completion_codes.h"
#include "vire/formats.h"

namespace net {
namespace {

// Bytes of `count` elements of `width`, or -1 when that cannot be.
int64_t ByteSize(int64_t count, int64_t width) {
    if (count < 0 || width <= 0) return -1;
    if (count > kMaxReplyBytes / width) return -1;
    return count * width;
}

}  // namespace

LinkRequest EncodeRequest(const std::string& fullDeviceName, const std::string& property,
                          const vire::DataObject& out, const vire::DataObject& in, int16_t access,
                          int32_t timeoutMs, const CallerIdentity& caller) {
    LinkRequest request;
    request.set_device(fullDeviceName);
    request.set_property(property);
    request.set_access(access);
    request.set_out_format(out.format);
    request.set_out_count(out.count);
    request.set_out_capacity(static_cast<int64_t>(out.buffer.size()));
    request.set_in_format(in.format);
    request.set_in_count(in.count);
    // The input travels as far as its count reaches, never past its buffer.
    int64_t inBytes = in.count > 0 ? static_cast<int64_t>(in.buffer.size()) : 0;
    if (const int64_t wanted = ByteSize(in.count, vire::FormatSize(in.format)); wanted >= 0)
        inBytes = std::min(inBytes, wanted);
    request.set_in_data(reinterpret_cast<const char*>(in.buffer.data()), static_cast<size_t>(inBytes));
    request.set_user(caller.user);
    request.set_client_host(caller.host);
    request.set_timeout_ms(timeoutMs);
    return request;
}

vire::Status DecodeReply(const LinkReply& reply, vire::DataObject& out, int32_t asked) {
    out.count = 0;
    out.stamp = 0;
    if (reply.status() < std::numeric_limits<int16_t>::min() || reply.status() > std::numeric_limits<int16_t>::max())
        return vire::kServerError;
    const auto status = static_cast<vire::Status>(reply.status());
    if (status != vire::kOk) return status;
    const int32_t width = vire::FormatSize(out.format);
    if (reply.count() == 0) {
        out.stamp = reply.stamp();
        return status;
    }
    if (width <= 0) return status;  // a format the client layer cannot size: nothing is copied
    if (reply.format() < std::numeric_limits<int16_t>::min() || reply.format() > std::numeric_limits<int16_t>::max() ||
        vire::CanonicalFormat(static_cast<int16_t>(reply.format())) != vire::CanonicalFormat(out.format))
        return vire::kServerError;
    const int64_t bytes = ByteSize(reply.count(), width);
    if (bytes < 0 || static_cast<int64_t>(reply.data().size()) != bytes) return vire::kServerError;
    const int64_t room = std::min<int64_t>(std::max(asked, 0), static_cast<int64_t>(out.buffer.size()) / width);
    const int64_t n = std::min<int64_t>(reply.count(), room);
    if (n > 0) std::memcpy(out.buffer.data(), reply.data().data(), static_cast<size_t>(n * width));
    out.count = static_cast<int32_t>(n);
    out.stamp = reply.stamp();
    return status;
}

void PrepareBuffers(const LinkRequest& request, int64_t mostElements, ServerBuffers& buffers) {
    const auto format = static_cast<int16_t>(std::clamp<int32_t>(request.out_format(), INT16_MIN, INT16_MAX));
    const int32_t width = vire::FormatSize(format);
    // The caller's count and capacity can only make the buffer smaller: a
    // server never allocates more than the device has to give.
    int64_t outBytes = 0;
    if (width > 0) {
        const int64_t elements = std::min<int64_t>(std::max(request.out_count(), 0), std::max<int64_t>(mostElements, 0));
        outBytes = std::min({elements * width, std::max<int64_t>(request.out_capacity(), 0), kMaxReplyBytes});
    }
    buffers.out.assign(static_cast<size_t>(outBytes), std::byte{0});
    const auto& data = request.in_data();
    // Copied element by element: an empty string's data may be null, which memcpy must not see.
    buffers.in.resize(data.size());
    std::transform(data.begin(), data.end(), buffers.in.begin(), [](char c) { return static_cast<std::byte>(c); });
    buffers.outObject = vire::DataObject{request.out_count(), format, "", buffers.out};
    buffers.inObject = vire::DataObject{
        request.in_count(), static_cast<int16_t>(std::clamp<int32_t>(request.in_format(), INT16_MIN, INT16_MAX)), "",
        buffers.in};
}

void EncodeReply(vire::Status status, const ServerBuffers& buffers, LinkReply& reply) {
    reply.set_status(status);
    reply.set_format(buffers.outObject.format);
    reply.set_stamp(buffers.outObject.stamp);
    if (status != vire::kOk) {
        reply.set_count(0);
        return;
    }
    const int32_t width = vire::FormatSize(buffers.outObject.format);
    const int64_t count = std::max(buffers.outObject.count, 0);
    const int64_t bytes = width > 0 ? std::min<int64_t>(count * width, static_cast<int64_t>(buffers.out.size())) : 0;
    reply.set_count(width > 0 ? static_cast<int32_t>(bytes / width) : 0);
    reply.set_data(reinterpret_cast<const char*>(buffers.out.data()), static_cast<size_t>(bytes));
}

}  // namespace net
