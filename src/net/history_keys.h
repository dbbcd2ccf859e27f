// What a history address names in the configuration: the server key the
// archive stores it under, the channel and the element.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/model.h"

namespace net {

struct HistoryTarget {
    std::string server;    // store key: "/ORKA/BPMHIST" or "OKHISTORY"
    std::string property;  // the history property
    const sim::Channel* channel = nullptr;
    int32_t element = -1;  // -1 for "#0" (whole spectrum) and "#1" (probe)
    bool archive = false;
};

bool IsArchiverName(const std::string& server);

// The history server or archiver behind address + property; false when the
// configuration has no such history property (or device) there.
bool FindHistoryTarget(const sim::Model& model, const sim::Address& address, const std::string& property,
                       HistoryTarget& target);

// Every local history server address and archiver name the configuration uses.
std::vector<std::string> HistoryServerNames(const sim::Model& model);

}  // namespace net
