#include "catalogue/numbers.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "catalogue/runtime_error.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The number at the start of text, blanks dropped; `used` tells how many
// characters of the blank-free text belong to it.
std::string LeadingNumber(std::string_view text, std::size_t* used, std::size_t* total) {
    std::string compact;
    compact.reserve(text.size());
    for (char c : text)
        if (!IsBlank(c)) compact.push_back(c);
    std::size_t i = 0;
    if (i < compact.size() && (compact[i] == '+' || compact[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < compact.size() && IsDigit(compact[i])) ++i, ++digits;
    if (i < compact.size() && compact[i] == '.') {
        ++i;
        while (i < compact.size() && IsDigit(compact[i])) ++i, ++digits;
    }
    if (digits == 0) {
        *used = 0;
        *total = compact.size();
        return "";
    }
    // An exponent counts only when digits follow it ("1e" is just 1).
    if (i < compact.size() && (compact[i] == 'e' || compact[i] == 'E' || compact[i] == 'd' ||
                               compact[i] == 'D')) {
        std::size_t j = i + 1;
        if (j < compact.size() && (compact[j] == '+' || compact[j] == '-')) ++j;
        if (j < compact.size() && IsDigit(compact[j])) {
            while (j < compact.size() && IsDigit(compact[j])) ++j;
            i = j;
        }
    }
    *used = i;
    *total = compact.size();
    std::string number = compact.substr(0, i);
    for (char& c : number)
        if (c == 'd' || c == 'D') c = 'e';
    return number;
}

}  // namespace

double NumericValue(std::string_view text) {
    std::size_t used = 0, total = 0;
    const std::string number = LeadingNumber(text, &used, &total);
    if (number.empty()) return 0.0;
    // strtod on a string that holds only a well-formed number; a huge exponent
    // gives +-HUGE_VAL, which the field conversions report as an overflow.
    return std::strtod(number.c_str(), nullptr);
}

bool IsCleanNumber(std::string_view text) {
    const std::string trimmed = TrimAll(text);
    if (trimmed.empty()) return true;
    if (trimmed.find_first_of(" \t") != std::string::npos) return false;
    std::size_t used = 0, total = 0;
    const std::string number = LeadingNumber(trimmed, &used, &total);
    return !number.empty() && used == total && std::isfinite(std::strtod(number.c_str(), nullptr));
}

float ToSingle(double value) {
    if (!std::isfinite(value) || std::fabs(value) > FLT_MAX)
        ThrowOverflow("value " + std::to_string(value) + " does not fit a 32-bit float");
    return static_cast<float>(value);
}

namespace {
template <typename Int>
Int RoundTo(double value) {
    const double rounded = std::nearbyint(value);
    if (!std::isfinite(rounded) || rounded > std::numeric_limits<Int>::max() ||
        rounded < std::numeric_limits<Int>::min())
        ThrowOverflow("value " + std::to_string(value) + " does not fit a " +
                      std::to_string(8 * sizeof(Int)) + "-bit integer");
    return static_cast<Int>(rounded);
}
}  // namespace

int16_t RoundToInt16(double value) { return RoundTo<int16_t>(value); }
int32_t RoundToInt32(double value) { return RoundTo<int32_t>(value); }

bool ParseInteger(std::string_view text, int64_t low, int64_t high, int64_t& value) {
    int64_t parsed = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, parsed);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || parsed < low || parsed > high)
        return false;
    value = parsed;
    return true;
}

}  // namespace catalogue
