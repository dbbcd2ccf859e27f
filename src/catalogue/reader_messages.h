// The texts the window shows when reading the configuration fails, and the
// file names they mention. The window, lumiscope-config and the directory
// check all word a failure the same way.
#pragma once

#include <string>
#include <string_view>

namespace catalogue {

inline constexpr std::string_view kMachineListFileName = "config_machines.csv";
inline constexpr std::string_view kLocalSubsystemListFileName = "SpectrumInfo.csv";

// The machine list could not be read.
inline std::string ReadMachineInfoFailedText(std::string_view fileName = kMachineListFileName) {
    return "Read Machine-Info File " + std::string(fileName) + " failed !";
}

// A machine's subsystem list (named by its ConfigFile) could not be read.
inline std::string ReadDataSourceFailedText(std::string_view configFile) {
    return "Read Data Source Config File: " + std::string(configFile) + " failed !";
}

// A machine's history file could not be read.
inline constexpr std::string_view kReadMachineSourceFailedText = "Read Machine Source Config File failed !";

// A threshold table has more rows than the channel has elements.
inline constexpr std::string_view kThresholdOutOfBoundsText = "Threshold array out of bounds !";

}  // namespace catalogue
