// The network programs' options as the command line gave them, by name.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace net {

struct ProgramOptions {
    std::map<std::string, std::string> values;

    std::string Get(const std::string& name, const std::string& fallback = "") const;
};

// The environment's value, or fallback when unset or empty.
std::string EnvironmentOr(const char* name, const std::string& fallback);

}  // namespace net
