// The command line of vire-call.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class CallKind { Read, Write, Names, Properties, History, Spectrum, FormatName, ErrorText, Ctime };

struct CallArguments {
    CallKind kind = CallKind::Read;
    std::string address;   // "/CONTEXT/SERVER/DEVICE" (server only for names and properties)
    std::string property;
    int32_t count = 1;
    bool countGiven = false;
    int16_t format = 517;
    std::vector<double> writeValues;
    std::vector<int32_t> input;  // LONG input of a read
    int64_t from = 0, to = 0, at = 0;
    int32_t mode = 0;
    int32_t timeoutMs = 1000;
    bool json = false;
    bool simulate = false;  // the simulated accelerator even when the network is set
    std::string configDir;  // the simulated accelerator's
    std::optional<std::string> user;
    int64_t number = 0;  // argument of the conversions
};

// Parses argv (without the program name); "" on success, else what is wrong.
// Times are Unix seconds, "now" or "now-SECONDS".
std::string ParseArguments(const std::vector<std::string>& args, int64_t now, CallArguments& parsed);

extern const char* const kUsage;
