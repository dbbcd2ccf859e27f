#include "net/network_transport.h"

#include <unistd.h>

#include <climits>

#include "net/proto/link.grpc.pb.h"
#include "net/status_mapping.h"
#include "net/wire_codec.h"
#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace net {
namespace {

// A reading that missed its tick by a little (the server's interval and the
// tick run on different clocks) still counts as this interval's, once.
constexpr double kFreshIntervals = 1.5;

}  // namespace

std::string LocalHostName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (gethostname(name, sizeof name - 1) != 0) return "";
    return name;
}

NetworkTransport::NetworkTransport(NetworkSettings settings)
    : settings_(std::move(settings)), names_(settings_.namesAddress, settings_.namesFile) {
    if (settings_.clientHost.empty()) settings_.clientHost = LocalHostName();
}

NetworkTransport::~NetworkTransport() {
    *alive_ = false;
    std::map<vire::SubscriptionId, Subscriber> left;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        left.swap(subscribers_);
    }
    for (auto& [id, s] : left)
        if (s.scheduler == vire::CurrentScheduler()) s.scheduler->StopTimer(s.timer);
}

vire::Status NetworkTransport::Call(const std::string& fullDeviceName, const std::string& property,
                                    vire::DataObject& out, const vire::DataObject& in, int16_t access,
                                    int32_t timeoutMs) {
    const int32_t asked = out.count;
    out.count = 0;
    out.stamp = 0;
    const auto deadline = std::chrono::system_clock::now() + std::chrono::milliseconds(std::max(timeoutMs, 0));
    std::string address;
    if (const vire::Status found = names_.Resolve(fullDeviceName, timeoutMs, address); found != vire::kOk)
        return found;
    out.count = asked;
    vire::Status status = CallOnce(address, fullDeviceName, property, out, in, access, deadline, timeoutMs);
    if (status != vire::kLinkError) return status;
    // The server may have come back elsewhere: ask for its name once more.
    names_.Forget(fullDeviceName);
    channels_.Drop(address);
    std::string again;
    if (names_.Resolve(fullDeviceName, timeoutMs, again) != vire::kOk || again == address) return status;
    out.count = asked;
    return CallOnce(again, fullDeviceName, property, out, in, access, deadline, timeoutMs);
}

vire::Status NetworkTransport::CallOnce(const std::string& address, const std::string& fullDeviceName,
                                        const std::string& property, vire::DataObject& out,
                                        const vire::DataObject& in, int16_t access,
                                        std::chrono::system_clock::time_point deadline, int32_t timeoutMs) {
    const int32_t asked = out.count;
    out.count = 0;
    const LinkRequest request = EncodeRequest(fullDeviceName, property, vire::DataObject{asked, out.format, "", out.buffer},
                                              in, access, timeoutMs, CallerIdentity{vire::UserName(), settings_.clientHost});
    auto stub = lumiscope::link::v1::Link::NewStub(channels_.Get(address));
    grpc::ClientContext context;
    context.set_deadline(deadline);
    LinkReply reply;
    const grpc::Status status = stub->Call(&context, request, &reply);
    if (!status.ok()) {
        if (status.error_code() == grpc::StatusCode::UNAVAILABLE) channels_.Drop(address);
        return StatusOfFailedCall(status);
    }
    return DecodeReply(reply, out, asked);
}

vire::SubscriptionId NetworkTransport::Subscribe(const vire::SubscriptionRequest& request,
                                                 std::function<void(const vire::LinkData&)> onData) {
    vire::Scheduler* scheduler = vire::CurrentScheduler();
    if (scheduler == nullptr) return -1;
    const LinkKey key{request.fullDeviceName, request.property, request.format, request.count, request.intervalMs};
    std::lock_guard<std::mutex> lock(mutex_);
    std::shared_ptr<LiveMonitor> monitor = monitors_[key].lock();
    if (!monitor) {
        monitor = std::make_shared<LiveMonitor>(request, channels_, names_, arrivals_);
        monitors_[key] = monitor;
    }
    const vire::SubscriptionId id = nextId_++;
    std::weak_ptr<bool> alive = alive_;
    const vire::TimerId timer = scheduler->StartTimer(request.intervalMs, [this, alive, id, onData = std::move(onData)] {
        const auto stillAlive = alive.lock();
        if (stillAlive && *stillAlive) Tick(id, onData);
    });
    subscribers_[id] = Subscriber{key, timer, scheduler, std::move(monitor), 0};
    return id;
}

void NetworkTransport::Tick(vire::SubscriptionId id, const std::function<void(const vire::LinkData&)>& onData) {
    vire::LinkData data;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto it = subscribers_.find(id);
        if (it == subscribers_.end()) return;
        Subscriber& s = it->second;
        const LiveMonitor::Latest latest = s.monitor->Get();
        const auto interval = std::chrono::milliseconds(std::get<4>(s.key));
        const bool fresh = latest.hasReading &&
                           (latest.sequence != s.lastSequence ||
                            std::chrono::steady_clock::now() - latest.arrived <
                                std::chrono::duration_cast<std::chrono::milliseconds>(interval * kFreshIntervals));
        if (fresh) {
            data = latest.reading;
            s.lastSequence = latest.sequence;
        } else {
            data.status = latest.linkStatus != vire::kOk ? latest.linkStatus : vire::kTimeout;
            data.format = std::get<2>(s.key);
            data.stampMs = vire::NowMilliseconds();
        }
    }
    onData(data);
}

void NetworkTransport::Unsubscribe(vire::SubscriptionId id) {
    std::shared_ptr<LiveMonitor> last;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto it = subscribers_.find(id);
        if (it == subscribers_.end()) return;
        if (it->second.scheduler == vire::CurrentScheduler()) it->second.scheduler->StopTimer(it->second.timer);
        last = std::move(it->second.monitor);
        const LinkKey key = it->second.key;
        subscribers_.erase(it);
        if (last.use_count() == 1) monitors_.erase(key);
    }
    last.reset();  // the last subscriber of a link stops its stream (outside the lock)
}

void NetworkTransport::ObserveArrivals(std::function<void(const vire::LinkData&)> observer) {
    std::lock_guard<std::mutex> lock(mutex_);
    arrivals_ = std::move(observer);
}

size_t NetworkTransport::ActiveSubscriptions() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return subscribers_.size();
}

size_t NetworkTransport::SharedReadings() const {
    std::lock_guard<std::mutex> lock(mutex_);
    size_t n = 0;
    for (const auto& [key, monitor] : monitors_)
        if (!monitor.expired()) ++n;
    return n;
}

}  // namespace net
