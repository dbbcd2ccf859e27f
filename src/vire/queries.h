// Name and property queries of a server.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "vire/data_object.h"

namespace vire {

// Width of one name in a ".NAM" answer and of one record in a "PROPS" answer.
inline constexpr int32_t kDeviceNameWidth = 16;
inline constexpr int32_t kPropertyRecordWidth = 32;
// Records a property query makes room for.
inline constexpr int32_t kMaxPropertyRecords = 256;
// Names asked for when the caller gives a count of 0.
inline constexpr int32_t kDefaultNameCount = 2000;
// Most names one query asks for: one per element of the longest spectrum.
inline constexpr int32_t kMaxNameCount = 8000;

struct PropertyList {
    int16_t format = 0;              // format code of the answer
    std::vector<std::string> names;  // one per record, blanks trimmed
};

// "PROPS" of a full device name ("/CONTEXT/SERVER"), the property name sent as
// input; a server lists the named property first and answers nothing for a
// property it does not have. 36 when the call succeeded but no record came back.
Status GetProperties(const std::string& fullDeviceName, const std::string& property,
                     PropertyList& result);

// The element names of `property` on server `serverName` ("/CONTEXT/SERVER"):
// `count` in is the number asked for (0 = 2000), out the number of names.
// "#0" as first name means the server has none: the names are "#0".."#n-1"
// for the n asked for. A name filling all 16 characters and ending in "&"
// continues in the next one. On a failed call the status is returned at once
// and `count` keeps what was asked. A count below 0 or above kMaxNameCount
// is refused with 14 (out of range) before anything is asked or allocated.
Status GetDeviceNames(const std::string& serverName, const std::string& property,
                      int32_t& count, std::vector<std::string>& names);

// Reads values.size() 32-bit floats (SINGLE) from device/property with one
// link call (access 1). On failure the values are left as they were; more
// values than a 32-bit count can ask for are refused with 14.
Status ReadFloats(const std::string& fullDeviceName, const std::string& property,
                  std::span<float> values, int32_t timeoutMs);

}  // namespace vire
