#include "history/archived_trace.h"

#include <array>
#include <vector>

#include "vire/formats.h"
#include "vire/history_servers.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace history {
namespace {
// A spectrum is large; unlike a probe, each retry gives the server longer.
constexpr int32_t kFirstTimeoutMs = 1000;
constexpr int32_t kTimeoutStepMs = 1000;
}  // namespace

int16_t MYGetArchivedTraceData(const std::string& name, const std::string& property, int32_t time,
                               std::span<float> values, int32_t& reported, Questions& questions) {
    if (values.size() == 1) return 0;
    const std::string server = vire::HistoryServerName(name);
    std::array<std::byte, 12> input{};
    vire::StoreInt32(input, 0, time);
    vire::StoreInt32(input, 4, time);
    vire::StoreInt32(input, 8, 0);
    const vire::DataObject in{3, vire::kFormatLong, "", input};
    std::vector<std::byte> output(4 * values.size());
    for (int32_t timeoutMs = kFirstTimeoutMs;; timeoutMs += kTimeoutStepMs) {
        vire::DataObject out{static_cast<int32_t>(values.size()), vire::kFormatSingle, "", output};
        const vire::Status status = vire::LinkCall(server, property, out, in, vire::kAccessRead, timeoutMs);
        reported = out.stamp;
        if (status == 0) {
            for (size_t i = 0; i < values.size() && i < static_cast<size_t>(out.count); ++i)
                values[i] = vire::LoadFloat(output, 4 * i);
            return 0;
        }
        if (questions.RetryCancel("Error Reading History Data: " + vire::ErrorText(status)) != Answer::Retry)
            return status;
    }
}

}  // namespace history
