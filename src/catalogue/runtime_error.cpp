#include "catalogue/runtime_error.h"

#include <limits>

namespace catalogue {

void ThrowOutOfBounds(const char* what, long index, long lower, long upper) {
    throw RuntimeError(ErrorKind::OutOfBounds,
                       std::string(what) + ": index " + std::to_string(index) + " outside " +
                           std::to_string(lower) + ".." + std::to_string(upper));
}

void ThrowOverflow(const std::string& what) {
    throw RuntimeError(ErrorKind::Overflow, "overflow: " + what);
}

int16_t CheckedAdd16(int16_t a, int b) {
    const long sum = static_cast<long>(a) + b;
    if (sum > std::numeric_limits<int16_t>::max() || sum < std::numeric_limits<int16_t>::min())
        ThrowOverflow("16-bit counter " + std::to_string(a) + " + " + std::to_string(b));
    return static_cast<int16_t>(sum);
}

}  // namespace catalogue
