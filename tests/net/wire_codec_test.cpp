// What the client copies out of a reply, and what a server makes of a request.
#include <gtest/gtest.h>

#include <limits>

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
    struct Case {
        const char* what;
        net::LinkReply reply;
        int32_t asked;
        size_t bufferBytes;
        vire::Status status;
        int32_t count;
        int32_t stamp;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        std::vector<std::byte> storage(c.bufferBytes + 8, std::byte{0xEE});
        vire::DataObject out{c.asked, kSingle, "", std::span<std::byte>(storage).first(c.bufferBytes)};
        out.stamp = -1;
        EXPECT_EQ(net::DecodeReply(c.reply, out, c.asked), c.status) << c.what;
        EXPECT_EQ(out.count, c.count) << c.what;
        EXPECT_EQ(out.stamp, c.stamp) << c.what;
        const size_t copied = static_cast<size_t>(c.count) * 4;
        for (size_t i = 0; i < copied; ++i) EXPECT_EQ(storage[i], static_cast<std::byte>(i + 1)) << c.what;
        for (size_t i = copied; i < storage.size(); ++i) ASSERT_EQ(storage[i], std::byte{0xEE}) << c.what << " byte " << i;
    }
}

TEST(WireCodec, AFormatWithoutAKnownSizeIsNeverCopied) {
    std::vector<std::byte> storage(16, std::byte{0xEE});
    vire::DataObject out{4, 519, "", storage};  // STRUCT
    EXPECT_EQ(net::DecodeReply(Reply(0, 519, 4, 16), out, 4), 0);
    EXPECT_EQ(out.count, 0);
    for (std::byte b : storage) EXPECT_EQ(b, std::byte{0xEE});
}

TEST(WireCodec, RequestsCarryNoMoreInputThanItsCountAndBufferHold) {
    std::vector<std::byte> in(12);
    for (size_t i = 0; i < in.size(); ++i) in[i] = static_cast<std::byte>(i);
    std::vector<std::byte> outBuffer(40);
    struct Case {
        int32_t inCount;
        int16_t inFormat;
        size_t sent;
    };
    const Case cases[] = {{2, vire::kFormatLong, 8}, {3, vire::kFormatLong, 12}, {9, vire::kFormatLong, 12},
                          {-1, vire::kFormatLong, 0}, {5, vire::kFormatText, 5}, {1, 519, 12}};
    for (const Case& c : cases) {
        const auto request = net::EncodeRequest("/ORKA/BPMQ1/ORBIT", "ORBIT.X",
                                                vire::DataObject{10, vire::kFormatSingle, "", outBuffer},
                                                vire::DataObject{c.inCount, c.inFormat, "", in}, 1, 800, {"op", "h1"});
        EXPECT_EQ(request.in_data().size(), c.sent) << c.inCount << " of " << c.inFormat;
        EXPECT_EQ(request.out_capacity(), 40);
        EXPECT_EQ(request.out_count(), 10);
        EXPECT_EQ(request.user(), "op");
        EXPECT_EQ(request.client_host(), "h1");
        EXPECT_EQ(request.timeout_ms(), 800);
    }
}

TEST(WireCodec, ServersAllocateWhatTheCallerCanTakeAndAnswerWhatWasDelivered) {
    struct Case {
        int32_t count;
        int64_t capacity;
        int32_t format;
        size_t bytes;
    };
    const Case cases[] = {
        {10, 40, vire::kFormatSingle, 40},
        {10, 1'000'000, vire::kFormatSingle, 40},     // the count bounds
        {1'000'000, 40, vire::kFormatSingle, 40},     // the capacity bounds
        {-4, 40, vire::kFormatSingle, 0},
        {10, -40, vire::kFormatSingle, 0},
        {10, 1LL << 40, 519, static_cast<size_t>(net::kMaxReplyBytes)},  // unknown width: the limit bounds
        {10, 40, 0x7FFFFFFF, 40},
    };
    for (const Case& c : cases) {
        net::LinkRequest request;
        request.set_out_count(c.count);
        request.set_out_capacity(c.capacity);
        request.set_out_format(c.format);
        request.set_in_data("abc");
        request.set_in_count(3);
        net::ServerBuffers buffers;
        net::PrepareBuffers(request, buffers);
        EXPECT_EQ(buffers.out.size(), c.bytes) << c.count << "/" << c.capacity;
        EXPECT_EQ(buffers.outObject.buffer.size(), c.bytes);
        EXPECT_EQ(buffers.in.size(), 3u);
    }
    net::ServerBuffers buffers;
    net::LinkRequest request;
    request.set_out_count(4);
    request.set_out_capacity(16);
    request.set_out_format(vire::kFormatSingle);
    net::PrepareBuffers(request, buffers);
    buffers.outObject.count = 9;  // a handler that claims more than there is room for
    net::LinkReply reply;
    net::EncodeReply(0, buffers, reply);
    EXPECT_EQ(reply.count(), 4);
    EXPECT_EQ(reply.data().size(), 16u);
    net::EncodeReply(vire::kTimeout, buffers, reply);
    EXPECT_EQ(reply.status(), vire::kTimeout);
    EXPECT_EQ(reply.count(), 0);
}

TEST(WireCodec, EngineFailuresBecomeTheMiddlewaresCodes) {
    const std::pair<grpc::StatusCode, vire::Status> cases[] = {
        {grpc::StatusCode::OK, 0},
        {grpc::StatusCode::DEADLINE_EXCEEDED, vire::kTimeout},
        {grpc::StatusCode::UNAVAILABLE, vire::kLinkError},
        {grpc::StatusCode::CANCELLED, vire::kServerError},
        {grpc::StatusCode::RESOURCE_EXHAUSTED, vire::kServerError},
        {grpc::StatusCode::UNIMPLEMENTED, vire::kServerError},
        {grpc::StatusCode::INTERNAL, vire::kServerError},
        {grpc::StatusCode::UNKNOWN, vire::kServerError},
    };
    for (const auto& [engine, code] : cases) EXPECT_EQ(net::StatusOfFailedCall(grpc::Status(engine, "")), code) << engine;
}

}  // namespace
