// Fuzz target for the configuration readers and the middleware's reply
// decoding: the first byte picks a reader (or a query), the rest becomes the
// file it reads (or the server's reply). Every reader, the directory check
// over them and every query must end with a result, never a crash, an
// uncaught exception, undefined behaviour or an allocation sized by the input.
#include <cstddef>
#include <cstdint>
#include <string>

#include "catalogue/config_check.h"
#include "catalogue/readers.h"
#include "vire/link.h"
#include "vire/queries.h"
#include "vire/threshold_link.h"
#include "vire/transport.h"
#include "fake_live_transport.h"
#include "test_support.h"

namespace {

// This run's scratch directory, removed when the fuzzer exits; the tables go
// into its "configs" folder.
const catalogue_test::ScratchDir kScratch;
const std::string kConfigs = kScratch.Path("configs");

std::string Write(const std::string& name, const std::string& contents) {
    return kScratch.Write("configs/" + name, contents);
}

// A directory whose one machine has one subsystem and a history file, all of
// whose tables (data source, history, thresholds) hold the fuzzed bytes. The
// threshold table takes the name the sample's beam-loss seeds refer to.
void CheckDirectoryOf(const std::string& contents) {
    Write("config_machines.csv", "MACHINE,CONFIGFILE,MACHINEFILE\r\nORKA,S.csv,F.HIST\r\n");
    Write("S.csv", "FILENAME,DESCRIPTION\r\nF.csv,Fuzzed\r\n");
    Write("F.csv", contents);
    Write("F.HIST", contents);
    Write("ORKA_BLM_THR.csv", contents);
    (void)catalogue::CheckConfigDirectory(kConfigs);
}

// The bytes as a 32-bit number from offset on (0 past the end).
int32_t Int32At(const std::string& bytes, size_t offset) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4 && offset + i < bytes.size(); ++i)
        value |= static_cast<uint32_t>(static_cast<uint8_t>(bytes[offset + i])) << (8 * i);
    return static_cast<int32_t>(value);
}

// A server whose every reply is the fuzzed bytes: status and count from the
// first eight bytes (any value, negative and huge ones included), the rest
// copied into as much of the caller's buffer as it fills.
void DecodeReplies(catalogue::Catalogue& cat, catalogue::QuietWindow& window, const std::string& reply) {
    auto server = std::make_shared<test_support::FakeLiveTransport>();
    server->call = [&reply](auto&&, auto&&, vire::DataObject& out, auto&&...) {
        const size_t n = reply.size() > 8 ? std::min(out.buffer.size(), reply.size() - 8) : 0;
        for (size_t i = 0; i < n; ++i) out.buffer[i] = static_cast<std::byte>(reply[8 + i]);
        out.count = Int32At(reply, 4);
        out.format = static_cast<int16_t>(Int32At(reply, 2));
        return static_cast<vire::Status>(Int32At(reply, 0) % 3 == 0 ? 0 : Int32At(reply, 0));
    };
    vire::SetTransport(server);
    int32_t count = Int32At(reply, 1);  // what the caller asks for, any value
    std::vector<std::string> names;
    (void)vire::GetDeviceNames("/C/S", "P", count, names);
    count = 0;
    (void)vire::GetDeviceNames("/C/S", "P", count, names);
    vire::PropertyList properties;
    (void)vire::GetProperties("/C/S", "P", properties);
    vire::InstallThresholdLink(cat);
    cat.SpectrumList[0].ThresholdSource = "/C/S/D[THR]";
    cat.SpectrumList[0].Size = Int32At(reply, 3);  // a size set by hand, unchecked
    (void)catalogue::ReadChannelThresholds(cat, window, 0);
    vire::SetTransport(nullptr);
}

// A data-source row whose SIZE is a fuzzed number, huge and negative ones
// included, read and then prepared as the window prepares a single channel.
void ReadSizedChannel(catalogue::Catalogue& cat, catalogue::QuietWindow& window, const std::string& contents) {
    // "e" and a number as text (the seeds), or a number from the bytes.
    const std::string size = !contents.empty() && contents[0] == 'e'
                                 ? contents.substr(1, 12)
                                 : std::to_string(static_cast<int64_t>(Int32At(contents, 0)) * (contents.size() % 5));
    const std::string file = Write("sized.csv", "CONTEXT,SERVER,PROPERTY,SIZE,HIGH\r\nC,S/D,P," + size +
                                                    ",input.csv\r\n");
    if (catalogue::ReadSpectrumConfig(cat, window, file) == 0) (void)catalogue::ReadChannelThresholds(cat, window, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t selector = data[0];
    const std::string contents(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string file = Write("input.csv", contents);
    catalogue::Catalogue cat;
    cat.ApplicationPath = kConfigs;
    cat.ProgramPath = kConfigs + "/";
    catalogue::QuietWindow window;
    switch (selector % 8) {
        case 0:
            catalogue::ReadMachineFile(cat, file);
            break;
        case 1:
            catalogue::ReadSubsystemList(cat, window, file);
            break;
        case 2:
            // Twice into one catalogue: the second read carries over the first.
            catalogue::ReadSpectrumConfig(cat, window, file);
            catalogue::ReadSpectrumConfig(cat, window, file);
            break;
        case 3: {
            std::vector<float> high(selector % 7 + 1), low(selector % 5 + 1);
            catalogue::ReadThresholds(cat, window, "input.csv", high, low);
            cat.ThresholdLink = [&](const std::string&, const std::string&, std::span<float> values, int32_t) {
                for (float& v : values) v = 1.0f;
                return static_cast<int16_t>(selector & 1);
            };
            catalogue::ReadThresholds(cat, window, contents.substr(0, 64), high, low);
            break;
        }
        case 4:
            catalogue::ReadHistoryFile(cat, file);
            break;
        case 5:
            CheckDirectoryOf(contents);
            break;
        case 6:
            DecodeReplies(cat, window, contents);
            break;
        default:
            ReadSizedChannel(cat, window, contents);
            break;
    }
    return 0;
}
