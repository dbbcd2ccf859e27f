// A transport for the client layer's tests: it records each call and answers
// with what the test put into it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "vire/polling.h"

namespace vire_test {

class FakeTransport : public vire::PollingTransport {
public:
    // Fills out (buffer, count) and returns the status.
    std::function<vire::Status(vire::DataObject& out)> answer = [](vire::DataObject&) { return vire::Status{0}; };
    std::function<vire::LinkData(const vire::SubscriptionRequest&)> poll = [](const vire::SubscriptionRequest&) {
        return vire::LinkData{};
    };
    // Each call as "DEVICE PROPERTY OUT-COUNT OUT-FORMAT ACCESS TIMEOUT INPUT-BYTES".
    std::vector<std::string> calls;

    vire::Status Call(const std::string& device, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
        calls.push_back(device + " " + property + " " + std::to_string(out.count) + " " + std::to_string(out.format) +
                        " " + std::to_string(access) + " " + std::to_string(timeoutMs) + " " +
                        std::to_string(in.buffer.size()));
        return answer(out);
    }

protected:
    vire::LinkData Poll(const vire::SubscriptionRequest& request) override { return poll(request); }
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

}  // namespace vire_test
