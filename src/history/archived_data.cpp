#include "history/archived_data.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "vire/completion_codes.h"
#include "vire/fltint.h"
#include "vire/formats.h"
#include "vire/history_servers.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace history {
namespace {

// Archivers answer long windows slowly; a time-out is worth two more tries,
// each with 2 s more, before the caller hears of it.
constexpr int32_t kFirstTimeoutMs = 500;
constexpr int32_t kTimeoutStepMs = 2000;
constexpr int kTimeoutRetries = 2;

}  // namespace

int32_t MYGetArchivedDataEx(const std::string& name, const std::string& property, int16_t mode, int32_t start,
                            int32_t stop, std::vector<float>& values, std::vector<int32_t>& times, int16_t& count,
                            int16_t& status) {
    const std::string server = vire::HistoryServerName(name);

    std::array<std::byte, 12> input{};
    vire::StoreInt32(input, 0, start);
    vire::StoreInt32(input, 4, stop);
    vire::StoreInt32(input, 8, mode);
    // A mode of 0 or less is not sent at all: servers that know no modes
    // refuse a third number.
    const int32_t inputCount = mode < 1 ? 2 : 3;
    const vire::DataObject in{inputCount, vire::kFormatLong, "",
                              std::span<std::byte>(input).first(4 * static_cast<size_t>(inputCount))};

    const int32_t asked = count >= 2 && count <= kMaxArchivedPoints ? count : kMaxArchivedPoints;
    // One record more than asked for, as the servers were always given.
    std::vector<std::byte> output(static_cast<size_t>(asked + 1) * vire::kFltIntSize);

    vire::DataObject out;
    int32_t timeoutMs = kFirstTimeoutMs;
    vire::Status code = 0;
    for (int retries = 0;; ++retries) {
        out = vire::DataObject{asked, vire::kFormatFltInt, "", output};
        code = vire::LinkCall(server, property, out, in, vire::kAccessRead, timeoutMs);
        if (code != vire::kTimeout || retries >= kTimeoutRetries) break;
        timeoutMs += kTimeoutStepMs;
    }
    status = code;
    if (code != vire::kOk) return code;

    const auto records = vire::DecodeFltInt(output, std::clamp(out.count, 0, asked));
    if (records.empty()) {
        values.assign(2, 0.0f);
        times.assign(2, 0);
        return code;
    }
    values.resize(records.size());
    times.resize(records.size());
    for (size_t i = 0; i < records.size(); ++i) {
        values[i] = records[i].value;
        times[i] = records[i].time;
    }
    count = static_cast<int16_t>(records.size());
    return code;
}

}  // namespace history
