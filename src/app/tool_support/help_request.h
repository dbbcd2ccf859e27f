// "--help" (or "-h") anywhere among a program's arguments asks for its usage
// on standard output and exit code 0, whatever else stands there.
#pragma once

#include <cstring>

namespace tool_support {

inline bool HelpRequested(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return true;
    return false;
}

}  // namespace tool_support
