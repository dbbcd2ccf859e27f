// Devices whose answers a test decides: every live link reads the values
// set for its "device property" (1, 2, 3, ... when none are set), every name
// query answers "N0", "N1", ..., and a device can be made to fail.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/polling.h"
#include "vire/queries.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace viewer_test {

class FakeDevices : public vire::PollingTransport {
public:
    std::map<std::string, std::vector<float>> values;  // "/CTX/SRV/DEV PROP"
    std::map<std::string, vire::Status> failing;        // "/CTX/SRV" of a failing server

    vire::Status Call(const std::string& device, const std::string&, vire::DataObject& out,
                      const vire::DataObject&, int16_t, int32_t) override {
        if (const vire::Status s = FailureOf(device); s != 0) return s;
        if (out.format != vire::kFormatName16) return vire::kOk;
        const int32_t width = vire::kDeviceNameWidth;
        out.count = std::min<int32_t>(out.count, static_cast<int32_t>(out.buffer.size()) / width);
        for (int32_t i = 0; i < out.count; ++i) {
            const auto field = vire::String2Bytes("N" + std::to_string(i), width);
            std::copy(field.begin(), field.end(), out.buffer.begin() + i * width);
        }
        return vire::kOk;
    }

protected:
    vire::LinkData Poll(const vire::SubscriptionRequest& request) override {
        vire::LinkData data;
        data.status = FailureOf(request.fullDeviceName);
        data.format = vire::kFormatSingle;
        std::vector<float> v = values.count(request.fullDeviceName + " " + request.property)
                                   ? values[request.fullDeviceName + " " + request.property]
                                   : std::vector<float>();
        if (v.empty())
            for (int32_t i = 0; i < request.count; ++i) v.push_back(static_cast<float>(i + 1));
        data.count = static_cast<int32_t>(v.size());
        data.bytes.resize(4 * v.size());
        for (size_t i = 0; i < v.size(); ++i) vire::StoreFloat(data.bytes, 4 * i, v[i]);
        return data;
    }

private:
    vire::Status FailureOf(const std::string& device) const {
        for (const auto& [server, status] : failing)
            if (device.rfind(server, 0) == 0) return status;
        return vire::kOk;
    }
};

}  // namespace viewer_test
