// Save, set, restore: the window's Initialising flag and busy mark are raised
// around work that fires change events, and put back as they were found, so
// that a nested writer never clears a flag an outer one still needs.
#pragma once

namespace viewer {

class FlagGuard {
public:
    explicit FlagGuard(bool& flag) : flag_(flag), saved_(flag) { flag_ = true; }
    ~FlagGuard() { flag_ = saved_; }
    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;

private:
    bool& flag_;
    bool saved_;
};

}  // namespace viewer
