// Numeric values of table fields.
//
// A field's numeric value is read from its leading number: blanks and tabs
// inside it are ignored, reading stops at the first character that cannot
// continue the number, and a field without a number is 0. So "12 abc" is 12
// and "n/a" is 0: a table with an odd value still loads, and
// `lumiscope-config check` reports such fields (IsCleanNumber).
#pragma once

#include <cstdint>
#include <string_view>

namespace catalogue {

double NumericValue(std::string_view text);

// True when the whole trimmed text is one number (or empty): what the check
// accepts without a complaint.
bool IsCleanNumber(std::string_view text);

// Conversions into the records' field types. Rounding is to the nearest
// integer, halves to the even neighbour; a value outside the field's range
// throws RuntimeError(Overflow).
float ToSingle(double value);
int16_t RoundToInt16(double value);
int32_t RoundToInt32(double value);

// A whole decimal number and nothing else (no blanks, no fraction) within
// [low, high], for the tools' options and the simulation's settings, where
// the lenient reading of the tables would hide a typing error.
bool ParseInteger(std::string_view text, int64_t low, int64_t high, int64_t& value);

}  // namespace catalogue
