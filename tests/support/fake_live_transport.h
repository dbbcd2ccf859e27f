// A transport whose live readings and call answers the test decides; every
// call and subscription is recorded.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "vire/polling.h"
#include "vire/wire.h"

namespace test_support {

// Live readings per "device property" that the test sets (an unset one
// answers nothing, or 1, 2, ... up to the count asked with countUpWhenUnset),
// synchronous calls answered by `call` (link error without one) and recorded
// in `calls` as "DEVICE PROPERTY OUT-COUNT OUT-FORMAT ACCESS TIMEOUT INPUT-BYTES".
class FakeLiveTransport : public vire::PollingTransport {
public:
    struct Reading { vire::Status status = 0; std::vector<float> values; int16_t format = 517; };
    std::map<std::string, Reading> readings;
    std::vector<vire::SubscriptionRequest> subscribed;
    std::vector<std::string> calls;
    std::function<vire::Status(const std::string&, const std::string&, vire::DataObject&,
                               const vire::DataObject&, int16_t, int32_t)>
        call;
    std::function<void(const std::string& device)> beforePoll;  // e.g. to detach a link mid-round
    bool countUpWhenUnset = false;

    vire::Status Call(const std::string& device, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
        calls.push_back(device + " " + property + " " + std::to_string(out.count) + " " + std::to_string(out.format) +
                        " " + std::to_string(access) + " " + std::to_string(timeoutMs) + " " +
                        std::to_string(in.buffer.size()));
        return call ? call(device, property, out, in, access, timeoutMs) : vire::Status{2};
    }
    vire::SubscriptionId Subscribe(const vire::SubscriptionRequest& request,
                                   std::function<void(const vire::LinkData&)> onData) override {
        subscribed.push_back(request);
        return PollingTransport::Subscribe(request, std::move(onData));
    }

protected:
    vire::LinkData Poll(const vire::SubscriptionRequest& request) override {
        if (beforePoll) beforePoll(request.fullDeviceName);
        const std::string key = request.fullDeviceName + " " + request.property;
        if (countUpWhenUnset && !readings.count(key))
            for (int32_t i = 1; i <= request.count; ++i) readings[key].values.push_back(static_cast<float>(i));
        const Reading& r = readings[key];
        vire::LinkData data;
        data.status = r.status;
        data.format = r.format;
        data.count = static_cast<int32_t>(r.values.size());
        data.bytes.resize(4 * r.values.size());
        for (size_t i = 0; i < r.values.size(); ++i) vire::StoreFloat(data.bytes, 4 * i, r.values[i]);
        return data;
    }
};

// Fields of `width` characters written into out.buffer as the server wrote
// them: a field shorter than the width ends in `pad` (NUL or blanks).
inline vire::Status AnswerFields(vire::DataObject& out, const std::vector<std::string>& fields, size_t width,
                                 char pad = '\0') {
    size_t n = 0;
    for (; n < fields.size() && (n + 1) * width <= out.buffer.size(); ++n) {
        std::string field = fields[n];
        field.resize(width, pad);
        for (size_t i = 0; i < width; ++i) out.buffer[n * width + i] = static_cast<std::byte>(field[i]);
    }
    out.count = static_cast<int32_t>(n);
    return 0;
}

}  // namespace test_support
