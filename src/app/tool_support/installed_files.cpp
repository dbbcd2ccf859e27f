#include "tool_support/installed_files.h"

#include <system_error>

#ifndef LUMISCOPE_DATA_FROM_BIN
#error "the build passes LUMISCOPE_DATA_FROM_BIN"
#endif

namespace tool_support {

std::filesystem::path ProgramDirectory() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path() : program.parent_path();
}

std::filesystem::path InstalledDataDirectory() {
    const std::filesystem::path directory = ProgramDirectory();
    if (directory.empty()) return {};
    return (directory / LUMISCOPE_DATA_FROM_BIN).lexically_normal();
}

std::string SampleConfigDirectory() {
    const std::filesystem::path beside = ProgramDirectory() / "configs";
    std::error_code error;
    if (std::filesystem::is_directory(beside, error)) return beside.string();
    return (InstalledDataDirectory() / "configs").string();
}

}  // namespace tool_support
