// Runs a scope in a time zone (TZ) and restores the process's own zone
// afterwards, unset included.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace test_support {

class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) : had_(std::getenv("TZ") != nullptr), saved_(had_ ? std::getenv("TZ") : "") {
        Set(zone);
    }
    ~ScopedTimeZone() { Set(had_ ? saved_.c_str() : nullptr); }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    static void Set(const char* zone) {
        zone ? setenv("TZ", zone, 1) : unsetenv("TZ");
        tzset();
    }
    bool had_;
    std::string saved_;
};

}  // namespace test_support
