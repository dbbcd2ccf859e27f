#include "vire/clock.h"

#include <atomic>
#include <chrono>

namespace vire {
namespace {
// Read from transport worker threads as well as the UI thread.
std::atomic<bool> frozen{false};
std::atomic<int64_t> frozenNow{0};
}  // namespace

int64_t NowMilliseconds() {
    if (frozen.load()) return frozenNow.load();
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

void SetTestClock(int64_t millisecondsSince1970) {
    frozenNow.store(millisecondsSince1970);
    frozen.store(true);
}

void AdvanceTestClock(int64_t milliseconds) { frozenNow.fetch_add(milliseconds); }

void UseSystemClock() { frozen.store(false); }

bool TestClockActive() { return frozen.load(); }

}  // namespace vire
