// Many monitor streams from one client without a thread each: asynchronous
// readers on one completion queue, drained by one thread, counting the
// readings that arrive. For the server-side figures of the network group.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace network_bench {

struct StreamLoad {
    int64_t readings = 0;  // while measuring
    int64_t failed = 0;    // readings with a non-zero status, streams that ended
    int64_t ticks = 0;     // distinct reading times among them (the server's ticks)
};

// Opens `streams` streams of device/property (count elements, intervalMs)
// at address, waits settleS seconds, counts readings for measureS seconds
// while `during` runs once at the start of the measurement and once at its
// end (for the server's CPU and thread figures), then cancels them all.
StreamLoad RunStreams(const std::string& address, const std::string& device, const std::string& property,
                      int32_t count, int32_t intervalMs, int streams, int settleS, int measureS,
                      const std::function<void(bool atEnd)>& during);

}  // namespace network_bench
