// The combined operations entry of the machine menu.
//
// Its subsystems belong to the first three machines; which one is told by the
// subsystem's file name, and that machine's history file is the one read.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace catalogue {

inline constexpr int16_t kCombinedMachineEntry = 4;

// 0 for a file name that contains "ORKA" (in any letter case), else 1 for
// "VESTA", else 2 for "LYRAS"; nothing when it names none of them (the window
// then takes machine 0).
std::optional<int16_t> MachineNamedInFileName(std::string_view fileName);

}  // namespace catalogue
