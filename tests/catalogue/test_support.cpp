#include "test_support.h"

#include <atomic>
#include <fstream>
#include <random>
#include <unistd.h>

namespace catalogue_test {

ScratchDir::ScratchDir() {
    static std::atomic<int> counter{0};
    dir_ = std::filesystem::temp_directory_path() / ("lumiscope-test-" + std::to_string(::getpid()) + "-" +
                                                     std::to_string(counter++) + "-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(dir_);
}

ScratchDir::~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(dir_, ignored);
}

std::string ScratchDir::Write(const std::string& name, const std::string& contents) const {
    const auto path = dir_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << contents;
    return path.string();
}

std::string Lines(const Texts& lines) {
    std::string text;
    for (const auto& line : lines) text += line + "\r\n";
    return text;
}

Texts Numbered(Texts lines, int n, const std::string& before, const std::string& after) {
    for (int i = 0; i < n; ++i) lines.push_back(before + std::to_string(i) + after);
    return lines;
}

}  // namespace catalogue_test
