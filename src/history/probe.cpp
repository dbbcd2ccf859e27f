#include "history/item_history.h"

#include <array>

#include "vire/fltint.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace history {
namespace {

// Probes run at this time-out, retries included: a retry asks the operator
// first, so a server that is merely slow is better met by answering Retry
// again than by blocking the window longer on each try.
constexpr int32_t kProbeTimeoutMs = 1000;

enum class ProbeOutcome { Read, GaveUp, Aborted };

// One source's probe, read again for as long as the operator answers Retry.
ProbeOutcome Probe(const std::string& server, const std::string& property, const HistoryWindow& window,
                   const std::string& messagePrefix, Questions& questions, int32_t& result) {
    std::array<std::byte, 12> input{};
    vire::StoreInt32(input, 0, window.HistoryStart);
    vire::StoreInt32(input, 4, window.HistoryStop);
    vire::StoreInt32(input, 8, 0);
    const vire::DataObject in{3, vire::kFormatLong, "", input};
    std::array<std::byte, vire::kFltIntSize> output{};
    for (;;) {
        vire::DataObject out{1, vire::kFormatFltInt, "", output};
        const vire::Status status =
            vire::LinkCall(server + "/#1", property, out, in, vire::kAccessRead, kProbeTimeoutMs);
        if (status == 0) {
            const auto records = vire::DecodeFltInt(output, out.count);
            // A server that answers without a record has nothing to offer: 0.
            result = records.empty() ? 0 : records.front().time;
            return ProbeOutcome::Read;
        }
        const Answer answer = questions.AbortRetryIgnore(messagePrefix + vire::ErrorText(status));
        if (answer == Answer::Abort) return ProbeOutcome::Aborted;
        if (answer != Answer::Retry) return ProbeOutcome::GaveUp;
    }
}

}  // namespace

bool ProbeHistorySources(int32_t& localResult, int32_t& archiveResult, const ItemHistory& item,
                         const HistoryWindow& window, Questions& questions) {
    localResult = -1;
    archiveResult = -1;
    if (!item.HstServer.empty() && !item.HstProperty.empty() &&
        Probe(item.HstServer, item.HstProperty, window, "Error Reading History Data: ", questions, localResult) ==
            ProbeOutcome::Aborted)
        return false;
    if (!item.ArcServer.empty() &&
        Probe(item.ArcServer, item.ArcProperty, window, "Error Reading Archive Data: ", questions, archiveResult) ==
            ProbeOutcome::Aborted)
        return false;
    return true;
}

}  // namespace history
