#include "stream_load.h"

#include <grpcpp/grpcpp.h>

#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include "net/proto/link.grpc.pb.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace network_bench {
namespace {

using lumiscope::link::v1::Link;
using lumiscope::link::v1::LinkReply;

struct Stream {
    grpc::ClientContext context;
    std::unique_ptr<grpc::ClientAsyncReader<LinkReply>> reader;
    LinkReply reply;
    grpc::Status status;
    bool finishing = false;
};

}  // namespace

StreamLoad RunStreams(const std::string& address, const std::string& device, const std::string& property,
                      int32_t count, int32_t intervalMs, int streams, int settleS, int measureS,
                      const std::function<void(bool atEnd)>& during) {
    auto stub = Link::NewStub(grpc::CreateChannel(address, grpc::InsecureChannelCredentials()));
    grpc::CompletionQueue queue;
    lumiscope::link::v1::MonitorRequest monitor;
    auto* link = monitor.mutable_link();
    link->set_device(device);
    link->set_property(property);
    link->set_access(vire::kAccessRead);
    link->set_out_format(vire::kFormatSingle);
    link->set_out_count(count);
    link->set_out_capacity(int64_t{count} * 4);
    monitor.set_interval_ms(intervalMs);

    std::vector<std::unique_ptr<Stream>> open;
    for (int i = 0; i < streams; ++i) {
        auto stream = std::make_unique<Stream>();
        stream->reader = stub->AsyncMonitor(&stream->context, monitor, &queue, stream.get());
        open.push_back(std::move(stream));
    }
    std::atomic<bool> measuring{false};
    StreamLoad load;
    std::set<int64_t> stamps;
    std::thread drain([&] {
        void* tag = nullptr;
        bool ok = false;
        while (queue.Next(&tag, &ok)) {
            auto* stream = static_cast<Stream*>(tag);
            if (stream->finishing) continue;  // its status is in
            if (!ok) {                        // the stream ended: collect why
                stream->finishing = true;
                stream->reader->Finish(&stream->status, stream);
                if (measuring) load.failed += 1;
                continue;
            }
            if (measuring && stream->reply.ByteSizeLong() > 0) {
                (stream->reply.status() == 0 && stream->reply.count() == count ? load.readings : load.failed) += 1;
                stamps.insert(stream->reply.stamp_ms() / intervalMs);
            }
            stream->reply.Clear();
            stream->reader->Read(&stream->reply, stream);
        }
    });
    std::this_thread::sleep_for(std::chrono::seconds(settleS));
    during(false);
    measuring = true;
    std::this_thread::sleep_for(std::chrono::seconds(measureS));
    measuring = false;
    during(true);
    for (auto& stream : open) stream->context.TryCancel();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    queue.Shutdown();
    drain.join();
    load.ticks = static_cast<int64_t>(stamps.size());
    return load;
}

}  // namespace network_bench
