// The utility functions of the client side: fixed-width text fields and the
// time conversions. Times are 32-bit seconds since 1970, as everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vire {

// The text of a fixed-width field: its bytes up to the first NUL (or all of
// them); trailing blanks are kept.
std::string Bytes2String(std::span<const std::byte> field);
// A text as a field of `width` bytes: cut to fit, the rest NUL. A width of 0
// means the text's own length plus a NUL.
std::vector<std::byte> String2Bytes(const std::string& text, size_t width = 0);

// Now, from the program's clock.
int32_t UNIXTIME();
// Local date and time in parts (month 1..12) to seconds since 1970; -1 when
// the parts name no time a 32-bit count of seconds can hold.
int32_t MKTIME(int year, int month, int day, int hour, int minute, int second);
// The 24-character local-time text of C's ctime ("Sun Nov 22 18:33:15 2026"),
// without its line end; "" for negative times.
std::string CTIME(int64_t seconds);

}  // namespace vire
