// What the client copies out of a reply, and what a server makes of a request.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "net/status_mapping.h"
#include "net/wire_codec.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/wire.h"

namespace {

net::LinkReply Reply(int32_t status, int32_t format, int32_t count, size_t dataBytes, int32_t stamp = 0) {
    net::LinkReply reply;
    reply.set_status(status);
    reply.set_format(format);
    reply.set_count(count);
    std::string data(dataBytes, '\0');
    for (size_t i = 0; i < dataBytes; ++i) data[i] = static_cast<char>(i + 1);
    reply.set_data(data);
    reply.set_stamp(stamp);
    return reply;
}

TEST(WireCodec, RepliesThatDoNotAddUpCopyNothingAndLargeOnesAreCutToFit) {
    constexpr int16_t kSingle = vire::kFormatSingle;
    // what, the reply, count asked for, buffer bytes, status, count delivered, stamp
    const std::tuple<const char*, net::LinkReply, int32_t, size_t, vire::Status, int32_t, int32_t> cases[] = {
        {"whole", Reply(0, kSingle, 4, 16, 77), 4, 16, 0, 4, 77},
        {"more than asked", Reply(0, kSingle, 8, 32), 3, 64, 0, 3, 0},
        {"more than the buffer", Reply(0, kSingle, 8, 32), 8, 10, 0, 2, 0},
        {"asked for none", Reply(0, kSingle, 8, 32), 0, 64, 0, 0, 0},
        {"asked for less than none", Reply(0, kSingle, 8, 32), -5, 64, 0, 0, 0},
        {"a format raised by 512 is the same", Reply(0, 5, 2, 8), 2, 8, 0, 2, 0},
        {"an error code with data", Reply(36, kSingle, 2, 8, 5), 2, 8, 36, 0, 0},
        {"an error code beyond 16 bits", Reply(70000, kSingle, 0, 0), 2, 8, vire::kServerError, 0, 0},
        {"a negative error code", Reply(-3, kSingle, 0, 0), 2, 8, -3, 0, 0},
        {"negative count", Reply(0, kSingle, -1, 0), 2, 8, vire::kServerError, 0, 0},
        {"fewer bytes than the count says", Reply(0, kSingle, 4, 15), 4, 16, vire::kServerError, 0, 0},
        {"more bytes than the count says", Reply(0, kSingle, 2, 12), 4, 16, vire::kServerError, 0, 0},
        {"another format", Reply(0, vire::kFormatLong, 4, 16), 4, 16, vire::kServerError, 0, 0},
        {"a format beyond 16 bits", Reply(0, 0x10000 + kSingle, 4, 16), 4, 16, vire::kServerError, 0, 0},
        {"a count whose bytes overflow", Reply(0, kSingle, std::numeric_limits<int32_t>::max(), 16), 4, 16,
         vire::kServerError, 0, 0},
        {"nothing delivered keeps the stamp", Reply(0, kSingle, 0, 0, 99), 4, 16, 0, 0, 99},
    };
    for (const auto& [what, reply, asked, bufferBytes, status, count, stamp] : cases) {
        std::vector<std::byte> storage(bufferBytes + 8, std::byte{0xEE});
        vire::DataObject out{asked, kSingle, "", std::span<std::byte>(storage).first(bufferBytes)};
        out.stamp = -1;
        EXPECT_EQ(net::DecodeReply(reply, out, asked), status) << what;
        EXPECT_EQ(out.count, count) << what;
        EXPECT_EQ(out.stamp, stamp) << what;
        const size_t copied = static_cast<size_t>(count) * 4;
        for (size_t i = 0; i < copied; ++i) EXPECT_EQ(storage[i], static_cast<std::byte>(i + 1)) << what;
        for (size_t i = copied; i < storage.size(); ++i) ASSERT_EQ(storage[i], std::byte{0xEE}) << what << " byte " << i;
    }
}

TEST(WireCodec, BuffersOnBothSidesAreBoundedByCountCapacityAndTheReplyLimit) {
    // A client's format without a known size copies nothing.
    std::vector<std::byte> storage(16, std::byte{0xEE});
    vire::DataObject unsized{4, 519, "", storage};  // STRUCT
    EXPECT_EQ(net::DecodeReply(Reply(0, 519, 4, 16), unsized, 4), 0);
    EXPECT_EQ(unsized.count, 0);
    EXPECT_EQ(storage, std::vector<std::byte>(16, std::byte{0xEE}));
    // Input travels as far as its count reaches, never past its buffer.
    std::vector<std::byte> in(12);
    const std::tuple<int32_t, int16_t, size_t> inputs[] = {
        {2, vire::kFormatLong, 8}, {9, vire::kFormatLong, 12}, {-1, vire::kFormatLong, 0}, {5, vire::kFormatText, 5}};
    for (const auto& [count, format, sent] : inputs) {
        const auto request = net::EncodeRequest("/A/B/C", "P", vire::DataObject{10, vire::kFormatSingle, "", storage},
                                                vire::DataObject{count, format, "", in}, 1, 800, {"op", "h1"});
        EXPECT_EQ(request.in_data().size(), sent) << count << " of " << format;
        EXPECT_EQ(request.out_capacity(), 16);
    }
    // A server allocates what the device has and the caller can take, whatever it claims: count, claimed
    // capacity, format, the device's most elements, bytes
    const std::tuple<int32_t, int64_t, int32_t, int64_t, size_t> outputs[] = {
        {10, 1'000'000, vire::kFormatSingle, 8000, 40}, {1'000'000, 40, vire::kFormatSingle, 8000, 40},
        {INT32_MAX, 1LL << 40, vire::kFormatSingle, 8000, 32000}, {-4, 40, vire::kFormatSingle, 8000, 0},
        {10, -40, vire::kFormatSingle, 8000, 0},               {10, 1LL << 40, 519, 8000, 0},
        {INT32_MAX, 1LL << 40, vire::kFormatName16, 1LL << 40, static_cast<size_t>(net::kMaxReplyBytes)}};
    for (const auto& [count, capacity, format, most, bytes] : outputs) {
        net::LinkRequest request;
        request.set_out_count(count);
        request.set_out_capacity(capacity);
        request.set_out_format(format);
        net::ServerBuffers buffers;
        net::PrepareBuffers(request, most, buffers);
        EXPECT_EQ(buffers.out.size(), bytes) << count << "/" << capacity;
        if (bytes != 40) continue;
        buffers.outObject.count = 99;  // a handler claiming more than there is room for
        net::LinkReply reply;
        net::EncodeReply(0, buffers, reply);
        EXPECT_EQ(std::make_pair(reply.count(), reply.data().size()), std::make_pair(10, size_t{40}));
        net::EncodeReply(vire::kTimeout, buffers, reply);
        EXPECT_EQ(reply.count(), 0);
    }
}

TEST(WireCodec, EngineFailuresBecomeTheMiddlewaresCodes) {
    const std::pair<grpc::StatusCode, vire::Status> cases[] = {
        {grpc::StatusCode::DEADLINE_EXCEEDED, vire::kTimeout},
        {grpc::StatusCode::UNAVAILABLE, vire::kLinkError},
        {grpc::StatusCode::RESOURCE_EXHAUSTED, vire::kServerError},
        {grpc::StatusCode::UNIMPLEMENTED, vire::kServerError},
    };
    for (const auto& [engine, code] : cases) EXPECT_EQ(net::StatusOfFailedCall(grpc::Status(engine, "")), code) << engine;
}

}  // namespace
