// What carries link calls to the servers and back.
//
// Callers never see which transport is in use: the link call and the live
// links go through the one installed here. The simulated accelerator is the
// transport the programs install by default; a network transport can take its
// place without any caller changing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vire/data_object.h"

namespace vire {

// One periodic (POLL) link: read `count` elements of `format` from
// device/property every `intervalMs`.
struct SubscriptionRequest {
    std::string fullDeviceName;  // "/CONTEXT/SERVER/DEVICE"
    std::string property;
    int16_t format = 0;
    int32_t count = 0;
    int32_t intervalMs = 1000;
};

// What a live link delivers at each interval.
struct LinkData {
    Status status = 0;           // 0 = values are valid
    int16_t format = 0;
    int32_t count = 0;           // elements delivered
    std::vector<std::byte> bytes;  // count elements of format, little-endian
    int64_t stampMs = 0;         // clock time of the reading
};

using SubscriptionId = int64_t;

class Transport {
public:
    virtual ~Transport() = default;

    // The synchronous link call: blocks until the server answers or timeoutMs
    // has passed. `access` 1 = read, 3 = write. Returns the completion code and
    // sets out.count to the number of elements delivered.
    virtual Status Call(const std::string& fullDeviceName, const std::string& property,
                        DataObject& out, const DataObject& in, int16_t access,
                        int32_t timeoutMs) = 0;

    // Starts a live link. onData runs on the UI thread (through the installed
    // Scheduler) once per interval, also when the reading failed (status != 0).
    // It never blocks the UI thread for the duration of a server call.
    virtual SubscriptionId Subscribe(const SubscriptionRequest& request,
                                     std::function<void(const LinkData&)> onData) = 0;
    // Stops a live link; no onData of it runs afterwards. Unknown ids are ignored.
    virtual void Unsubscribe(SubscriptionId id) = 0;

    // One reading of a live link taken now, as its next tick would deliver
    // it, so that a link just started need not wait one interval for its
    // first values. Runs on the UI thread and must not wait for a server: a
    // transport that cannot answer at once gives nothing (the default), and
    // the link's first tick brings the first reading.
    virtual std::optional<LinkData> ReadAtOnce(const SubscriptionRequest& /*request*/) { return std::nullopt; }
};

// The transport every link call uses. Null until one is installed.
void SetTransport(std::shared_ptr<Transport> transport);
std::shared_ptr<Transport> CurrentTransport();

}  // namespace vire
