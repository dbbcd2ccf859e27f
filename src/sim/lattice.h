// The element names and locations the simulated servers answer.
//
// The sample machines are named the way their operators know them (sections,
// cells, monitor numbers); a server the table does not know names its elements
// after the device with a running number, so any configuration directory works.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sim {

// Names of `count` elements of a server's device. An empty list means the
// server has no names of its own (it answers "#0").
std::vector<std::string> ElementNames(const std::string& context, const std::string& server,
                                      const std::string& device, int32_t count);

// Where each named element sits, for the external device-name sources.
std::vector<std::string> ElementLocations(const std::vector<std::string>& names);

}  // namespace sim
