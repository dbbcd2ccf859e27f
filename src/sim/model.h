// The simulated accelerator's inventory, read from a configuration directory:
// every live channel a data-source file names, every machine quantity of the
// history files, the threshold tables behind link sources and the location
// lists behind external device-name sources.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "sim/physics.h"

namespace sim {

struct Channel {
    std::string context, server, device, property;  // live address
    std::string serverAddress;                      // "/CONTEXT/SERVER"
    std::string hstServer, hstProperty;             // local history (full address)
    std::string archiver, arcProperty;              // archiver name ("OKHISTORY")
    int32_t size = 1;
    bool reverse = false;  // delivers its elements last to first
    Signal signal;
    std::vector<std::string> names;  // empty: the server has no names ("#0")
};

struct Model {
    std::vector<Channel> channels;
    // Threshold tables by device address and property ("/ORKA/BLMSRV/LOSS.RING",
    // "THRESHOLD"); writes change them.
    std::map<std::pair<std::string, std::string>, std::vector<float>> thresholds;
    // Location texts by device address and property of the name sources.
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> locations;
    // What could not be read (the sim serves what it could).
    std::vector<std::string> problems;
};

// configDir: native path, with or without a trailing separator.
Model BuildModel(const std::string& configDir, uint64_t seed);

// "/CONTEXT/SERVER/DEVICE" split into its parts; a name without a leading "/"
// is a bare server name ("OKHISTORY"). Parts that are missing stay empty.
struct Address {
    std::string context, server, device;
    // "/CONTEXT/SERVER", or the bare server name.
    std::string ServerAddress() const;
};
Address ParseAddress(const std::string& fullDeviceName);

}  // namespace sim
