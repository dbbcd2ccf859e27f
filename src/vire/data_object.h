// A data object describes one buffer of a link call: how many elements, in
// which format, an optional tag, and the caller's own storage.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vire {

// Completion code of a link call: 0 = success (see completion_codes.h).
using Status = int16_t;

struct DataObject {
    // Input: the number of elements given. Output: the number asked for; after
    // the call, the number the server delivered (never more than asked for).
    int32_t count = 0;
    int16_t format = 0;   // format code (formats.h)
    std::string tag;
    // The caller's storage; a call never reads or writes outside it.
    std::span<std::byte> buffer;
    // Output: the time stamp (seconds since 1970) the server reported for the
    // data, 0 when it reported none (history and archive reads report one).
    int32_t stamp = 0;
};

}  // namespace vire
