#include "net/live_monitor.h"

#include "net/proto/link.grpc.pb.h"
#include "net/status_mapping.h"
#include "net/wire_codec.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace net {

LiveMonitor::LiveMonitor(vire::SubscriptionRequest request, ChannelPool& channels, NameResolver& names,
                         std::function<void(const vire::LinkData&)> onArrival)
    : request_(std::move(request)), channels_(channels), names_(names), onArrival_(std::move(onArrival)) {
    latest_.linkStatus = vire::kTimeout;
    thread_ = std::thread([this] { Run(); });
}

LiveMonitor::~LiveMonitor() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
        if (context_ != nullptr) context_->TryCancel();
    }
    wake_.notify_all();
    thread_.join();
}

LiveMonitor::Latest LiveMonitor::Get() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return latest_;
}

void LiveMonitor::Run() {
    for (;;) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (stopping_) return;
        }
        std::string address;
        if (names_.Resolve(request_.fullDeviceName, kNamesCallTimeoutMs, address) == vire::kOk) Stream(address);
        {
            std::lock_guard<std::mutex> lock(mutex_);
            latest_.hasReading = false;
            latest_.linkStatus = vire::kLinkError;
        }
        names_.Forget(request_.fullDeviceName);
        if (!address.empty()) channels_.Drop(address);
        WaitRetry();
    }
}

void LiveMonitor::Stream(const std::string& address) {
    auto stub = lumiscope::link::v1::Link::NewStub(channels_.Get(address));
    grpc::ClientContext context;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (stopping_) return;
        context_ = &context;
    }
    lumiscope::link::v1::MonitorRequest monitor;
    const int32_t width = std::max(vire::FormatSize(request_.format), 1);
    const int64_t capacity = static_cast<int64_t>(std::max(request_.count, 0)) * width;
    const vire::DataObject out{request_.count, request_.format, "", {}};
    *monitor.mutable_link() = EncodeRequest(request_.fullDeviceName, request_.property, out, vire::DataObject{},
                                            vire::kAccessRead, request_.intervalMs, CallerIdentity{vire::UserName(), ""});
    monitor.mutable_link()->set_out_capacity(capacity);
    monitor.set_interval_ms(request_.intervalMs);

    auto reader = stub->Monitor(&context, monitor);
    LinkReply reply;
    std::vector<std::byte> buffer(static_cast<size_t>(capacity));
    while (reader->Read(&reply)) {
        vire::LinkData data;
        data.format = request_.format;
        vire::DataObject into{request_.count, request_.format, "", buffer};
        data.status = DecodeReply(reply, into, request_.count);
        data.count = into.count;
        data.bytes.assign(buffer.begin(), buffer.begin() + static_cast<ptrdiff_t>(into.count) * width);
        data.stampMs = reply.stamp_ms();
        if (onArrival_) onArrival_(data);
        std::lock_guard<std::mutex> lock(mutex_);
        latest_.hasReading = true;
        latest_.sequence += 1;
        latest_.reading = std::move(data);
        latest_.arrived = std::chrono::steady_clock::now();
        latest_.linkStatus = vire::kOk;
    }
    reader->Finish();
    std::lock_guard<std::mutex> lock(mutex_);
    context_ = nullptr;
}

void LiveMonitor::WaitRetry() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait_for(lock, std::chrono::milliseconds(kRetryMs), [this] { return stopping_; });
}

}  // namespace net
