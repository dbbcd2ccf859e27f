// A live transport for the widget and window tests: readings and calls the
// test decides, every subscription recorded.
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
// synchronous calls answered by `call` (link error without one).
class FakeLiveTransport : public vire::PollingTransport {
public:
    struct Reading {
        vire::Status status = 0;
        std::vector<float> values;
        int16_t format = 517;
    };
    std::map<std::string, Reading> readings;
    std::vector<vire::SubscriptionRequest> subscribed;
    std::function<vire::Status(const std::string&, const std::string&, vire::DataObject&,
                               const vire::DataObject&, int16_t, int32_t)>
        call;
    std::function<void(const std::string& device)> beforePoll;  // e.g. to detach a link mid-round
    bool countUpWhenUnset = false;

    vire::Status Call(const std::string& device, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
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

}  // namespace test_support
