// The server side of the link schema: one service that hands every call to a
// handler (a device server, the archiver, the name service) and turns the
// handler's answers into replies and monitor streams.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "net/proto/link.grpc.pb.h"
#include "net/wire_codec.h"

namespace net {

// Who is calling, as the server sees it.
struct CallContext {
    std::string user;           // as the client reports it
    std::string peerAddress;    // the network address the call came from ("127.0.0.1")
    std::string certifiedUser;  // common name of the client's verified certificate, "" without one
};

class LinkHandler {
public:
    virtual ~LinkHandler() = default;
    // Answers one call into buffers.outObject and returns the completion
    // code. timeoutMs is what the caller waits at most (0 for live readings,
    // which must never wait).
    virtual vire::Status Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext& caller,
                                int32_t timeoutMs) = 0;
    // The most elements the device a request addresses can answer (its
    // largest array, name list or history): the reply buffer's bound.
    virtual int64_t MostElements(const LinkRequest& request) const = 0;
    // The server names this process answers for.
    virtual std::vector<std::string> Names() const = 0;
    virtual std::string Program() const = 0;
};

// What one client may ask of a server. Longer names are refused with 16
// before any handler sees them; a request larger than kMaxRequestBytes is
// refused by the engine (RESOURCE_EXHAUSTED); a client (one network address)
// with streamsPerClient monitor streams open gets RESOURCE_EXHAUSTED for the
// next one.
inline constexpr size_t kMaxDeviceNameLength = 256;
inline constexpr size_t kMaxPropertyLength = 128;
inline constexpr int kMaxRequestBytes = 1024 * 1024;
inline constexpr int32_t kDefaultStreamsPerClient = 2000;

// "ipv4:127.0.0.1:5000" -> "127.0.0.1"; "ipv6:[::1]:5000" -> "::1".
std::string PeerAddress(const std::string& peer);

class MonitorStreams;

// Calls are answered on the engine's thread pool (a call may wait for a slow
// device); monitor streams on its callback API, without a thread each.
class LinkService final
    : public lumiscope::link::v1::Link::WithCallbackMethod_Monitor<lumiscope::link::v1::Link::Service> {
public:
    LinkService(LinkHandler& handler, int32_t streamsPerClient);
    ~LinkService() override;

    grpc::Status Call(grpc::ServerContext* context, const LinkRequest* request, LinkReply* reply) override;
    grpc::ServerWriteReactor<LinkReply>* Monitor(grpc::CallbackServerContext* context,
                                                 const lumiscope::link::v1::MonitorRequest* request) override;
    grpc::Status Health(grpc::ServerContext* context, const lumiscope::link::v1::HealthRequest* request,
                        lumiscope::link::v1::HealthReply* reply) override;

    // Ends every monitor stream (before the server shuts down).
    void Stop();

private:
    LinkHandler& handler_;
    std::unique_ptr<MonitorStreams> streams_;
};

}  // namespace net
