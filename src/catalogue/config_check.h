// A whole configuration directory read the way the viewer reads it, with every
// problem reported by file and line.
//
// A problem is anything that makes the viewer fail, or show something other
// than what the file's author evidently meant: a reader that fails, a missing
// file, an unreadable number, a value a kept rule of the readers throws away
// (an APPEND that does not append, a LOW value replacing HIGH, comment marks
// that a threshold table reads as data), or a spectrum longer than the viewer
// can show.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace catalogue {

struct ConfigProblem {
    std::string file;  // native path
    int32_t line = 0;  // 1-based; 0 = the file as a whole
    std::string message;
};

struct ConfigCheckOptions {
    // The program's directory for threshold files; "" = the parent of the
    // configuration directory, as in the stand-alone viewer whose
    // configuration directory is the program's "configs" folder.
    std::string applicationPath;
    // Reads threshold link sources; empty = link sources are checked for
    // their form only.
    ThresholdLinkRead thresholdLink;
};

struct ConfigCheckResult {
    std::vector<ConfigProblem> problems;
    int32_t filesRead = 0;
};

// configDir: a native directory path, with or without a trailing separator.
ConfigCheckResult CheckConfigDirectory(const std::string& configDir,
                                       const ConfigCheckOptions& options = {});

// Property check boxes of the window, and the entries its property selection
// records (one more than it shows).
inline constexpr int kPropertyCheckBoxes = 4;
inline constexpr int kPropertyGroupSlots = 5;

}  // namespace catalogue
