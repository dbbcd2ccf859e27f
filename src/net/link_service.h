// The server side of the link schema: one service that hands every call to a
// handler (a device server, the archiver, the name service) and turns the
// handler's answers into replies and monitor streams.
#pragma once

#include <condition_variable>
#include <mutex>
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
    // The server names this process answers for.
    virtual std::vector<std::string> Names() const = 0;
    virtual std::string Program() const = 0;
};

// "ipv4:127.0.0.1:5000" -> "127.0.0.1"; "ipv6:[::1]:5000" -> "::1".
std::string PeerAddress(const std::string& peer);

class LinkService final : public lumiscope::link::v1::Link::Service {
public:
    explicit LinkService(LinkHandler& handler) : handler_(handler) {}

    grpc::Status Call(grpc::ServerContext* context, const LinkRequest* request, LinkReply* reply) override;
    grpc::Status Monitor(grpc::ServerContext* context, const lumiscope::link::v1::MonitorRequest* request,
                         grpc::ServerWriter<LinkReply>* writer) override;
    grpc::Status Health(grpc::ServerContext* context, const lumiscope::link::v1::HealthRequest* request,
                        lumiscope::link::v1::HealthReply* reply) override;

    // Ends every monitor stream (before the server shuts down).
    void Stop();

private:
    LinkHandler& handler_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
};

}  // namespace net
