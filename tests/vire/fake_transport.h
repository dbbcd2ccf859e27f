// A transport for the client layer's tests: it records each call and answers
// with what the test put into it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "vire/polling.h"

namespace vire_test {

struct RecordedCall {
    std::string device, property;
    int32_t outCount = 0;
    int16_t outFormat = 0;
    std::vector<std::byte> input;
    int16_t access = 0;
    int32_t timeoutMs = 0;
};

class FakeTransport : public vire::PollingTransport {
public:
    // Fills out (buffer, count) and returns the status.
    std::function<vire::Status(vire::DataObject& out)> answer = [](vire::DataObject&) { return vire::Status{0}; };
    std::function<vire::LinkData(const vire::SubscriptionRequest&)> poll = [](const vire::SubscriptionRequest&) {
        return vire::LinkData{};
    };
    std::vector<RecordedCall> calls;

    vire::Status Call(const std::string& device, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int16_t access, int32_t timeoutMs) override {
        calls.push_back({device, property, out.count, out.format,
                         std::vector<std::byte>(in.buffer.begin(), in.buffer.end()), access, timeoutMs});
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
