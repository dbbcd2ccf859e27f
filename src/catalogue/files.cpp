#include "catalogue/files.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "catalogue/runtime_error.h"

namespace catalogue {
namespace fs = std::filesystem;

std::string NativePath(std::string_view systemPath) {
    std::string path(systemPath);
    if (path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]))) {
        const char drive = static_cast<char>(std::toupper(static_cast<unsigned char>(path[0])));
        const std::string variable = std::string("LUMISCOPE_DRIVE_") + drive;
        if (const char* root = std::getenv(variable.c_str()); root && *root) {
            std::string rest = path.substr(2);
            std::string mapped(root);
            if (!rest.empty() && rest.front() != '\\' && rest.front() != '/') mapped += '/';
            path = mapped + rest;
        }
    }
    for (char& c : path)
        if (c == '\\') c = '/';
    // Doubled separators ("dir\\file") are harmless; fold them for readable messages.
    std::string folded;
    folded.reserve(path.size());
    for (char c : path)
        if (!(c == '/' && !folded.empty() && folded.back() == '/')) folded.push_back(c);
    return folded;
}

std::string FileSearch(std::string_view systemPath) {
    if (systemPath.empty()) return "";
    const std::string native = NativePath(systemPath);
    std::error_code ec;
    const bool directoryPattern = native.back() == '/';
    if (directoryPattern) {
        if (!fs::is_directory(native, ec)) return "";
        std::string first;
        for (fs::directory_iterator it(native, ec), end; !ec && it != end; it.increment(ec)) {
            const std::string name = it->path().filename().string();
            if (first.empty() || name < first) first = name;
        }
        return first;
    }
    if (fs::is_regular_file(native, ec)) return fs::path(native).filename().string();
    return "";
}

std::vector<std::string> SplitLines(std::string_view contents) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    std::size_t i = 0;
    while (i < contents.size()) {
        const char c = contents[i];
        if (c == '\n' || c == '\r') {
            lines.emplace_back(contents.substr(start, i - start));
            if (c == '\r' && i + 1 < contents.size() && contents[i + 1] == '\n') ++i;
            start = i + 1;
        }
        ++i;
    }
    if (start < contents.size()) lines.emplace_back(contents.substr(start));
    return lines;
}

std::vector<std::string> ReadTextLines(std::string_view systemPath) {
    const std::string native = NativePath(systemPath);
    std::error_code ec;
    if (native.empty() || !fs::exists(native, ec))
        throw RuntimeError(ErrorKind::FileNotFound, "file not found: " + native);
    if (fs::is_directory(native, ec))
        throw RuntimeError(ErrorKind::FileRead, "not a file: " + native);
    const auto size = fs::file_size(native, ec);
    if (ec) throw RuntimeError(ErrorKind::FileRead, "cannot read " + native + ": " + ec.message());
    if (size > kMaxTableBytes)
        throw RuntimeError(ErrorKind::FileRead,
                           "file too large for a table (" + std::to_string(size) + " bytes): " + native);
    std::ifstream in(native, std::ios::binary);
    if (!in) throw RuntimeError(ErrorKind::FileRead, "cannot open " + native);
    std::string contents(static_cast<std::size_t>(size), '\0');
    in.read(contents.data(), static_cast<std::streamsize>(contents.size()));
    contents.resize(static_cast<std::size_t>(in.gcount()));
    if (in.bad()) throw RuntimeError(ErrorKind::FileRead, "read error in " + native);
    return SplitLines(contents);
}

}  // namespace catalogue
