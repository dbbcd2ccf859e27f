#include "net/link_service.h"

#include "net/monitor_streams.h"

#include <grpc/grpc_security_constants.h>

#include <algorithm>
#include <chrono>

#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace net {
namespace {

CallContext CallerOf(const grpc::ServerContextBase& context, const LinkRequest& request) {
    CallContext caller{request.user(), PeerAddress(context.peer()), ""};
    const auto auth = context.auth_context();
    if (auth && auth->IsPeerAuthenticated()) {
        const auto names = auth->FindPropertyValues(GRPC_X509_CN_PROPERTY_NAME);
        if (!names.empty()) caller.certifiedUser.assign(names.front().data(), names.front().size());
    }
    return caller;
}

bool NamesTooLong(const LinkRequest& request) {
    return request.device().size() > kMaxDeviceNameLength || request.property().size() > kMaxPropertyLength;
}

}  // namespace

std::string PeerAddress(const std::string& peer) {
    std::string rest = peer;
    for (const char* scheme : {"ipv4:", "ipv6:"})
        if (rest.rfind(scheme, 0) == 0) rest = rest.substr(5);
    // Some engine versions escape the brackets of IPv6 addresses.
    for (const auto& [escaped, plain] : {std::pair{"%5B", "["}, std::pair{"%5D", "]"}}) {
        for (size_t at = rest.find(escaped); at != std::string::npos; at = rest.find(escaped))
            rest.replace(at, 3, plain);
    }
    if (!rest.empty() && rest[0] == '[') {
        const size_t close = rest.find(']');
        return close == std::string::npos ? rest : rest.substr(1, close - 1);
    }
    const size_t colon = rest.rfind(':');
    return colon == std::string::npos ? rest : rest.substr(0, colon);
}

LinkService::LinkService(LinkHandler& handler, int32_t streamsPerClient)
    : handler_(handler), streams_(std::make_unique<MonitorStreams>(handler, streamsPerClient)) {}

LinkService::~LinkService() = default;

grpc::Status LinkService::Call(grpc::ServerContext* context, const LinkRequest* request, LinkReply* reply) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(context->deadline() -
                                                                            std::chrono::system_clock::now());
    const int32_t timeoutMs = static_cast<int32_t>(
        std::clamp<int64_t>(std::min<int64_t>(left.count(), request->timeout_ms()), 0, INT32_MAX));
    ServerBuffers buffers;
    vire::Status status = vire::kInvalidInput;
    if (!NamesTooLong(*request)) {
        try {
            PrepareBuffers(*request, handler_.MostElements(*request), buffers);
            status = handler_.Answer(*request, buffers, CallerOf(*context, *request), timeoutMs);
        } catch (...) {
            status = vire::kServerError;
        }
    }
    EncodeReply(status, buffers, *reply);
    reply->set_stamp_ms(vire::NowMilliseconds());
    return grpc::Status::OK;
}

grpc::ServerWriteReactor<LinkReply>* LinkService::Monitor(grpc::CallbackServerContext* context,
                                                          const lumiscope::link::v1::MonitorRequest* request) {
    LinkRequest link = request->link();
    link.set_access(vire::kAccessRead);
    if (NamesTooLong(link))
        return MonitorStreams::Refuse(grpc::Status(grpc::StatusCode::INVALID_ARGUMENT, "device or property name too long"));
    return streams_->Open(CallerOf(*context, link), link, request->interval_ms());
}

grpc::Status LinkService::Health(grpc::ServerContext*, const lumiscope::link::v1::HealthRequest*,
                                 lumiscope::link::v1::HealthReply* reply) {
    reply->set_program(handler_.Program());
    for (const auto& name : handler_.Names()) reply->add_names(name);
    return grpc::Status::OK;
}

void LinkService::Stop() { streams_->Stop(); }

}  // namespace net
