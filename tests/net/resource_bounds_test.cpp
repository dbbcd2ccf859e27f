// What a client can make a device server spend: memory by the capacity it
// claims, names, request sizes and open streams. Asked with raw requests, as
// an outside client written from the schema alone would.
#include <fstream>
#include <thread>

#include "net/proto/link.grpc.pb.h"
#include "net/wire_codec.h"
#include "network_fixture.h"

namespace net_test {
namespace {

using lumiscope::link::v1::Link;
using lumiscope::link::v1::LinkReply;
using lumiscope::link::v1::LinkRequest;

// A number of /proc/PID/status ("VmHWM:", "Threads:").
int64_t ProcessStatus(pid_t pid, const std::string& field) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0) return std::stoll(line.substr(field.size()));
    return -1;
}

LinkRequest Request(const std::string& device, const std::string& property, int32_t count, int64_t capacity) {
    auto request = net::EncodeRequest(device, property, {count, vire::kFormatSingle, "", {}}, {}, vire::kAccessRead, 0, {});
    request.set_out_capacity(capacity);
    return request;
}

TEST_F(NetworkSuite, ClaimedCapacitiesLongNamesAndLargeRequestsCostTheServerNothing) {
    auto stub = Link::NewStub(grpc::CreateChannel(devices.Address(), grpc::InsecureChannelCredentials()));
    const int64_t before = ProcessStatus(devices.Pid(), "VmHWM:");
    std::vector<std::thread> callers;
    for (int i = 0; i < 16; ++i)
        callers.emplace_back([&] {
            grpc::ClientContext context;
            LinkReply reply;
            EXPECT_TRUE(stub->Call(&context, Request("/ORKA/BPMQ1/ORBIT", "ORBIT.X", INT32_MAX, 1LL << 40), &reply).ok());
            EXPECT_EQ(reply.count(), 32);  // what the device has
        });
    for (auto& caller : callers) caller.join();
    EXPECT_LT(ProcessStatus(devices.Pid(), "VmHWM:") - before, 16 * 1024) << "kB grown";

    // device, property, the request's extra bytes, engine code, completion code
    const std::tuple<std::string, std::string, size_t, grpc::StatusCode, vire::Status> cases[] = {
        {std::string(300, 'X'), "ORBIT.X", 0, grpc::StatusCode::OK, vire::kInvalidInput},
        {"/ORKA/BPMQ1/ORBIT", std::string(15 << 20, 'P'), 0, grpc::StatusCode::RESOURCE_EXHAUSTED, 0},
        {"/ORKA/BPMQ1/ORBIT", "ORBIT.X", 2 << 20, grpc::StatusCode::RESOURCE_EXHAUSTED, 0},
    };
    for (const auto& [device, property, extra, engine, code] : cases) {
        grpc::ClientContext context;
        LinkReply reply;
        auto request = Request(device, property, 4, 16);
        request.set_in_data(std::string(extra, 'i'));
        EXPECT_EQ(stub->Call(&context, request, &reply).error_code(), engine) << device.size() << "/" << property.size();
        EXPECT_EQ(reply.status(), code) << device.size() << "/" << property.size();
    }
}

// Monitor streams of one client, each read once (every minute after that).
struct Streams {
    std::unique_ptr<Link::Stub> stub;
    std::vector<std::unique_ptr<grpc::ClientContext>> contexts;
    std::vector<std::unique_ptr<grpc::ClientReader<LinkReply>>> readers;

    explicit Streams(const std::string& address)
        : stub(Link::NewStub(grpc::CreateChannel(address, grpc::InsecureChannelCredentials()))) {}
    ~Streams() { CancelAll(); }
    bool Open() {
        lumiscope::link::v1::MonitorRequest monitor;
        *monitor.mutable_link() = Request("/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, 128);
        monitor.set_interval_ms(60'000);
        contexts.push_back(std::make_unique<grpc::ClientContext>());
        readers.push_back(stub->Monitor(contexts.back().get(), monitor));
        LinkReply reply;
        return readers.back()->Read(&reply);
    }
    // cancel: false for a stream the server has ended already (its status is waiting).
    grpc::Status Close(size_t i, bool cancel = true) {
        if (cancel) contexts[i]->TryCancel();
        const grpc::Status status = readers[i]->Finish();
        readers[i].reset();
        return status;
    }
    void CancelAll() {
        for (size_t i = 0; i < readers.size(); ++i)
            if (readers[i]) Close(i);
    }
};

TEST(StreamLimit, AThousandStreamsTakeNoThreadOfTheirOwnOneMoreIsRefusedAndCancelledOnesAreReleasedAtOnce) {
    ServerProcess server;
    ASSERT_TRUE(server.Start("lumiscope-devserver", {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--max-streams", "1000"}))
        << "a server of its own, with a limit a test can reach";
    Streams streams(server.Address());
    ASSERT_TRUE(streams.Open());
    const int64_t threads = ProcessStatus(server.Pid(), "Threads:");
    for (int i = 1; i < 1000; ++i) ASSERT_TRUE(streams.Open()) << i;
    // The engine's pools may grow by a few threads under the burst, never by one a stream.
    EXPECT_LT(ProcessStatus(server.Pid(), "Threads:"), threads + 16);
    ASSERT_FALSE(streams.Open()) << "one more is refused";  // otherwise the next line waits for it for good
    EXPECT_EQ(streams.Close(1000, false).error_code(), grpc::StatusCode::RESOURCE_EXHAUSTED);
    // A cancelled stream is given back long before its next reading.
    streams.Close(0);
    EXPECT_TRUE(WaitUntil([&] { return streams.Open(); }, std::chrono::seconds(2)));
    streams.CancelAll();
    EXPECT_TRUE(WaitUntil([&] { return ProcessStatus(server.Pid(), "Threads:") <= threads + 8; },
                          std::chrono::seconds(2))) << ProcessStatus(server.Pid(), "Threads:");
}

}  // namespace
}  // namespace net_test
