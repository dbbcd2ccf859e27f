// The JSON documents the command-line tools print.
//
// Keys keep the order they were added in, and floats are the 32-bit values
// the readers store, so each prints as the shortest text that reads back to
// the same value (0.1f as 0.1).
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace tool_support {

using JsonDocument =
    nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t, std::uint64_t, float>;

// A text as a document may hold it: valid UTF-8 stays as it is; any other
// byte is taken as Latin-1, the single-byte code page tables written on other
// systems are often in, so that nothing is lost or replaced.
std::string Utf8Text(std::string_view text);

// The document on one line.
std::string JsonText(const JsonDocument& document);

// The shortest text that reads back to the same float; "null" for values
// that are not finite (as in the documents).
std::string ShortestFloat(float value);

}  // namespace tool_support
