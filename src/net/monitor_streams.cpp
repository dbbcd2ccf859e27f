#include "net/monitor_streams.h"

#include "vire/clock.h"
#include "vire/completion_codes.h"

namespace net {
namespace {

constexpr int32_t kShortestIntervalMs = 10;

// A stream refused before it began: finished at once, gone when the engine is done with it.
class RefusedStream : public grpc::ServerWriteReactor<LinkReply> {
public:
    explicit RefusedStream(const grpc::Status& status) { Finish(status); }
    void OnDone() override { delete this; }
};

}  // namespace

// The engine owns a stream until OnDone; until then the registry of
// MonitorStreams finds it by id. A tick reads the device without the
// registry's lock (the engine's threads must never wait for a reading) and
// marks the stream busy meanwhile: OnDone during a tick leaves the deletion
// to the tick. The stream's own lock orders its writes and its finish.
class MonitorStreams::Stream : public grpc::ServerWriteReactor<LinkReply> {
public:
    Stream(MonitorStreams& owner, uint64_t id, CallContext caller, LinkRequest link, int32_t intervalMs)
        : owner_(owner), id_(id), caller_(std::move(caller)), link_(std::move(link)),
          interval_(std::chrono::milliseconds(std::max(intervalMs, kShortestIntervalMs))),
          mostElements_(owner.handler_.MostElements(link_)) {}

    Clock::duration Interval() const { return interval_; }

    const LinkRequest& Link() const { return link_; }

    // A fresh reading of the stream's link.
    LinkReply Read() {
        ServerBuffers buffers;
        vire::Status status = vire::kServerError;
        try {
            PrepareBuffers(link_, mostElements_, buffers);
            status = owner_.handler_.Answer(link_, buffers, caller_, 0);
        } catch (...) {
            status = vire::kServerError;
        }
        LinkReply reply;
        EncodeReply(status, buffers, reply);
        reply.set_stamp_ms(vire::NowMilliseconds());
        return reply;
    }

    // Written unless the previous reading is still on its way.
    void Deliver(const LinkReply& reading) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (finished_ || writing_) return;
        reply_ = reading;
        writing_ = true;
        StartWrite(&reply_);
    }

    // Set and read under the registry's lock: a tick is using the stream
    // (busy), the engine is done with it (closed).
    bool busy = false;
    bool closed = false;

    void End(const grpc::Status& status) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (finished_) return;
        finished_ = true;
        Finish(status);
    }

    void OnWriteDone(bool ok) override {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            writing_ = false;
        }
        if (!ok) End(grpc::Status::CANCELLED);
    }
    void OnCancel() override { End(grpc::Status::CANCELLED); }
    void OnDone() override {
        if (owner_.Closed(id_, caller_.peerAddress)) delete this;
    }

private:
    MonitorStreams& owner_;
    const uint64_t id_;
    const CallContext caller_;
    const LinkRequest link_;
    const Clock::duration interval_;
    const int64_t mostElements_;
    std::mutex mutex_;
    bool writing_ = false;
    bool finished_ = false;
    LinkReply reply_;
};

MonitorStreams::MonitorStreams(LinkHandler& handler, int32_t streamsPerClient)
    : handler_(handler), streamsPerClient_(streamsPerClient), thread_([this] { Run(); }) {}

MonitorStreams::~MonitorStreams() {
    Stop();
    thread_.join();
}

grpc::ServerWriteReactor<LinkReply>* MonitorStreams::Open(const CallContext& caller, const LinkRequest& link,
                                                          int32_t intervalMs) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (stopping_) return new RefusedStream(grpc::Status(grpc::StatusCode::UNAVAILABLE, "the server is stopping"));
    int32_t& open = streamsByPeer_[caller.peerAddress];
    if (open >= streamsPerClient_)
        return new RefusedStream(grpc::Status(grpc::StatusCode::RESOURCE_EXHAUSTED,
                                              "more than " + std::to_string(streamsPerClient_) +
                                                  " open streams from " + caller.peerAddress));
    open += 1;
    const uint64_t id = nextId_++;
    auto* stream = new Stream(*this, id, caller, link, intervalMs);
    streams_[id] = stream;
    due_.emplace(Clock::now(), id);  // the first reading at once
    wake_.notify_all();
    return stream;
}

grpc::ServerWriteReactor<LinkReply>* MonitorStreams::Refuse(const grpc::Status& status) {
    return new RefusedStream(status);
}

void MonitorStreams::Stop() {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
    for (auto& [id, stream] : streams_) stream->End(grpc::Status::OK);
    wake_.notify_all();
}

size_t MonitorStreams::OpenCount() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return streams_.size();
}

bool MonitorStreams::Closed(uint64_t id, const std::string& peer) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (--streamsByPeer_[peer] <= 0) streamsByPeer_.erase(peer);
    const auto it = streams_.find(id);
    if (it == streams_.end()) return true;
    Stream* stream = it->second;
    streams_.erase(it);
    if (!stream->busy) return true;
    stream->closed = true;  // the tick deletes it when it is done with it
    return false;
}

void MonitorStreams::Run() {
    // Streams of the same link due at the same time share one reading: ticks
    // fall on multiples of the interval, so a thousand viewers of a device
    // cost one reading a second, not a thousand.
    std::map<std::string, std::pair<Clock::time_point, LinkReply>> recent;
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        if (stopping_) return;  // every stream is finished: nothing is read any more
        if (due_.empty()) {
            wake_.wait_for(lock, std::chrono::milliseconds(100));
            continue;
        }
        const auto [when, id] = *due_.begin();
        if (when > Clock::now()) {
            wake_.wait_until(lock, when);
            continue;
        }
        due_.erase(due_.begin());
        const auto it = streams_.find(id);
        if (it == streams_.end()) continue;  // cancelled meanwhile: nothing more to do for it
        Stream* stream = it->second;
        stream->busy = true;
        lock.unlock();

        const std::string key = stream->Link().SerializeAsString();
        auto& [readAt, reading] = recent[key];
        if (readAt != when) {
            reading = stream->Read();
            readAt = when;
        }
        stream->Deliver(reading);
        if (recent.size() > 256) recent.clear();  // links come and go: forget them now and then

        lock.lock();
        stream->busy = false;
        if (stream->closed) {
            delete stream;
            continue;
        }
        const auto interval = stream->Interval();
        const auto now = Clock::now();
        // The next multiple of the interval (skipping any that passed: never a burst).
        due_.emplace(Clock::time_point((now.time_since_epoch() / interval + 1) * interval), id);
    }
}

}  // namespace net
