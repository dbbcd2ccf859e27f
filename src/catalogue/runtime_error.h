// Run-time errors of the program's own logic: an index outside a fixed bound,
// a 16-bit counter that overflows, a file that cannot be read.
//
// Procedures throw these instead of stepping outside an array; the readers turn
// them into their non-zero result, and the window's event handlers report them
// in a message box and keep running.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace catalogue {

enum class ErrorKind : int16_t {
    FileNotFound = 1,   // the file or directory does not exist
    FileRead = 2,       // it exists but cannot be opened or read
    OutOfBounds = 3,    // index outside an array's fixed bounds
    Overflow = 4,       // a number too large for its 16- or 32-bit field
    MenuEntryMissing = 5,  // a menu entry beyond those the window has
    SizeOutOfRange = 6,    // a size in a file that no array of the program can hold
    Unexpected = 7,        // the library underneath failed (memory, ...)
};

class RuntimeError : public std::runtime_error {
public:
    RuntimeError(ErrorKind kind, const std::string& message)
        : std::runtime_error(message), kind_(kind) {}
    ErrorKind kind() const { return kind_; }
    // The reader result that stands for this error (never 0).
    int16_t code() const { return static_cast<int16_t>(kind_); }

private:
    ErrorKind kind_;
};

[[noreturn]] void ThrowOutOfBounds(const char* what, long index, long lower, long upper);
[[noreturn]] void ThrowOverflow(const std::string& what);

// a + b for a 16-bit counter; throws Overflow past 32767 or below -32768.
int16_t CheckedAdd16(int16_t a, int b);

}  // namespace catalogue
