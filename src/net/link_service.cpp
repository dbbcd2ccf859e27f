#include "net/link_service.h"

#include <grpc/grpc_security_constants.h>

#include <algorithm>
#include <chrono>

#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace net {
namespace {

constexpr int32_t kShortestIntervalMs = 10;

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

grpc::Status LinkService::Monitor(grpc::ServerContext* context, const lumiscope::link::v1::MonitorRequest* request,
                                  grpc::ServerWriter<LinkReply>* writer) {
    LinkRequest link = request->link();
    link.set_access(vire::kAccessRead);
    if (NamesTooLong(link)) return grpc::Status(grpc::StatusCode::INVALID_ARGUMENT, "device or property name too long");
    const std::string peer = PeerAddress(context->peer());
    if (!OpenStream(peer))
        return grpc::Status(grpc::StatusCode::RESOURCE_EXHAUSTED,
                            "more than " + std::to_string(streamsPerClient_) + " open streams from " + peer);
    const int64_t mostElements = handler_.MostElements(link);
    const auto interval = std::chrono::milliseconds(std::max(request->interval_ms(), kShortestIntervalMs));
    const CallContext caller = CallerOf(*context, link);
    auto next = std::chrono::steady_clock::now();
    for (;;) {
        if (context->IsCancelled()) break;
        ServerBuffers buffers;
        PrepareBuffers(link, mostElements, buffers);
        vire::Status status = vire::kServerError;
        try {
            status = handler_.Answer(link, buffers, caller, 0);
        } catch (...) {
            status = vire::kServerError;
        }
        LinkReply reply;
        EncodeReply(status, buffers, reply);
        reply.set_stamp_ms(vire::NowMilliseconds());
        if (!writer->Write(reply)) break;
        next += interval;
        const auto now = std::chrono::steady_clock::now();
        if (next < now) next = now + interval;  // fell behind: skip, never burst
        std::unique_lock<std::mutex> lock(mutex_);
        if (wake_.wait_until(lock, next, [this] { return stopping_; })) break;
    }
    CloseStream(peer);
    return grpc::Status::OK;
}

bool LinkService::OpenStream(const std::string& peer) {
    std::lock_guard<std::mutex> lock(mutex_);
    int32_t& open = streamsByPeer_[peer];
    if (open >= streamsPerClient_) return false;
    open += 1;
    return true;
}

void LinkService::CloseStream(const std::string& peer) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (--streamsByPeer_[peer] <= 0) streamsByPeer_.erase(peer);
}

grpc::Status LinkService::Health(grpc::ServerContext*, const lumiscope::link::v1::HealthRequest*,
                                 lumiscope::link::v1::HealthReply* reply) {
    reply->set_program(handler_.Program());
    for (const auto& name : handler_.Names()) reply->add_names(name);
    return grpc::Status::OK;
}

void LinkService::Stop() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
}

}  // namespace net
