// "--help" (or "-h") anywhere among a program's arguments asks for its usage
// on standard output and exit code 0, whatever else stands there.
#pragma once

#include <cstdio>
#include <cstring>

namespace tool_support {

inline bool HelpRequested(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return true;
    return false;
}

// Prints `usage` on standard output when help was asked for; the caller then
// exits with 0.
inline bool AnswerHelp(int argc, char** argv, const char* usage) {
    if (!HelpRequested(argc, argv)) return false;
    std::fputs(usage, stdout);
    return true;
}

}  // namespace tool_support
