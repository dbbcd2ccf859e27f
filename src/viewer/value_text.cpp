#include "viewer/value_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "catalogue/numbers.h"

namespace viewer {

std::string LimitText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(value));
    return std::string(buffer, result.ptr);
}

double NumberOfText(const std::string& text) { return catalogue::NumericValue(text); }

std::string GridValueText(float value) {
    if (value == 0.0f) return "0";
    // Compared in single precision: 0.01 as a single lies just below the
    // double 0.01 and still takes four decimals.
    const float magnitude = std::fabs(value);
    char buffer[48];
    if (magnitude >= 0.01f && magnitude <= 9999.0f) {
        std::snprintf(buffer, sizeof buffer, "%.4f", static_cast<double>(value));
    } else {
        // The runtime's "scientific": two decimals and a signed exponent of
        // at least two digits, with a capital E.
        std::snprintf(buffer, sizeof buffer, "%.2E", static_cast<double>(value));
    }
    return buffer;
}

std::string OverviewValueText(float value) {
    if (!(value <= 10000.0f)) return "? (10^30)";
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%.1f", static_cast<double>(value));
    return buffer;
}

}  // namespace viewer
