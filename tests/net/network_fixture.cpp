#include "network_fixture.h"

#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net_test {

std::unique_ptr<ServerProcess> NetworkSuite::names;
std::unique_ptr<ServerProcess> NetworkSuite::devices;

void NetworkSuite::SetUpTestSuite() {
    names = std::make_unique<ServerProcess>();
    devices = std::make_unique<ServerProcess>();
    if (!names->Start("lumiscope-names", {"--listen", "127.0.0.1:0"})) return;
    devices->Start("lumiscope-devserver",
                   // A short lease: the later tests need the heartbeats.
                   {"--config", LUMISCOPE_SAMPLE_CONFIG_DIR, "--shard", "0/1", "--names", names->Address(),
                    "--lease-ms", "900"},
                   kSimEnvironment);
}

void NetworkSuite::TearDownTestSuite() {
    devices.reset();
    names.reset();
}

void NetworkSuite::SetUp() {
    ASSERT_TRUE(names->Running()) << "the name service did not start";
    ASSERT_TRUE(devices->Running()) << "the device server did not start";
    // The device server registers its names as it starts listening.
    ASSERT_TRUE(WaitUntil([] { return Read(*Transport(), "/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatSingle, 1).status == 0; },
                          std::chrono::seconds(10)));
}

std::shared_ptr<net::NetworkTransport> NetworkSuite::Transport(const std::string& clientHost) {
    return std::make_shared<net::NetworkTransport>(net::NetworkSettings{names->Address(), "", clientHost});
}

Answer Read(vire::Transport& transport, const std::string& device, const std::string& property, int16_t format,
            int32_t count, const std::vector<int32_t>& input, int32_t timeoutMs) {
    Answer answer;
    const int32_t width = std::max(vire::FormatSize(format), 1);
    std::vector<std::byte> buffer(static_cast<size_t>(std::max(count, 0)) * static_cast<size_t>(width));
    std::vector<std::byte> in(input.size() * 4);
    for (size_t i = 0; i < input.size(); ++i) vire::StoreInt32(in, 4 * i, input[i]);
    vire::DataObject out{count, format, "", buffer};
    answer.status = transport.Call(device, property, out,
                                   vire::DataObject{static_cast<int32_t>(input.size()), vire::kFormatLong, "", in},
                                   vire::kAccessRead, timeoutMs);
    answer.count = out.count;
    buffer.resize(static_cast<size_t>(std::max(out.count, 0)) * static_cast<size_t>(width));
    answer.bytes = buffer;
    return answer;
}

vire::Status WriteSingle(vire::Transport& transport, const std::string& device, const std::string& property,
                         float value) {
    std::vector<std::byte> in(4);
    vire::StoreFloat(in, 0, value);
    vire::DataObject out{};
    return transport.Call(device, property, out, vire::DataObject{1, vire::kFormatSingle, "", in}, vire::kAccessWrite,
                          3000);
}

}  // namespace net_test
