// Data format codes of the middleware and their names.
#pragma once

#include <cstdint>
#include <string>

namespace vire {

// The codes the program itself uses; FormatName knows them all.
inline constexpr int16_t kFormatDouble = 512;
inline constexpr int16_t kFormatShort = 513;
inline constexpr int16_t kFormatByte = 514;
inline constexpr int16_t kFormatLong = 515;    // 32-bit integers
inline constexpr int16_t kFormatText = 516;
inline constexpr int16_t kFormatSingle = 517;  // 32-bit floats
inline constexpr int16_t kFormatName8 = 520;
inline constexpr int16_t kFormatName16 = 521;  // 16-character names
inline constexpr int16_t kFormatName32 = 525;
inline constexpr int16_t kFormatFltInt = 526;  // float value + int32 time stamp
inline constexpr int16_t kFormatName48 = 531;
inline constexpr int16_t kFormatName64 = 548;

// A code below 512 is first raised by 512 (5 and 517 are both "SINGLE");
// codes without a name (518, 529, 551, above 552) are "NULL".
std::string FormatName(int16_t code);

// Bytes of one element of a format after the same raising; 0 for formats
// whose element size the client layer does not know (it then never copies).
int32_t FormatSize(int16_t code);

// The code raised into the 512.. range, as the two functions above see it.
int16_t CanonicalFormat(int16_t code);

// True for the fixed-width text formats NAME8 .. NAME64 (not those that
// carry numbers beside the name, such as NAME16I or NAME16FI).
bool IsNameFormat(int16_t code);

// The code of a name, or 0 when no format has it ("NULL" included).
int16_t FormatCode(const std::string& name);

}  // namespace vire
