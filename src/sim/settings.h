// The simulated accelerator's own settings: its seed, who may write, how far
// back the recorded past reaches, and the faults it plays.
//
// Read from "Simulation.csv" in the configuration directory (the viewer never
// reads that file), then overridden by the environment:
//   LUMISCOPE_SIM_SEED     a number
//   LUMISCOPE_SIM_WRITERS  user names, comma-separated (replaces the file's)
//   LUMISCOPE_SIM_FAULTS   TARGET=FAULT pairs, comma-separated (added to the file's)
// A fault TARGET is a server address ("/KALM/BPMSRV") or a server name
// ("OKHISTORY"); FAULT is
//   "down"      link error (2),
//   "slow"      answers after the caller's time-out, with the time-out code (45),
//   "slow:MS"   answers MS milliseconds late: a call whose time-out is not
//               longer than MS waits its time-out and gets 45, a longer one
//               waits MS and gets the answer,
//   "code:N"    answers N;
// each optionally followed by "*K": only the first K calls meet the fault,
// the server answers from then on ("down*2", "slow:1500*3").
// With the test clock a wait moves the clock instead of sleeping.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sim {

struct Fault {
    enum class Kind { Down, Slow, Code };
    Kind kind = Kind::Down;
    int16_t code = 0;      // for Kind::Code
    int32_t delayMs = 0;   // for Kind::Slow: 0 = past any time-out
    int32_t calls = 0;     // calls still to meet the fault; 0 = every call
};

inline constexpr int32_t kMaxFaultDelayMs = 600'000;
inline constexpr int32_t kMaxFaultCalls = 1'000'000;

struct SimulationSettings {
    uint64_t seed = 1;
    std::set<std::string> writers;
    std::map<std::string, Fault> faults;  // by target
    int32_t localHistoryStepS = 60;
    int32_t localHistoryDays = 3;
    int32_t archiveStepS = 900;
    int32_t archiveDays = 730;
    // Lines of the file or the environment that could not be used.
    std::vector<std::string> problems;
};

inline constexpr const char* kSimulationFileName = "Simulation.csv";

// configDir: native path, with or without a trailing separator. A missing
// file gives the defaults above.
SimulationSettings LoadSimulationSettings(const std::string& configDir);

// Parses one fault text ("down", "slow:1500", "code:45*2"); false when
// unreadable or out of range.
bool ParseFault(const std::string& text, Fault& fault);

}  // namespace sim
