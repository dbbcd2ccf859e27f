#include "net/program_options.h"

#include <algorithm>
#include <cstdlib>

namespace net {

std::string ProgramOptions::Get(const std::string& name, const std::string& fallback) const {
    const auto it = values.find(name);
    return it == values.end() ? fallback : it->second;
}

std::string EnvironmentOr(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

}  // namespace net
