// Link calls in and out of the wire schema: the caller's data objects become a
// request, a server's reply is copied back into the caller's buffer.
//
// Both directions check what they are handed: a reply that does not add up
// (negative count, fewer bytes than its count says, a format other than the
// one asked for, a code outside 16 bits) is a server error and nothing of it
// is copied; a reply with more elements than the caller asked for or its
// buffer holds is cut to fit.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "net/proto/link.pb.h"
#include "vire/data_object.h"

namespace net {

using lumiscope::link::v1::LinkReply;
using lumiscope::link::v1::LinkRequest;

// Bytes a server may answer in one reply, whatever the caller's buffer.
inline constexpr int64_t kMaxReplyBytes = 64LL * 1024 * 1024;

struct CallerIdentity {
    std::string user;
    std::string host;
};

LinkRequest EncodeRequest(const std::string& fullDeviceName, const std::string& property,
                          const vire::DataObject& out, const vire::DataObject& in, int16_t access,
                          int32_t timeoutMs, const CallerIdentity& caller);

// Copies the reply into out (out.count, out.stamp, out.buffer) and returns the
// completion code; `asked` is the count the caller asked for.
vire::Status DecodeReply(const LinkReply& reply, vire::DataObject& out, int32_t asked);

// Server side: the storage a request asks for, bounded by what the addressed
// device can answer (mostElements) and by kMaxReplyBytes.
struct ServerBuffers {
    std::vector<std::byte> in;
    std::vector<std::byte> out;
    vire::DataObject inObject;
    vire::DataObject outObject;
};
void PrepareBuffers(const LinkRequest& request, int64_t mostElements, ServerBuffers& buffers);

// Server side: the reply for what the handler left in buffers.outObject.
void EncodeReply(vire::Status status, const ServerBuffers& buffers, LinkReply& reply);

}  // namespace net
