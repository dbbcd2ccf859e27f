// The live streams of a server, served without a thread each.
//
// Every open monitor stream is a reactor of the engine's callback API; one
// thread of this class reads each stream's device when it is due (once for
// all streams of the same link due at the same time) and hands the reading
// to the engine, which writes it without blocking anyone. A
// client that cancels (or goes away) releases its stream at once: nothing
// waits for the stream's next tick. A client too slow to take a reading
// before the next is due misses that one, never gets a burst.
#pragma once

#include <grpcpp/grpcpp.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "net/link_service.h"

namespace net {

class MonitorStreams {
public:
    MonitorStreams(LinkHandler& handler, int32_t streamsPerClient);
    ~MonitorStreams();  // finishes every stream and stops the thread
    MonitorStreams(const MonitorStreams&) = delete;
    MonitorStreams& operator=(const MonitorStreams&) = delete;

    // The reactor of a new stream: the link read every interval, or a
    // refusal (a client with its fill of streams, a server stopping).
    grpc::ServerWriteReactor<LinkReply>* Open(const CallContext& caller, const LinkRequest& link, int32_t intervalMs);
    // A stream refused before it begins, with status.
    static grpc::ServerWriteReactor<LinkReply>* Refuse(const grpc::Status& status);
    // Finishes every open stream and refuses new ones (before the server shuts down).
    void Stop();
    size_t OpenCount() const;

private:
    class Stream;
    using Clock = std::chrono::steady_clock;
    void Run();
    // The engine is done with a stream; false when a tick still uses it (and deletes it after).
    bool Closed(uint64_t id, const std::string& peer);

    LinkHandler& handler_;
    const int32_t streamsPerClient_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    uint64_t nextId_ = 1;
    std::map<uint64_t, Stream*> streams_;
    std::multimap<Clock::time_point, uint64_t> due_;
    std::map<std::string, int32_t> streamsByPeer_;
    std::thread thread_;
};

}  // namespace net
