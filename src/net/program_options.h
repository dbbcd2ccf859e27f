// The network programs' command lines: "--name value" pairs.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace net {

struct ProgramOptions {
    std::map<std::string, std::string> values;
    std::string problem;  // empty when the command line was readable

    std::string Get(const std::string& name, const std::string& fallback = "") const;
};

// Every argument must be one of `known` followed by its value.
ProgramOptions ParseProgramOptions(int argc, char** argv, const std::vector<std::string>& known);

// The environment's value, or fallback when unset or empty.
std::string EnvironmentOr(const char* name, const std::string& fallback);

}  // namespace net
