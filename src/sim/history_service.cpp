#include "sim/history_service.h"

#include <algorithm>
#include <vector>

#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/history_servers.h"
#include "vire/wire.h"

namespace sim {
namespace {

constexpr int64_t kSecondsPerDay = 86'400;

int64_t FloorTo(int64_t t, int64_t step) { return (t >= 0 ? t : t - step + 1) / step * step; }

// Element number of a "#n" device name, or -1.
int32_t NumberedElement(const std::string& device) {
    if (device.size() < 2 || device[0] != '#' || device.size() > 7) return -1;
    int32_t n = 0;
    for (size_t i = 1; i < device.size(); ++i) {
        if (device[i] < '0' || device[i] > '9') return -1;
        n = n * 10 + (device[i] - '0');
    }
    return n;
}

int32_t ElementOf(const Channel& channel, const std::string& device) {
    if (channel.size == 1) return 0;  // a machine quantity: the device is the quantity itself
    const auto it = std::find(channel.names.begin(), channel.names.end(), device);
    if (it != channel.names.end()) return static_cast<int32_t>(it - channel.names.begin());
    const int32_t n = NumberedElement(device);
    return n >= 0 && n < channel.size ? n : -1;
}

// Recorded sample times of [from, to] on a recording, at most `limit` of them
// spread evenly over the window; `total` is how many there are in all.
std::vector<int64_t> SampleTimes(const HistoryService::Recording& r, int64_t from, int64_t to,
                                 int32_t limit, int64_t& total) {
    std::vector<int64_t> times;
    const int64_t first = std::max(r.firstS, FloorTo(from + r.stepS - 1, r.stepS));
    const int64_t last = std::min(r.lastS, FloorTo(to, r.stepS));
    total = last >= first ? (last - first) / r.stepS + 1 : 0;
    if (total == 0 || limit <= 0) return times;
    if (total <= limit) {
        for (int64_t t = first; t <= last; t += r.stepS) times.push_back(t);
        return times;
    }
    for (int32_t i = 0; i < limit; ++i) {
        const int64_t k = limit == 1 ? total - 1 : (i * (total - 1) + (limit - 1) / 2) / (limit - 1);
        times.push_back(first + k * r.stepS);
    }
    return times;
}

}  // namespace

HistoryService::HistoryService(const Model& model, const SimulationSettings& settings)
    : model_(model), settings_(settings) {
    for (const auto& c : model_.channels)
        if (!c.hstServer.empty()) localServers_.insert(c.hstServer);
}

bool HistoryService::IsArchiver(const Address& address) const {
    const auto names = vire::ArchiverNames();
    return std::find(names.begin(), names.end(), address.server) != names.end();
}

bool HistoryService::Serves(const Address& address) const {
    if (IsArchiver(address)) return true;
    return localServers_.count(address.ServerAddress()) != 0;
}

HistoryService::Recording HistoryService::RecordingOf(const Address& address) const {
    const bool archive = IsArchiver(address);
    const int32_t step = archive ? settings_.archiveStepS : settings_.localHistoryStepS;
    const int32_t days = archive ? settings_.archiveDays : settings_.localHistoryDays;
    const int64_t now = FloorTo(vire::NowMilliseconds() / 1000, step);
    return Recording{step, now - days * kSecondsPerDay, now};
}

vire::Status HistoryService::FindSource(const Address& address, const std::string& property,
                                        Source& source) const {
    const bool archive = IsArchiver(address);
    const std::string server = address.ServerAddress();
    bool propertyKnown = false;
    for (const auto& c : model_.channels) {
        const bool match = archive ? c.archiver == address.server && c.arcProperty == property
                                   : c.hstServer == server && c.hstProperty == property;
        if (!match) continue;
        propertyKnown = true;
        if (address.device == "#0" || address.device == "#1") {
            source = Source{&c, 0};
            return vire::kOk;
        }
        const int32_t element = ElementOf(c, address.device);
        if (element >= 0) {
            source = Source{&c, element};
            return vire::kOk;
        }
    }
    return propertyKnown ? vire::kUnknownDevice : vire::kUnknownProperty;
}

vire::Status HistoryService::Read(const Address& address, const std::string& property,
                                  vire::DataObject& out, const vire::DataObject& in,
                                  int32_t asked) const {
    Source source;
    if (const vire::Status found = FindSource(address, property, source); found != vire::kOk)
        return found;
    if (in.count < 2 || in.buffer.size() < 8 || vire::FormatSize(in.format) != 4)
        return vire::kInvalidInput;
    const int64_t start = vire::LoadInt32(in.buffer, 0);
    const int64_t stop = vire::LoadInt32(in.buffer, 4);
    const Recording recording = RecordingOf(address);
    const Channel& channel = *source.channel;

    const int32_t width = vire::FormatSize(out.format);
    const int32_t capacity = width > 0 ? static_cast<int32_t>(out.buffer.size() / width) : 0;
    const int32_t room = std::min(asked, capacity);

    if (address.device == "#0") {  // the whole spectrum at one time
        if (vire::CanonicalFormat(out.format) != vire::kFormatSingle) return vire::kFormatMismatch;
        const int64_t at = FloorTo(start, recording.stepS);
        if (at < recording.firstS || at > recording.lastS) return vire::kNoData;
        const int32_t n = std::min(room, channel.size);
        for (int32_t i = 0; i < n; ++i)
            vire::StoreFloat(out.buffer, 4 * static_cast<size_t>(i), SignalValue(channel.signal, i, at * 1000));
        out.count = n;
        out.stamp = static_cast<int32_t>(at);
        return vire::kOk;
    }

    if (vire::CanonicalFormat(out.format) != vire::kFormatFltInt) return vire::kFormatMismatch;
    int64_t total = 0;
    if (address.device == "#1") {  // the probe: how much the window holds
        if (room < 1) return vire::kOutOfRange;
        const auto last = SampleTimes(recording, start, stop, 1, total);
        const float latest = last.empty() ? 0.0f : SignalValue(channel.signal, 0, last.back() * 1000);
        vire::StoreFloat(out.buffer, 0, latest);
        vire::StoreInt32(out.buffer, 4, static_cast<int32_t>(std::min<int64_t>(total, INT32_MAX)));
        out.count = 1;
        return vire::kOk;
    }
    const auto times = SampleTimes(recording, start, stop, room, total);
    for (size_t i = 0; i < times.size(); ++i) {
        vire::StoreFloat(out.buffer, 8 * i, SignalValue(channel.signal, source.element, times[i] * 1000));
        vire::StoreInt32(out.buffer, 8 * i + 4, static_cast<int32_t>(times[i]));
    }
    out.count = static_cast<int32_t>(times.size());
    if (!times.empty()) out.stamp = static_cast<int32_t>(times.back());
    return vire::kOk;
}

}  // namespace sim
