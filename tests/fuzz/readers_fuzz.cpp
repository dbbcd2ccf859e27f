// Fuzz target for the configuration readers: the first byte picks a reader,
// the rest becomes the file it reads. Every reader, and the directory check
// over them, must end with a result, never a crash, an uncaught exception or
// undefined behaviour.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "catalogue/config_check.h"
#include "catalogue/numbers.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace {

// This run's scratch directory: "<tmp>/lumiscope-fuzz-<pid>/configs/", removed
// when the fuzzer exits.
const std::filesystem::path& ScratchConfigs() {
    static const std::filesystem::path dir = [] {
        const auto root = std::filesystem::temp_directory_path() / ("lumiscope-fuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(root / "configs");
        static const std::filesystem::path removeAtExit = root;
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(removeAtExit, ignored);
        });
        return root / "configs";
    }();
    return dir;
}

std::string Write(const std::string& name, const std::string& contents) {
    const auto path = ScratchConfigs() / name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << contents;
    return path.string();
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
    (void)catalogue::CheckConfigDirectory(ScratchConfigs().string());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t selector = data[0];
    const std::string contents(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string file = Write("input.csv", contents);
    catalogue::Catalogue cat;
    cat.ApplicationPath = ScratchConfigs().string();
    cat.ProgramPath = ScratchConfigs().string() + "/";
    catalogue::QuietWindow window;
    switch (selector % 7) {
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
        case 5: {
            const std::string line = contents.substr(0, 512);
            const std::string key = contents.size() > 512 ? contents.substr(512, 16) : "MAX";
            (void)catalogue::FindColumn(line, key);
            (void)catalogue::GetField(line, selector % 9);
            (void)catalogue::NumericValue(line);
            (void)catalogue::IsCleanNumber(line);
            break;
        }
        default:
            CheckDirectoryOf(contents);
            break;
    }
    return 0;
}
