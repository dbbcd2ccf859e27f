// The rules of the start-up that need no window: the start arguments, the
// fixed configuration directory and which machine's history file applies.
#pragma once

#include <string>

#include "catalogue/catalogue.h"

namespace viewer {

struct StartArguments {
    std::string machine;
    std::string subsystem;
    std::string extras;
};

// Splits the command line once at "," and once at " "; the split with more
// parts wins, a tie goes to " ". One part is the machine, two add the
// subsystem, three add the extras switch; four or more are ignored.
StartArguments SplitStartArguments(const std::string& commandLine);

// "L:\bin.orka\spectrum\configs\": where the window looks when the viewer
// control opened it.
std::string FixedConfigPath();

// The history file of the current machine; under the combined entry (4),
// that of the machine the subsystem's file names (ORKA, VESTA, LYRAS, else 0).
std::string HistoryFileMachineName(const catalogue::Catalogue& cat);

// The first of `count` entries whose text contains `part` (case-sensitive)
// becomes `current`; without a match `current` keeps its value.
template <typename TextOf>
void FirstContaining(const std::string& part, int16_t count, int16_t& current, TextOf textOf) {
    for (int16_t i = 0; i < count; ++i)
        if (textOf(i).find(part) != std::string::npos) {
            current = i;
            return;
        }
}

}  // namespace viewer
