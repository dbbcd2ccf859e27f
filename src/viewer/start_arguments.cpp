#include <string>
#include <vector>

#include "viewer/startup_rules.h"

namespace viewer {

namespace {

// Every part, empty ones included, as the runtime's split gives them.
std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (char c : text) {
        if (c == separator) parts.emplace_back();
        else parts.back() += c;
    }
    return parts;
}

}  // namespace

StartArguments SplitStartArguments(const std::string& commandLine) {
    StartArguments args;
    if (commandLine.empty()) return args;
    const std::vector<std::string> commas = Split(commandLine, ',');
    const std::vector<std::string> blanks = Split(commandLine, ' ');
    const std::vector<std::string>& parts = commas.size() > blanks.size() ? commas : blanks;
    if (parts.size() > 3) return args;
    args.machine = parts[0];
    if (parts.size() > 1) args.subsystem = parts[1];
    if (parts.size() > 2) args.extras = parts[2];
    return args;
}

}  // namespace viewer
