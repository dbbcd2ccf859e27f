// Fuzz target for the configuration readers: the first byte picks a reader,
// the rest becomes the file it reads. Every reader must end with a result,
// never a crash, an uncaught exception or undefined behaviour.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <unistd.h>

#include "catalogue/readers.h"
#include "catalogue/numbers.h"
#include "catalogue/table.h"

namespace {

const std::string& Scratch() {
    static const std::string path = "/tmp/lumiscope-fuzz-" + std::to_string(::getpid()) + ".csv";
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t selector = data[0];
    const std::string contents(reinterpret_cast<const char*>(data + 1), size - 1);
    {
        std::ofstream out(Scratch(), std::ios::binary | std::ios::trunc);
        out << contents;
    }
    // One catalogue per run: the carry-over between files is exercised within
    // a run by reading the same data twice.
    catalogue::Catalogue cat;
    cat.ApplicationPath = "/tmp";
    cat.ProgramPath = "/tmp/";
    catalogue::QuietWindow window;
    switch (selector % 6) {
        case 0:
            catalogue::ReadMachineFile(cat, Scratch());
            break;
        case 1:
            catalogue::ReadSubsystemList(cat, window, Scratch());
            break;
        case 2:
            catalogue::ReadSpectrumConfig(cat, window, Scratch());
            catalogue::ReadSpectrumConfig(cat, window, Scratch());
            break;
        case 3: {
            std::vector<float> high(selector % 7 + 1), low(selector % 5 + 1);
            catalogue::ReadThresholds(cat, window, Scratch().substr(5), high, low);
            cat.ThresholdLink = [&](const std::string&, const std::string&, std::span<float> values, int32_t) {
                for (float& v : values) v = 1.0f;
                return static_cast<int16_t>(selector & 1);
            };
            catalogue::ReadThresholds(cat, window, contents.substr(0, 64), high, low);
            break;
        }
        case 4:
            catalogue::ReadHistoryFile(cat, Scratch());
            break;
        default: {
            const std::string line = contents.substr(0, 512);
            const std::string key = contents.size() > 512 ? contents.substr(512, 16) : "MAX";
            (void)catalogue::FindColumn(line, key);
            (void)catalogue::GetField(line, selector % 9);
            (void)catalogue::NumericValue(line);
            (void)catalogue::IsCleanNumber(line);
            break;
        }
    }
    return 0;
}
