#include "net/program_options.h"

#include <algorithm>
#include <cstdlib>

namespace net {

std::string ProgramOptions::Get(const std::string& name, const std::string& fallback) const {
    const auto it = values.find(name);
    return it == values.end() ? fallback : it->second;
}

ProgramOptions ParseProgramOptions(int argc, char** argv, const std::vector<std::string>& known) {
    ProgramOptions options;
    for (int i = 1; i < argc; i += 2) {
        const std::string name = argv[i];
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            options.problem = "unknown option \"" + name + "\"";
            return options;
        }
        if (i + 1 >= argc) {
            options.problem = "option " + name + " needs a value";
            return options;
        }
        options.values[name] = argv[i + 1];
    }
    return options;
}

std::string EnvironmentOr(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : fallback;
}

}  // namespace net
