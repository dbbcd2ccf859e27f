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
    std::vector<std::string> words;  // the command line's address and property
};

namespace command_line {
class CommandLine;
}

// Declares vire-call's options on the command line, to be read into `parsed`.
// Times are Unix seconds, "now" or "now-SECONDS", taken relative to `now`.
void DeclareArguments(command_line::CommandLine& commandLine, int64_t now, CallArguments& parsed);

// What the options cannot check one by one: "" when the call is complete,
// else what is missing.
std::string CompleteArguments(CallArguments& parsed);
